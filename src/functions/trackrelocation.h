#pragma once

#include "player/itunes.h"

#include <QHash>
#include <QString>

class FunctionPoolController;

// Renames of tracks' files and folders on disk, with the library told where the files went.
// Nothing here ever replaces what already exists at a target: such a rename simply fails.

// Renames a file or folder; false when nothing was moved.
bool renameOnDisk(const QString &from, const QString &to);

// The parent folder of a path and its last component, as the player's paths are split.
QString parentFolder(const QString &path);
QString lastPathComponent(const QString &path);

// Points the library's file tracks below a folder to where the folder went. The locations of
// the library's tracks are read once per run, before the first folder moves (a moved file's
// location reads empty afterwards), and kept up to date with the moves made through it.
// Used on the engine's worker thread; reset() between runs.
class LibraryFolderFollower
{
public:
    explicit LibraryFolderFollower(FunctionPoolController *pool) : pool_(pool) {}

    void reset();
    // Call before moving a folder: reads the library's locations if this run has not yet.
    void prepare();
    // The folder now lies at a new path: every track whose file was below it follows.
    void folderDidMove(const QString &from, const QString &to);

private:
    FunctionPoolController *pool_;
    bool loaded_ = false;
    QHash<QString, ITunesFileTrack> tracksByPath_;
};
