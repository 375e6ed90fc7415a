#pragma once

#include "application/services.h"

#include <QStringList>

#include <optional>

// The server document at orvane-cli's start: refreshed once, as the program does at launch, or
// read as it stands with --offline. Returns the refresh's result, or none when offline.
std::optional<ServerDownload> refreshServerDocument(bool offline);

// orvane-cli server check: the results of the download, the launch check and the update check
// as one JSON object.
int runServerCommand(const QStringList &arguments, std::optional<ServerDownload> download);
