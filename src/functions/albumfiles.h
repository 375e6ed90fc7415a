#pragma once

#include "player/itunes.h"
#include "pool/poolfunction.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>

class FunctionPoolController;

// The album folder and its files, as the artwork and extraction functions see them.

// The folder of the track's file, or its parent when that is a disc folder.
QString albumFolderOfTrack(const FunctionPoolController *pool, const ITunesTrack &track);
// The names of the image files directly in the folder (the organizer's image suffixes,
// ignoring case), each once, in the folder's order.
QStringList imageFilesIn(const FunctionPoolController *pool, const QString &folder);

// Asks for the folder a run writes to (the message by its key) and stops the run's start; a
// folder chosen is handed to "store" and the run starts again, a cancel leaves it stopped.
PoolFunctionAnswer askForTargetFolder(FunctionPoolController *pool, const QString &messageKey,
                                      std::function<void(const QString &path)> store);

// The failures of these functions, for the track's error in the log.
[[noreturn]] void throwArtworkFailure(const QString &reason);
[[noreturn]] void throwFileFailure(const QString &reason);

// The whole file, or a failure naming it.
QByteArray readWholeFile(const QString &path);
// Writes the bytes atomically where nothing stands yet; a failure names the file.
void writeNewFile(const QString &path, const QByteArray &bytes);
