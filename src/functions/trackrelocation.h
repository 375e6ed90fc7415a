#pragma once

#include "player/itunes.h"

#include <QHash>
#include <QString>

class FunctionPoolController;

// Renames of tracks' files and folders on disk, with the library told where the files went.
// Nothing here ever replaces what already exists at a target: such a rename simply fails.

// What a rename did: error 0 when it was made, else the errno and a reason for people.
struct RenameResult
{
    int error = 0;
    QString reason;
    bool ok() const { return error == 0; }
};

// Renames a file or folder with renameat2(RENAME_NOREPLACE): whatever is at the target, a
// dangling symbolic link included, stays and the rename fails. A link at the target is never
// followed and nothing is ever copied: a target on another file system is refused (EXDEV), so
// that a half-made copy can never stand in for the original. On a file system that cannot
// rename without replacing, a file is hard-linked to the new name and then unlinked, and a
// folder is refused.
RenameResult renameOnDisk(const QString &from, const QString &to);

// Whether anything is at the path, a symbolic link (dangling or not) included.
bool pathIsTaken(const QString &path);
bool isSymbolicLink(const QString &path);

// The exception of a refused rename, for the track's error.
[[noreturn]] void throwRenameRefusal(const QString &reason);

// Why the organizer must not rename the folder: the root, the home folder, the music folder,
// a folder above it, a folder outside it (symbolic links resolved) or a missing one. Empty when
// it may. musicFolder is canonical, as FunctionPoolController::subMusicFolder() gives it.
QString folderRenameRefusal(const QString &folder, const QString &musicFolder);
// Why the organizer must not rename files in the folder: it leads through a symbolic link to
// a place outside the music folder. Empty when it may.
QString linkedFolderRefusal(const QString &folder, const QString &musicFolder);

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
