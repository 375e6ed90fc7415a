#include "player/library/librarybackend.h"

#include "player/library/libraryobjects.h"

#include <QDir>
#include <QStandardPaths>

QString LibraryBackend::defaultDatabasePath()
{
    const QString dataHome = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return dataHome.isEmpty() ? QString()
                              : dataHome + QStringLiteral("/Orvane Library/Library.sqlite");
}

LibraryBackend::LibraryBackend(const QString &databasePath)
{
    try {
        if (databasePath.isEmpty())
            throwBridgeFailure(kBridgeErrorNotRunning, QStringLiteral("no place for the library"));
        if (!QDir().mkpath(QFileInfo(databasePath).absolutePath()))
            throwBridgeFailure(kBridgeErrorNotRunning,
                               QStringLiteral("cannot make the folder of %1").arg(databasePath));
        store_ = std::make_shared<LibraryStore>(databasePath);
    } catch (const BridgeFailure &failure) {
        openError_ = QString::fromUtf8(failure.what());
    }
}

LibraryBackend::~LibraryBackend() = default;

LibraryStore &LibraryBackend::running() const
{
    if (!store_)
        throwBridgeFailure(kBridgeErrorNotRunning,
                           QStringLiteral("the library is not open: %1").arg(openError_));
    return *store_;
}

QVariant LibraryBackend::read(Prop property)
{
    running();
    switch (property) {
    case Prop::name: return QStringLiteral("Orvane Library");
    case Prop::version: return QStringLiteral("%1").arg(LibraryDatabase::latestSchemaVersion());
    case Prop::frontmost: return false;
    default: return RemoteObject::read(property);
    }
}

RemoteObjectPtr LibraryBackend::object(Prop relation)
{
    running();
    return RemoteObject::object(relation);
}

RemoteObjectList LibraryBackend::elements(Prop list)
{
    LibraryStore &store = running();
    if (list == Prop::sources)
        return {source()};
    if (list != Prop::selection)
        return RemoteObject::elements(list);
    RemoteObjectList selected;
    for (const QString &persistentID : store.selection())
        if (RemoteObjectPtr track = trackWithPersistentID(persistentID))
            selected.append(track);
    return selected;
}

LibraryStore::ImportResult LibraryBackend::importPaths(const QStringList &paths,
                                                       const RemoteObjectPtr &to)
{
    LibraryStore &store = running();
    const qint64 playlistId = to ? libraryPlaylistIdOf(to, &store) : 0;
    if (playlistId < 0)
        throwBridgeFailure(kBridgeErrorUnsupported, QStringLiteral("not a playlist of the library"));
    return store.importPaths(paths, playlistId);
}

RemoteObjectList LibraryBackend::add(const QStringList &paths, const RemoteObjectPtr &to)
{
    RemoteObjectList added;
    for (qint64 id : importPaths(paths, to).added)
        added.append(makeLibraryTrack(store_, id));
    return added;
}

RemoteObjectPtr LibraryBackend::source()
{
    running();
    return makeLibrarySource(store_);
}

RemoteObjectPtr LibraryBackend::libraryPlaylist()
{
    return makeLibraryPlaylist(store_, running().libraryPlaylistId());
}

RemoteObjectPtr LibraryBackend::trackWithPersistentID(const QString &persistentID)
{
    return makeLibraryTrack(store_, running().trackIdForPersistentID(persistentID));
}

RemoteObjectPtr LibraryBackend::trackWithDatabaseID(qint64 databaseID)
{
    running();
    return makeLibraryTrack(store_, databaseID);
}

RemoteObjectPtr LibraryBackend::trackWithLocation(const QString &path)
{
    if (!store_)
        return nullptr;
    const qint64 id = store_->trackIdForPath(path);
    return id ? makeLibraryTrack(store_, id) : nullptr;
}

RemoteObjectPtr LibraryBackend::playlistWithPersistentID(const QString &persistentID)
{
    const qint64 id = running().playlistIdForPersistentID(persistentID);
    return id ? makeLibraryPlaylist(store_, id) : nullptr;
}

QList<RemoteObjectPtr> LibraryBackend::tracks()
{
    QList<RemoteObjectPtr> all;
    for (qint64 id : running().trackIds())
        all.append(makeLibraryTrack(store_, id));
    return all;
}

void LibraryBackend::setSelection(const QStringList &persistentIDs)
{
    running().setSelection(persistentIDs);
}

void LibraryBackend::saveTrack(const QString &persistentID)
{
    LibraryStore &store = running();
    if (const qint64 id = store.trackIdForPersistentID(persistentID))
        store.saveTrack(id);
}

void LibraryBackend::saveAll()
{
    running().saveAll();
}

void LibraryBackend::syncSavedFiles()
{
    running().syncSavedFiles();
}

qsizetype LibraryBackend::refreshChangedTracks()
{
    return running().refreshChangedTracks().size();
}

QString LibraryBackend::musicFolder()
{
    return running().musicFolder();
}

void LibraryBackend::setMusicFolder(const QString &path)
{
    running().setSetting(QStringLiteral("musicFolder"),
                         path.isEmpty() ? QString() : QFileInfo(path).absoluteFilePath());
}
