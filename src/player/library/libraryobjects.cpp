#include "player/library/libraryobjects.h"

#include "player/library/librarybackend.h"
#include "player/library/trackcolumns.h"
#include "player/playervalues.h"

#include <QBuffer>
#include <QImage>
#include <QImageWriter>
#include <QStorageInfo>

namespace {

// Opaque pictures become JPEG, those with transparency PNG.
QByteArray encodedImage(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, image.hasAlphaChannel() ? "png" : "jpeg");
    writer.setQuality(95);
    if (image.isNull() || !writer.write(image))
        throwBridgeFailure(kBridgeErrorWriteFailed, QStringLiteral("cannot encode the picture"));
    return bytes;
}

RemoteObjectList playlistObjects(const std::shared_ptr<LibraryStore> &store,
                                 const QList<qint64> &ids)
{
    RemoteObjectList objects;
    for (qint64 id : ids)
        objects.append(makeLibraryPlaylist(store, id));
    return objects;
}

RemoteObjectList trackObjects(const std::shared_ptr<LibraryStore> &store, const QList<qint64> &ids,
                              qint64 playlistId)
{
    RemoteObjectList objects;
    objects.reserve(ids.size());
    for (qint64 id : ids)
        objects.append(std::make_shared<LibraryTrackObject>(store, id, playlistId));
    return objects;
}

} // namespace

qint64 libraryPlaylistIdOf(const RemoteObjectPtr &target, const LibraryStore *store)
{
    const RemoteObjectPtr resolved = target ? target->resolve() : nullptr;
    auto *object = dynamic_cast<LibraryObject *>(resolved.get());
    if (!object || object->store().get() != store)
        return -1;
    if (dynamic_cast<LibrarySourceObject *>(object))
        return 0;
    return dynamic_cast<LibraryPlaylistObject *>(object) ? object->id() : -1;
}

bool LibraryObject::isSameObject(const RemoteObject &other) const
{
    auto *library = dynamic_cast<const LibraryObject *>(&other);
    return library && library->store_ == store_ && library->id_ == id_
           && library->objectClass() == objectClass();
}

RemoteObjectPtr makeLibrarySource(const std::shared_ptr<LibraryStore> &store)
{
    return std::make_shared<LibrarySourceObject>(store);
}

RemoteObjectPtr makeLibraryPlaylist(const std::shared_ptr<LibraryStore> &store, qint64 id)
{
    const std::optional<LibraryStore::PlaylistRow> row = store->playlist(id);
    if (!row)
        return nullptr;
    return std::make_shared<LibraryPlaylistObject>(store, id, row->specialKind);
}

RemoteObjectPtr makeLibraryTrack(const std::shared_ptr<LibraryStore> &store, qint64 id,
                                 qint64 playlistId)
{
    return store->hasTrack(id) ? std::make_shared<LibraryTrackObject>(store, id, playlistId)
                               : nullptr;
}

// Source

QVariant LibrarySourceObject::read(Prop property)
{
    switch (property) {
    case Prop::name: return QStringLiteral("Library");
    case Prop::persistentID: return store_->sourcePersistentID();
    case Prop::kind: return FourCharCode(SourceKind::kLib);
    case Prop::capacity:
    case Prop::freeSpace: {
        const QStorageInfo storage(QFileInfo(store_->database().path()).absolutePath());
        return double(property == Prop::capacity ? storage.bytesTotal() : storage.bytesFree());
    }
    default: return RemoteObject::read(property);
    }
}

RemoteObjectList LibrarySourceObject::elements(Prop list)
{
    switch (list) {
    case Prop::playlists:
        return playlistObjects(store_, QList<qint64>{store_->libraryPlaylistId()}
                                           + store_->userPlaylistIds());
    case Prop::libraryPlaylists: return playlistObjects(store_, {store_->libraryPlaylistId()});
    case Prop::userPlaylists: return playlistObjects(store_, store_->userPlaylistIds());
    default: return RemoteObject::elements(list);
    }
}

RemoteObjectPtr LibrarySourceObject::make(ObjectClass objectClass, const QVariantMap &properties,
                                          Prop list, qsizetype index)
{
    if (list != Prop::userPlaylists
        || (objectClass != ObjectClass::UserPlaylist && objectClass != ObjectClass::FolderPlaylist))
        return RemoteObject::make(objectClass, properties, list, index);
    const qint64 id = store_->makePlaylist(properties.value(QStringLiteral("name")).toString(),
                                           objectClass == ObjectClass::FolderPlaylist, index);
    return makeLibraryPlaylist(store_, id);
}

