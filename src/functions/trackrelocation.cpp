#include "functions/trackrelocation.h"

#include "additions/ovexception.h"
#include "pool/functionpoolcontroller.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const QString kRenameException = QStringLiteral("OVFileRenameException");

QString reasonFor(int error, const QString &from, const QString &to)
{
    switch (error) {
    case EEXIST:
    case ENOTEMPTY:
        return QStringLiteral("\"%1\" already exists and is never replaced; rename or remove it, then "
                              "run the function again").arg(to);
    case EXDEV:
        return QStringLiteral("\"%1\" would lie on another file system than \"%2\"; Orvane never "
                              "copies files across file systems: move it yourself").arg(to, from);
    case ENAMETOOLONG:
        return QStringLiteral("the new name \"%1\" is too long for the file system; shorten the "
                              "prefix, suffix or tags the name is made of").arg(lastPathComponent(to));
    case EACCES:
    case EPERM:
        return QStringLiteral("no permission to rename \"%1\"; make its folder writable and run the "
                              "function again").arg(from);
    case EROFS:
        return QStringLiteral("\"%1\" lies on a read-only file system; nothing was renamed").arg(from);
    case ENOSPC:
    case EDQUOT:
        return QStringLiteral("the disk of \"%1\" is full; free some space and run the function "
                              "again").arg(from);
    case ENOENT:
        return QStringLiteral("\"%1\" is missing; update the library and run the function again").arg(from);
    case EINVAL:
        return QStringLiteral("\"%1\" cannot be renamed to \"%2\" (a folder cannot move into itself, and "
                              "this file system cannot rename a folder without the risk of replacing "
                              "one)").arg(from, to);
    default:
        return QStringLiteral("\"%1\" could not be renamed to \"%2\": %3")
            .arg(from, to, QString::fromLocal8Bit(std::strerror(error)));
    }
}

// "/a/b" below "/a", and anything below "/".
bool isBelow(const QString &path, const QString &folder)
{
    return path != folder && path.startsWith(folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/'));
}

} // namespace

RenameResult renameOnDisk(const QString &from, const QString &to)
{
    const QByteArray source = QFile::encodeName(from);
    const QByteArray target = QFile::encodeName(to);
    if (::renameat2(AT_FDCWD, source.constData(), AT_FDCWD, target.constData(), RENAME_NOREPLACE) == 0)
        return {};
    int error = errno;
    struct stat status {};
    if ((error == EINVAL || error == ENOSYS) && ::lstat(source.constData(), &status) == 0
        && S_ISREG(status.st_mode)) {
        // A file system without RENAME_NOREPLACE: link() never replaces nor follows a link
        // at the target either.
        if (::link(source.constData(), target.constData()) == 0) {
            if (::unlink(source.constData()) == 0)
                return {};
            error = errno;
            ::unlink(target.constData());
        } else {
            error = errno;
        }
    }
    return {error, reasonFor(error, from, to)};
}

bool pathIsTaken(const QString &path)
{
    struct stat status {};
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0;
}

bool isSymbolicLink(const QString &path)
{
    struct stat status {};
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0 && S_ISLNK(status.st_mode);
}

void throwRenameRefusal(const QString &reason)
{
    throw OVException(kRenameException, reason);
}

QString folderRenameRefusal(const QString &folder, const QString &musicFolder)
{
    const QString real = QFileInfo(folder).canonicalFilePath();
    if (real.isEmpty())
        return QStringLiteral("the folder \"%1\" is missing; update the library and run the function "
                              "again").arg(folder);
    if (real == QLatin1String("/"))
        return QStringLiteral("\"%1\" is the root folder; Orvane renames only album folders inside the "
                              "music folder: put the track into a folder of its album").arg(folder);
    if (real == QFileInfo(QDir::homePath()).canonicalFilePath())
        return QStringLiteral("\"%1\" is the home folder; Orvane renames only album folders inside the "
                              "music folder: put the track into a folder of its album").arg(folder);
    if (musicFolder.isEmpty())
        return QStringLiteral("the library has no music folder, so \"%1\" cannot be checked; Orvane "
                              "renames only album folders inside it").arg(folder);
    if (real == musicFolder)
        return QStringLiteral("\"%1\" is the library's music folder; Orvane renames only the album "
                              "folders inside it: put the track into a folder of its album").arg(folder);
    if (isBelow(musicFolder, real))
        return QStringLiteral("\"%1\" holds the library's music folder \"%2\"; Orvane renames only the "
                              "album folders inside it").arg(folder, musicFolder);
    if (!isBelow(real, musicFolder))
        return QStringLiteral("\"%1\" lies outside the library's music folder \"%2\" (symbolic links "
                              "followed); Orvane renames only album folders inside it: move the album "
                              "there first").arg(folder, musicFolder);
    return {};
}

QString linkedFolderRefusal(const QString &folder, const QString &musicFolder)
{
    const QString real = QFileInfo(folder).canonicalFilePath();
    if (real.isEmpty())
        return QStringLiteral("the folder \"%1\" is missing; update the library and run the function "
                              "again").arg(folder);
    if (real == QDir::cleanPath(QFileInfo(folder).absoluteFilePath()))
        return {}; // no link on the way
    if (!musicFolder.isEmpty() && (real == musicFolder || isBelow(real, musicFolder)))
        return {};
    return QStringLiteral("\"%1\" leads through a symbolic link to \"%2\", outside the library's music "
                          "folder; Orvane never writes there: add the files from where they really "
                          "are").arg(folder, real);
}

QString parentFolder(const QString &path)
{
    const qsizetype slash = path.lastIndexOf(QLatin1Char('/'));
    if (slash < 0)
        return QString();
    return slash == 0 ? QStringLiteral("/") : path.left(slash);
}

QString lastPathComponent(const QString &path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

void LibraryFolderFollower::reset()
{
    loaded_ = false;
    tracksByPath_.clear();
}

void LibraryFolderFollower::prepare()
{
    if (loaded_)
        return;
    loaded_ = true;
    const ITunesLibraryPlaylist library = pool_->subLibraryPlaylist(pool_->subLibrarySource());
    for (const ITunesFileTrack &track : library.fileTracks())
        if (const QString location = track.location(); !location.isEmpty())
            tracksByPath_.insert(location, track);
}

void LibraryFolderFollower::folderDidMove(const QString &from, const QString &to)
{
    const QString below = from + QLatin1Char('/');
    QHash<QString, ITunesFileTrack> moved;
    for (auto it = tracksByPath_.begin(); it != tracksByPath_.end();) {
        if (it.key().startsWith(below)) {
            moved.insert(to + it.key().mid(from.size()), it.value());
            it = tracksByPath_.erase(it);
        } else {
            ++it;
        }
    }
    for (auto it = moved.begin(); it != moved.end(); ++it) {
        it.value().setLocation(it.key());
        tracksByPath_.insert(it.key(), it.value());
    }
}
