#pragma once

#include <QStringList>

// "orvane-cli organize ...": lists the organizer's functions, describes one's settings, or runs
// one over the library in $XDG_DATA_HOME/Orvane Library. Returns the exit status.
int runOrganizeCommand(const QStringList &arguments);
