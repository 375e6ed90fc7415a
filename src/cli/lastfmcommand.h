#pragma once

#include <QStringList>

class AppContext;

// orvane-cli lastfm connect [--user NAME] | status | disconnect: the Last.fm authorisation
// without a browser window of the program's own, for headless machines and tests.
int runLastFMCommand(const QStringList &arguments, AppContext &context);