// Playlist

ObjectClass LibraryPlaylistObject::objectClass() const
{
    if (specialKind_ == kSpL)
        return ObjectClass::LibraryPlaylist;
    return specialKind_ == kSpF ? ObjectClass::FolderPlaylist : ObjectClass::UserPlaylist;
}

LibraryStore::PlaylistRow LibraryPlaylistObject::row() const
{
    const std::optional<LibraryStore::PlaylistRow> found = store_->playlist(id_);
    if (!found)
        throwBridgeFailure(kBridgeErrorNoSuchObject, QStringLiteral("no such playlist"));
    return *found;
}

QVariant LibraryPlaylistObject::read(Prop property)
{
    const LibraryStore::PlaylistRow playlist = row();
    const bool user = specialKind_ != kSpL;
    switch (property) {
    case Prop::name: return playlist.name;
    case Prop::persistentID: return playlist.persistentID;
    case Prop::specialKind: return playlist.specialKind;
    case Prop::loved:
    case Prop::shuffle: return false;
    case Prop::songRepeat: return kRpO;
    case Prop::smart:
        if (user)
            return playlist.smart;
        break;
    case Prop::shared:
        if (user)
            return playlist.shared;
        break;
    case Prop::duration:
    case Prop::time:
    case Prop::size: {
        double duration = 0;
        qint64 size = 0;
        for (qint64 track : store_->playlistTrackIds(id_)) {
            duration += store_->trackValue(track, Prop::duration).toDouble();
            size += store_->trackValue(track, Prop::size).toLongLong();
        }
        if (property == Prop::size)
            return size;
        return property == Prop::duration ? QVariant(duration) : QVariant(formattedDuration(duration));
    }
    default: break;
    }
    return RemoteObject::read(property);
}

void LibraryPlaylistObject::write(Prop property, const QVariant &value)
{
    if (property != Prop::name || specialKind_ == kSpL)
        return RemoteObject::write(property, value);
    row();
    store_->renamePlaylist(id_, value.toString());
}

RemoteObjectPtr LibraryPlaylistObject::object(Prop relation)
{
    if (relation == Prop::container) {
        row();
        return makeLibrarySource(store_);
    }
    if (relation == Prop::parent) {
        const qint64 parent = row().parent;
        return parent ? makeLibraryPlaylist(store_, parent) : nullptr;
    }
    return RemoteObject::object(relation);
}

RemoteObjectList LibraryPlaylistObject::elements(Prop list)
{
    if (list == Prop::tracks || list == Prop::fileTracks)
        return trackObjects(store_, store_->playlistTrackIds(id_),
                            specialKind_ == kSpL ? 0 : id_);
    return RemoteObject::elements(list);
}

void LibraryPlaylistObject::perform(Command command)
{
    if (command == Command::deleteItem)
        return store_->deletePlaylist(id_);
    if (command == Command::reveal)
        return;
    RemoteObject::perform(command);
}

RemoteObjectPtr LibraryPlaylistObject::duplicateTo(const RemoteObjectPtr &target)
{
    const qint64 targetId = libraryPlaylistIdOf(target, store_.get());
    if (targetId < 0)
        throwBridgeFailure(kBridgeErrorUnsupported, QStringLiteral("not a place for a playlist"));
    const std::optional<LibraryStore::PlaylistRow> into =
        targetId ? store_->playlist(targetId) : std::nullopt;
    if (into && into->specialKind != kSpF) {
        // Into a plain playlist: its tracks are added there.
        store_->addTracksToPlaylist(targetId, store_->playlistTrackIds(id_));
        return target->resolve();
    }
    return makeLibraryPlaylist(store_, store_->duplicatePlaylist(id_, targetId));
}

RemoteObjectPtr LibraryPlaylistObject::moveTo(const RemoteObjectPtr &target)
{
    const qint64 targetId = libraryPlaylistIdOf(target, store_.get());
    const std::optional<LibraryStore::PlaylistRow> into =
        targetId > 0 ? store_->playlist(targetId) : std::nullopt;
    if (specialKind_ == kSpL || targetId < 0 || (into && into->specialKind != kSpF))
        throwBridgeFailure(kBridgeErrorUnsupported, QStringLiteral("cannot move there"));
    store_->movePlaylist(id_, targetId);
    return shared_from_this();
}

