#include "functions/trackrelocation.h"

#include "pool/functionpoolcontroller.h"

#include <QDir>
#include <QFileInfo>

bool renameOnDisk(const QString &from, const QString &to)
{
    if (QFileInfo(from).isDir())
        return QDir().rename(from, to);
    return QFile::rename(from, to);
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
