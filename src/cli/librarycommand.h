#pragma once

#include <QStringList>

// "orvane-cli library ...": add, list, show and playlists on the library in
// $XDG_DATA_HOME/Orvane Library. Returns the exit status.
int runLibraryCommand(const QStringList &arguments);