// Track

QVariant LibraryTrackObject::read(Prop property)
{
    if (property == Prop::storeMetadata)
        return store_->storeMetadata(id_);
    return store_->trackValue(id_, property);
}

void LibraryTrackObject::write(Prop property, const QVariant &value)
{
    store_->setTrackValue(id_, property, value);
}

RemoteObjectPtr LibraryTrackObject::object(Prop relation)
{
    if (relation != Prop::container)
        return RemoteObject::object(relation);
    store_->trackValue(id_, Prop::databaseID);
    return makeLibraryPlaylist(store_, playlistId_ ? playlistId_ : store_->libraryPlaylistId());
}

RemoteObjectList LibraryTrackObject::elements(Prop list)
{
    if (list != Prop::artworks)
        return RemoteObject::elements(list);
    RemoteObjectList artworks;
    const qsizetype count = store_->artworks(id_).size();
    for (qsizetype i = 0; i < count; ++i)
        artworks.append(std::make_shared<LibraryArtworkObject>(store_, id_, i));
    return artworks;
}

RemoteObjectPtr LibraryTrackObject::elementAt(Prop list, qsizetype index)
{
    if (list != Prop::artworks)
        return RemoteObject::elementAt(list, index);
    store_->trackValue(id_, Prop::databaseID);
    return index >= 0 ? std::make_shared<LibraryArtworkObject>(store_, id_, index) : nullptr;
}

void LibraryTrackObject::perform(Command command)
{
    if (command == Command::reveal)
        return store_->requestReveal(id_);
    if (command == Command::saveTags)
        return store_->saveTrack(id_);
    if (command != Command::deleteItem)
        return RemoteObject::perform(command);
    if (playlistId_)
        store_->removeTrackFromPlaylist(playlistId_, id_);
    else
        store_->removeTrack(id_);
}

RemoteObjectPtr LibraryTrackObject::duplicateTo(const RemoteObjectPtr &target)
{
    const qint64 targetId = libraryPlaylistIdOf(target, store_.get());
    if (targetId <= 0)
        throwBridgeFailure(kBridgeErrorUnsupported, QStringLiteral("not a playlist"));
    store_->trackValue(id_, Prop::databaseID);
    store_->addTracksToPlaylist(targetId, {id_});
    return std::make_shared<LibraryTrackObject>(store_, id_, targetId);
}

// Artwork

bool LibraryArtworkObject::isSameObject(const RemoteObject &other) const
{
    auto *artwork = dynamic_cast<const LibraryArtworkObject *>(&other);
    return artwork && LibraryObject::isSameObject(other) && artwork->index_ == index_;
}

LibraryStore::Artwork LibraryArtworkObject::artwork() const
{
    const QList<LibraryStore::Artwork> artworks = store_->artworks(id_);
    if (index_ < 0 || index_ >= artworks.size())
        throwBridgeFailure(kBridgeErrorNoSuchObject, QStringLiteral("no such artwork"));
    return artworks.at(index_);
}

QVariant LibraryArtworkObject::read(Prop property)
{
    switch (property) {
    case Prop::data: return QImage::fromData(artwork().data);
    case Prop::rawData: return artwork().data;
    case Prop::format: return artworkFormat(artwork().data);
    case Prop::downloaded: return artwork().downloaded;
    case Prop::objectDescription: return artwork().description;
    default: return RemoteObject::read(property);
    }
}

void LibraryArtworkObject::write(Prop property, const QVariant &value)
{
    switch (property) {
    case Prop::data: return store_->setArtworkData(id_, index_, encodedImage(value.value<QImage>()));
    case Prop::rawData: {
        const QByteArray bytes = value.toByteArray();
        if (pictureMimeType(bytes).isEmpty())
            throwBridgeFailure(kBridgeErrorWriteFailed, QStringLiteral("not a picture"));
        return store_->setArtworkData(id_, index_, bytes);
    }
    case Prop::objectDescription:
        return store_->setArtworkDescription(id_, index_, value.toString());
    default: return RemoteObject::write(property, value);
    }
}

RemoteObjectPtr LibraryArtworkObject::object(Prop relation)
{
    if (relation != Prop::container)
        return RemoteObject::object(relation);
    return makeLibraryTrack(store_, id_);
}

void LibraryArtworkObject::perform(Command command)
{
    if (command != Command::deleteItem)
        return RemoteObject::perform(command);
    store_->removeArtwork(id_, index_);
}
