#include "additions/appcontext.h"
#include "player/memoryplayer.h"

#include "player/playervalues.h"

#include <QBuffer>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include <algorithm>

namespace {

using Lock = std::lock_guard<std::recursive_mutex>;

bool between(Prop property, Prop first, Prop last)
{
    return int(property) >= int(first) && int(property) <= int(last);
}

bool isTrackClass(ObjectClass objectClass)
{
    return objectClassIsKindOf(objectClass, ObjectClass::Track);
}

bool isPlaylistClass(ObjectClass objectClass)
{
    return objectClassIsKindOf(objectClass, ObjectClass::Playlist);
}

bool isUserPlaylistClass(ObjectClass objectClass)
{
    return objectClassIsKindOf(objectClass, ObjectClass::UserPlaylist);
}

// Which properties an object of a class has; anything else is "unsupported", as the player
// answers for a property its class lacks.
bool supports(ObjectClass objectClass, Prop property)
{
    if (property == Prop::name || property == Prop::persistentID || property == Prop::container)
        return true;
    if (isTrackClass(objectClass)) {
        if (property == Prop::location)
            return objectClass == ObjectClass::FileTrack;
        if (property == Prop::address)
            return objectClass == ObjectClass::URLTrack;
        return between(property, Prop::album, Prop::storeMetadata);
    }
    if (isPlaylistClass(objectClass)) {
        if (property == Prop::smart || property == Prop::shared)
            return isUserPlaylistClass(objectClass);
        return property == Prop::time || property == Prop::duration || property == Prop::size
               || property == Prop::loved || between(property, Prop::shuffle, Prop::fileTracks);
    }
    switch (objectClass) {
    case ObjectClass::Source:
        return property == Prop::kind || between(property, Prop::capacity, Prop::userPlaylists);
    case ObjectClass::Artwork:
        return property == Prop::objectDescription || between(property, Prop::data, Prop::downloaded);
    case ObjectClass::AirPlayDevice:
        return property == Prop::kind || property == Prop::soundVolume
               || between(property, Prop::networkAddress, Prop::supportsVideo);
    case ObjectClass::EQPreset:
        return between(property, Prop::preamp, Prop::band10);
    case ObjectClass::Application:
        return between(property, Prop::currentTrack, Prop::version);
    default:
        return false;
    }
}

bool isWritable(Prop property)
{
    switch (property) {
    case Prop::name: case Prop::data: case Prop::rawData: case Prop::shuffle:
    case Prop::songRepeat: case Prop::shared: case Prop::selected: case Prop::soundVolume:
    case Prop::playerPosition: case Prop::mute: case Prop::EQEnabled: case Prop::AirPlayEnabled:
        return true;
    default:
        return between(property, Prop::album, Prop::location)
               || between(property, Prop::preamp, Prop::band10);
    }
}

[[noreturn]] void unsupported(ObjectClass objectClass, const QString &what)
{
    throwBridgeFailure(kBridgeErrorUnsupported,
                       QStringLiteral("%1 has no %2").arg(objectClassName(objectClass), what));
}

[[noreturn]] void noSuchObject()
{
    throwBridgeFailure(kBridgeErrorNoSuchObject, QStringLiteral("no such object"));
}

MemoryObjectPtr memoryObject(const RemoteObjectPtr &object)
{
    return std::dynamic_pointer_cast<MemoryObject>(object ? object->resolve() : nullptr);
}

QByteArray pngBytes(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

template <class List, class Object>
void removeAll(List &list, const Object &object)
{
    list.removeIf([&](const auto &entry) { return entry == object; });
}

} // namespace

// --- MemoryObject

MemoryObject::MemoryObject(MemoryPlayer *player, ObjectClass objectClass)
    : player_(player), class_(objectClass)
{
}

RemoteObjectPtr MemoryObject::resolve()
{
    Lock lock(player_->mutex_);
    return deleted_ || !slotOwner_.expired() ? nullptr : shared_from_this();
}

QVariant MemoryObject::read(Prop property)
{
    Lock lock(player_->mutex_);
    player_->checkFailure(this, property, MemoryPlayer::Access::Read);
    return player_->readValue(*this, property);
}

void MemoryObject::write(Prop property, const QVariant &value)
{
    Lock lock(player_->mutex_);
    player_->checkFailure(this, property, MemoryPlayer::Access::Write);
    player_->writeValue(*this, property, value);
}

RemoteObjectPtr MemoryObject::object(Prop relation)
{
    Lock lock(player_->mutex_);
    player_->checkFailure(this, relation, MemoryPlayer::Access::Read);
    return player_->relation(*this, relation);
}

RemoteObjectList MemoryObject::elements(Prop list)
{
    Lock lock(player_->mutex_);
    player_->checkFailure(this, list, MemoryPlayer::Access::Read);
    RemoteObjectList result;
    for (const MemoryObjectPtr &object : player_->listOf(*this, list))
        result.append(object);
    return result;
}

RemoteObjectPtr MemoryObject::elementAt(Prop list, qsizetype index)
{
    Lock lock(player_->mutex_);
    const RemoteObjectList all = elements(list);
    if (index >= 0 && index < all.size())
        return all.at(index);
    if (list != Prop::artworks || index < 0)
        return nullptr;
    // A slot past the end: it joins the track's artworks when it is first written.
    auto slot = std::make_shared<MemoryObject>(player_, ObjectClass::Artwork);
    slot->slotOwner_ = std::static_pointer_cast<MemoryObject>(shared_from_this());
    slot->container_ = slot->slotOwner_;
    return slot;
}

void MemoryObject::perform(Command command)
{
    Lock lock(player_->mutex_);
    player_->checkRunning();
    if (deleted_)
        noSuchObject();
    auto self = std::static_pointer_cast<MemoryObject>(shared_from_this());
    if (command == Command::reveal)
        player_->lastRevealed_ = self;
    else if (command == Command::deleteItem)
        player_->removeLocked(self);
    else if (command == Command::saveTags && isTrackClass(class_))
        return; // values are stored at once: nothing is pending
    else
        unsupported(class_, commandName(command));
}

RemoteObjectPtr MemoryObject::duplicateTo(const RemoteObjectPtr &target)
{
    Lock lock(player_->mutex_);
    const MemoryObjectPtr playlist = memoryObject(target);
    if (!isTrackClass(class_) || !playlist || playlist->class_ != ObjectClass::UserPlaylist)
        unsupported(class_, QStringLiteral("duplicateTo"));
    auto self = std::static_pointer_cast<MemoryObject>(shared_from_this());
    player_->addToPlaylist(self, playlist);
    return self;
}

RemoteObjectPtr MemoryObject::moveTo(const RemoteObjectPtr &target)
{
    Lock lock(player_->mutex_);
    const MemoryObjectPtr destination = memoryObject(target);
    if (!isUserPlaylistClass(class_) || !destination)
        unsupported(class_, QStringLiteral("moveTo"));
    if (destination->class_ == ObjectClass::Source) {
        parent_.reset();
    } else if (destination->class_ == ObjectClass::FolderPlaylist) {
        for (auto folder = destination; folder; folder = folder->parent_.lock())
            if (folder.get() == this)
                unsupported(class_, QStringLiteral("moveTo into itself"));
        parent_ = destination;
    } else {
        unsupported(class_, QStringLiteral("moveTo"));
    }
    return shared_from_this();
}

RemoteObjectPtr MemoryObject::make(ObjectClass objectClass, const QVariantMap &properties,
                                   Prop list, qsizetype index)
{
    Lock lock(player_->mutex_);
    if (class_ != ObjectClass::Source || list != Prop::userPlaylists
        || !isUserPlaylistClass(objectClass))
        unsupported(class_, QStringLiteral("make"));
    MemoryProperties values;
    for (auto it = properties.begin(); it != properties.end(); ++it) {
        if (it.key() == QLatin1String("name"))
            values.insert(Prop::name, it.value());
        else if (it.key() == QLatin1String("smart"))
            values.insert(Prop::smart, it.value());
        else if (it.key() == QLatin1String("shared"))
            values.insert(Prop::shared, it.value());
    }
    MemoryObjectPtr playlist = player_->newObject(objectClass, values);
    player_->insertPlaylist(std::static_pointer_cast<MemoryObject>(shared_from_this()), playlist,
                            index, nullptr);
    return playlist;
}

QVariant MemoryObject::stored(Prop property) const
{
    Lock lock(player_->mutex_);
    return values_.value(property);
}

void MemoryObject::setStored(Prop property, const QVariant &value)
{
    Lock lock(player_->mutex_);
    values_.insert(property, value);
}

void MemoryObject::setStored(const MemoryProperties &properties)
{
    Lock lock(player_->mutex_);
    values_.insert(properties);
}

bool MemoryObject::isDeleted() const
{
    Lock lock(player_->mutex_);
    return deleted_;
}

// --- MemoryPlayer: building

std::shared_ptr<MemoryPlayer> MemoryPlayer::create()
{
    return std::make_shared<MemoryPlayer>();
}

MemoryPlayer::MemoryPlayer() : notifier_(std::make_unique<PlayerNotifier>())
{
    values_ = {{Prop::name, QStringLiteral("iTunes")}, {Prop::version, QStringLiteral("12.5")},
               {Prop::playerState, kPSS}, {Prop::playerPosition, 0.0},
               {Prop::soundVolume, qint64(100)}, {Prop::mute, false}, {Prop::frontmost, false},
               {Prop::EQEnabled, false}, {Prop::AirPlayEnabled, false}};
    addSource(QStringLiteral("Library"), SourceKind::kLib);
}

MemoryPlayer::~MemoryPlayer() = default;

ITunesApplication MemoryPlayer::application(ScriptingBridgeDelegate *delegate)
{
    ITunesApplication app =
        ITunesApplication::withBackend(std::static_pointer_cast<PlayerBackend>(shared_from_this()));
    app.setDelegate(delegate);
    return app;
}

void MemoryPlayer::makeDefault()
{
    appContext()->setPlayerBackend(std::static_pointer_cast<PlayerBackend>(shared_from_this()));
}

MemoryObjectPtr MemoryPlayer::newObject(ObjectClass objectClass, const MemoryProperties &properties)
{
    auto object = std::make_shared<MemoryObject>(this, objectClass);
    object->values_.insert(Prop::persistentID,
                           QStringLiteral("%1").arg(nextID_++, 16, 16, QChar('0')).toUpper());
    if (isTrackClass(objectClass)) {
        object->values_.insert(Prop::ratingKind, kRtU);
        object->values_.insert(Prop::albumRatingKind, kRtU);
        object->values_.insert(Prop::mediaKind, kMdS);
        object->values_.insert(Prop::videoKind, kNon);
        object->values_.insert(Prop::enabled, true);
        object->values_.insert(Prop::databaseID, qint64(nextID_));
        object->values_.insert(Prop::dateAdded, QDateTime::currentDateTime());
    } else if (isPlaylistClass(objectClass)) {
        const FourCharCode special = objectClass == ObjectClass::LibraryPlaylist  ? kSpL
                                     : objectClass == ObjectClass::FolderPlaylist ? kSpF
                                                                                  : kNon;
        object->values_.insert(Prop::specialKind, special);
        object->values_.insert(Prop::songRepeat, kRpO);
    }
    object->values_.insert(properties);
    return object;
}

MemoryObjectPtr MemoryPlayer::librarySource() const
{
    Lock lock(mutex_);
    return sources_.value(0);
}

MemoryObjectPtr MemoryPlayer::libraryPlaylist(const MemoryObjectPtr &source) const
{
    Lock lock(mutex_);
    const MemoryObjectPtr owner = source ? source : librarySource();
    return owner ? owner->lists_.value(Prop::libraryPlaylists).value(0) : nullptr;
}

MemoryObjectPtr MemoryPlayer::addSource(const QString &name, SourceKind kind)
{
    Lock lock(mutex_);
    MemoryObjectPtr source = newObject(ObjectClass::Source, {{Prop::name, name}, {Prop::kind, FourCharCode(kind)}});
    MemoryObjectPtr library = newObject(ObjectClass::LibraryPlaylist, {{Prop::name, name}});
    library->container_ = source;
    source->lists_[Prop::libraryPlaylists].append(library);
    sources_.append(source);
    return source;
}

void MemoryPlayer::insertPlaylist(const MemoryObjectPtr &source, const MemoryObjectPtr &playlist,
                                  qsizetype index, const MemoryObjectPtr &folder)
{
    QList<MemoryObjectPtr> &playlists = source->lists_[Prop::userPlaylists];
    playlists.insert(std::clamp<qsizetype>(index, 0, playlists.size()), playlist);
    playlist->container_ = source;
    playlist->parent_ = folder;
}

MemoryObjectPtr MemoryPlayer::addUserPlaylist(const QString &name, const MemoryObjectPtr &folder,
                                              const MemoryProperties &properties)
{
    Lock lock(mutex_);
    MemoryProperties values = properties;
    values.insert(Prop::name, name);
    const ObjectClass objectClass = properties.contains(Prop::specialKind)
                                            && properties.value(Prop::specialKind).toUInt() == kSpF
                                        ? ObjectClass::FolderPlaylist
                                        : ObjectClass::UserPlaylist;
    MemoryObjectPtr playlist = newObject(objectClass, values);
    const MemoryObjectPtr source = folder ? folder->container_.lock() : librarySource();
    insertPlaylist(source, playlist, source->lists_.value(Prop::userPlaylists).size(), folder);
    return playlist;
}

MemoryObjectPtr MemoryPlayer::addFolderPlaylist(const QString &name, const MemoryObjectPtr &folder)
{
    return addUserPlaylist(name, folder, {{Prop::specialKind, kSpF}});
}

MemoryObjectPtr MemoryPlayer::addTrack(ObjectClass trackClass, const MemoryProperties &properties,
                                       const MemoryObjectPtr &source)
{
    Lock lock(mutex_);
    MemoryObjectPtr owner = source;
    if (!owner && trackClass == ObjectClass::SharedTrack) {
        auto shared = std::find_if(sources_.begin(), sources_.end(), [](const MemoryObjectPtr &s) {
            return SourceKind(s->values_.value(Prop::kind).toUInt()) == SourceKind::kShd;
        });
        owner = shared != sources_.end() ? *shared : nullptr;
    }
    MemoryObjectPtr track = newObject(trackClass, properties);
    MemoryObjectPtr library = libraryPlaylist(owner);
    track->container_ = library;
    library->lists_[Prop::tracks].append(track);
    return track;
}

MemoryObjectPtr MemoryPlayer::addFileTrack(const QString &name, const QString &location,
                                           const MemoryProperties &properties)
{
    MemoryProperties values = properties;
    values.insert(Prop::name, name);
    values.insert(Prop::location, location);
    return addTrack(ObjectClass::FileTrack, values);
}

MemoryObjectPtr MemoryPlayer::addURLTrack(const QString &name, const QString &address,
                                          const MemoryProperties &properties)
{
    MemoryProperties values = properties;
    values.insert(Prop::name, name);
    values.insert(Prop::address, address);
    values.insert(Prop::kind, QStringLiteral("Internet audio stream"));
    return addTrack(ObjectClass::URLTrack, values);
}

void MemoryPlayer::addToPlaylist(const MemoryObjectPtr &track, const MemoryObjectPtr &playlist)
{
    Lock lock(mutex_);
    playlist->lists_[Prop::tracks].append(track);
}

MemoryObjectPtr MemoryPlayer::addArtwork(const MemoryObjectPtr &track, const QImage &image)
{
    Lock lock(mutex_);
    const QByteArray bytes = pngBytes(image);
    MemoryObjectPtr artwork = newObject(ObjectClass::Artwork,
                                        {{Prop::rawData, bytes}, {Prop::format, artworkFormat(bytes)},
                                         {Prop::downloaded, false}});
    artwork->container_ = track;
    track->lists_[Prop::artworks].append(artwork);
    return artwork;
}

MemoryObjectPtr MemoryPlayer::addEQPreset(const QString &name, const MemoryProperties &properties)
{
    Lock lock(mutex_);
    MemoryObjectPtr preset = newObject(ObjectClass::EQPreset, properties);
    preset->values_.insert(Prop::name, name);
    eqPresets_.append(preset);
    return preset;
}

MemoryObjectPtr MemoryPlayer::addAirPlayDevice(const QString &name,
                                               const MemoryProperties &properties)
{
    Lock lock(mutex_);
    MemoryObjectPtr device = newObject(ObjectClass::AirPlayDevice, properties);
    device->values_.insert(Prop::name, name);
    airPlayDevices_.append(device);
    return device;
}

QList<MemoryObjectPtr> MemoryPlayer::tracks() const
{
    Lock lock(mutex_);
    return libraryPlaylist()->lists_.value(Prop::tracks);
}

void MemoryPlayer::remove(const MemoryObjectPtr &object)
{
    Lock lock(mutex_);
    removeLocked(object);
}

void MemoryPlayer::removeLocked(const MemoryObjectPtr &object)
{
    if (object->class_ == ObjectClass::Source || object->class_ == ObjectClass::LibraryPlaylist)
        unsupported(object->class_, QStringLiteral("delete"));
    if (isTrackClass(object->class_)) {
        for (const MemoryObjectPtr &source : std::as_const(sources_)) {
            for (const MemoryObjectPtr &playlist : playlistsOf(*source))
                removeAll(playlist->lists_[Prop::tracks], object);
        }
        removeAll(selection_, object);
    } else if (isUserPlaylistClass(object->class_)) {
        for (const MemoryObjectPtr &child : childrenOf(*object))
            removeLocked(child);
        if (const MemoryObjectPtr source = object->container_.lock())
            removeAll(source->lists_[Prop::userPlaylists], object);
    } else if (object->class_ == ObjectClass::Artwork) {
        if (const MemoryObjectPtr track = object->container_.lock())
            removeAll(track->lists_[Prop::artworks], object);
    }
    object->deleted_ = true;
}

// --- MemoryPlayer: state

void MemoryPlayer::setCurrentTrack(const MemoryObjectPtr &track)
{
    Lock lock(mutex_);
    currentTrack_ = track;
}

MemoryObjectPtr MemoryPlayer::currentTrackObject() const
{
    Lock lock(mutex_);
    const MemoryObjectPtr track = currentTrack_.lock();
    return track && !track->deleted_ ? track : nullptr;
}

void MemoryPlayer::setCurrentPlaylist(const MemoryObjectPtr &playlist)
{
    Lock lock(mutex_);
    currentPlaylist_ = playlist;
}

void MemoryPlayer::setSelection(const QList<MemoryObjectPtr> &tracks)
{
    Lock lock(mutex_);
    selection_ = tracks;
}

void MemoryPlayer::setPlayerState(FourCharCode state)
{
    setApplicationValue(Prop::playerState, state);
}

void MemoryPlayer::setApplicationValue(Prop property, const QVariant &value)
{
    Lock lock(mutex_);
    values_.insert(property, value);
}

QVariant MemoryPlayer::applicationValue(Prop property) const
{
    Lock lock(mutex_);
    return values_.value(property);
}

void MemoryPlayer::setRunning(bool running)
{
    Lock lock(mutex_);
    running_ = running;
}

void MemoryPlayer::setLaunchable(bool launchable)
{
    Lock lock(mutex_);
    launchable_ = launchable;
}

int MemoryPlayer::launchCount() const
{
    Lock lock(mutex_);
    return launchCount_;
}

MemoryObjectPtr MemoryPlayer::lastRevealed() const
{
    Lock lock(mutex_);
    return lastRevealed_.lock();
}

void MemoryPlayer::setMusicFolder(const QString &path)
{
    Lock lock(mutex_);
    musicFolder_ = path;
}

QString MemoryPlayer::musicFolder()
{
    Lock lock(mutex_);
    return musicFolder_;
}

bool MemoryPlayer::isRunning() const
{
    Lock lock(mutex_);
    return running_;
}

bool MemoryPlayer::launch()
{
    {
        Lock lock(mutex_);
        if (!launchable_)
            return false;
        ++launchCount_;
        if (running_)
            return true;
        running_ = true;
    }
    postLaunched();
    return true;
}

// --- Notifications

void MemoryPlayer::postPlayerInfo(const QVariantMap &userInfo)
{
    emit notifier_->playerInfo(userInfo);
}

void MemoryPlayer::postPlayerState(const QString &state)
{
    QVariantMap userInfo{{QStringLiteral("Player State"), state}};
    if (const MemoryObjectPtr track = currentTrackObject()) {
        userInfo.insert(QStringLiteral("Name"), track->stored(Prop::name));
        userInfo.insert(QStringLiteral("Artist"), track->stored(Prop::artist));
        userInfo.insert(QStringLiteral("Album"), track->stored(Prop::album));
        userInfo.insert(QStringLiteral("PersistentID"), track->stored(Prop::persistentID));
    }
    postPlayerInfo(userInfo);
}

void MemoryPlayer::postLaunched()
{
    emit notifier_->playerLaunched();
}

void MemoryPlayer::postTerminated()
{
    emit notifier_->playerTerminated();
}

// --- Failure injection and write counts

void MemoryPlayer::injectFailure(Prop property, Access access, int times, const RemoteObjectPtr &on)
{
    Lock lock(mutex_);
    failures_.append(Failure{property, access, times, on, on == nullptr});
}

void MemoryPlayer::clearFailures()
{
    Lock lock(mutex_);
    failures_.clear();
}

int MemoryPlayer::writeCount(Prop property) const
{
    Lock lock(mutex_);
    return writeCounts_.value(property);
}

int MemoryPlayer::totalWriteCount() const
{
    Lock lock(mutex_);
    int total = 0;
    for (int count : writeCounts_)
        total += count;
    return total;
}

void MemoryPlayer::resetWriteCounts()
{
    Lock lock(mutex_);
    writeCounts_.clear();
}

void MemoryPlayer::checkRunning() const
{
    if (!running_)
        throwBridgeFailure(kBridgeErrorNotRunning, QStringLiteral("the player is not running"));
}

void MemoryPlayer::checkFailure(const RemoteObject *object, Prop property, Access access)
{
    checkRunning();
    for (qsizetype i = 0; i < failures_.size(); ++i) {
        Failure &failure = failures_[i];
        if (failure.property != property || failure.access != access
            || (!failure.anyObject && failure.on.lock().get() != object))
            continue;
        if (failure.remaining != kAlways && --failure.remaining <= 0)
            failures_.removeAt(i);
        throwBridgeFailure(kBridgeErrorInjected,
                           QStringLiteral("injected failure: %1").arg(propertyName(property)));
    }
}

void MemoryPlayer::countWrite(Prop property)
{
    ++writeCounts_[property];
}

// --- The object model

QVariant MemoryPlayer::readValue(MemoryObject &object, Prop property)
{
    if (object.deleted_ || !object.slotOwner_.expired())
        noSuchObject();
    if (!supports(object.class_, property) || property == Prop::container
        || property == Prop::parent || property == Prop::artworks
        || between(property, Prop::tracks, Prop::fileTracks)
        || between(property, Prop::playlists, Prop::userPlaylists))
        unsupported(object.class_, propertyName(property));
    if (object.values_.contains(property))
        return object.values_.value(property);
    if (isPlaylistClass(object.class_)) {
        double duration = 0;
        qint64 size = 0;
        for (const MemoryObjectPtr &track : tracksOf(object)) {
            duration += track->values_.value(Prop::duration).toDouble();
            size += track->values_.value(Prop::size).toLongLong();
        }
        if (property == Prop::duration)
            return duration;
        if (property == Prop::size)
            return size;
        if (property == Prop::time)
            return durationText(duration);
    }
    if (isTrackClass(object.class_) && property == Prop::time)
        return durationText(object.values_.value(Prop::duration).toDouble());
    if (object.class_ == ObjectClass::Artwork && property == Prop::data)
        return QImage::fromData(object.values_.value(Prop::rawData).toByteArray());
    return {};
}

void MemoryPlayer::writeValue(MemoryObject &object, Prop property, const QVariant &value)
{
    if (object.deleted_)
        noSuchObject();
    if (!supports(object.class_, property) || !isWritable(property))
        unsupported(object.class_, QStringLiteral("writable ") + propertyName(property));
    if (object.class_ == ObjectClass::Artwork && (property == Prop::data || property == Prop::rawData)) {
        const QByteArray bytes = property == Prop::data ? pngBytes(value.value<QImage>())
                                                        : value.toByteArray();
        object.values_.insert(Prop::rawData, bytes);
        object.values_.insert(Prop::format, artworkFormat(bytes));
        if (const MemoryObjectPtr track = object.slotOwner_.lock()) {
            track->lists_[Prop::artworks].append(
                std::static_pointer_cast<MemoryObject>(object.shared_from_this()));
            object.slotOwner_.reset();
        }
    } else {
        object.values_.insert(property, value);
    }
    // Setting a rating makes it the user's own.
    if (property == Prop::rating)
        object.values_.insert(Prop::ratingKind, kRtU);
    else if (property == Prop::albumRating)
        object.values_.insert(Prop::albumRatingKind, kRtU);
    countWrite(property);
}

RemoteObjectPtr MemoryPlayer::relation(MemoryObject &object, Prop relation)
{
    if (object.deleted_)
        noSuchObject();
    if (relation == Prop::container) {
        if (object.class_ == ObjectClass::Source)
            return shared_from_this();
        if (const MemoryObjectPtr container = object.container_.lock())
            return container;
        noSuchObject();
    }
    if (relation == Prop::parent && isPlaylistClass(object.class_)) {
        std::weak_ptr<MemoryObject> parent = object.parent_;
        return std::make_shared<SpecifierObject>(ObjectClass::Playlist, [this, parent] {
            Lock lock(mutex_);
            const MemoryObjectPtr folder = parent.lock();
            return folder && !folder->deleted_ ? RemoteObjectPtr(folder) : nullptr;
        });
    }
    unsupported(object.class_, propertyName(relation));
}

QList<MemoryObjectPtr> MemoryPlayer::childrenOf(const MemoryObject &folder) const
{
    QList<MemoryObjectPtr> children;
    if (const MemoryObjectPtr source = folder.container_.lock()) {
        for (const MemoryObjectPtr &playlist : source->lists_.value(Prop::userPlaylists))
            if (playlist->parent_.lock().get() == &folder)
                children.append(playlist);
    }
    return children;
}

QList<MemoryObjectPtr> MemoryPlayer::tracksOf(const MemoryObject &playlist) const
{
    if (playlist.class_ != ObjectClass::FolderPlaylist)
        return playlist.lists_.value(Prop::tracks);
    // A folder holds the tracks of the playlists inside it.
    QList<MemoryObjectPtr> tracks;
    for (const MemoryObjectPtr &child : childrenOf(playlist))
        for (const MemoryObjectPtr &track : tracksOf(*child))
            if (!tracks.contains(track))
                tracks.append(track);
    return tracks;
}

QList<MemoryObjectPtr> MemoryPlayer::playlistsOf(const MemoryObject &source) const
{
    return source.lists_.value(Prop::libraryPlaylists) + source.lists_.value(Prop::userPlaylists);
}

QList<MemoryObjectPtr> MemoryPlayer::listOf(MemoryObject &object, Prop list)
{
    if (object.deleted_ || !object.slotOwner_.expired())
        noSuchObject();
    if (isTrackClass(object.class_) && list == Prop::artworks)
        return object.lists_.value(Prop::artworks);
    if (isPlaylistClass(object.class_) && list == Prop::tracks)
        return tracksOf(object);
    if (isPlaylistClass(object.class_) && list == Prop::fileTracks) {
        QList<MemoryObjectPtr> files = tracksOf(object);
        files.removeIf([](const MemoryObjectPtr &t) { return t->class_ != ObjectClass::FileTrack; });
        return files;
    }
    if (object.class_ == ObjectClass::Source && list == Prop::playlists)
        return playlistsOf(object);
    if (object.class_ == ObjectClass::Source
        && (list == Prop::libraryPlaylists || list == Prop::userPlaylists))
        return object.lists_.value(list);
    unsupported(object.class_, propertyName(list));
}

// --- The application object

QVariant MemoryPlayer::read(Prop property)
{
    Lock lock(mutex_);
    checkFailure(this, property, Access::Read);
    if (property != Prop::name
        && (!supports(ObjectClass::Application, property) || !values_.contains(property)))
        unsupported(ObjectClass::Application, propertyName(property));
    return values_.value(property);
}

void MemoryPlayer::write(Prop property, const QVariant &value)
{
    Lock lock(mutex_);
    checkFailure(this, property, Access::Write);
    if (!supports(ObjectClass::Application, property) || !isWritable(property))
        unsupported(ObjectClass::Application, QStringLiteral("writable ") + propertyName(property));
    values_.insert(property, value);
    countWrite(property);
}

RemoteObjectPtr MemoryPlayer::object(Prop relation)
{
    Lock lock(mutex_);
    checkFailure(this, relation, Access::Read);
    const std::weak_ptr<MemoryPlayer> self =
        std::static_pointer_cast<MemoryPlayer>(shared_from_this());
    if (relation == Prop::currentTrack) {
        return std::make_shared<SpecifierObject>(ObjectClass::Track, [self]() -> RemoteObjectPtr {
            const auto player = self.lock();
            return player ? player->currentTrackObject() : nullptr;
        });
    }
    if (relation == Prop::currentPlaylist) {
        return std::make_shared<SpecifierObject>(ObjectClass::Playlist, [self]() -> RemoteObjectPtr {
            const auto player = self.lock();
            if (!player)
                return nullptr;
            Lock lock(player->mutex_);
            const MemoryObjectPtr playlist = player->currentPlaylist_.lock();
            return playlist && !playlist->deleted_ ? playlist : nullptr;
        });
    }
    unsupported(ObjectClass::Application, propertyName(relation));
}

RemoteObjectList MemoryPlayer::elements(Prop list)
{
    Lock lock(mutex_);
    checkFailure(this, list, Access::Read);
    const QList<MemoryObjectPtr> *objects = list == Prop::sources          ? &sources_
                                            : list == Prop::selection      ? &selection_
                                            : list == Prop::EQPresets      ? &eqPresets_
                                            : list == Prop::AirPlayDevices ? &airPlayDevices_
                                                                           : nullptr;
    if (!objects)
        unsupported(ObjectClass::Application, propertyName(list));
    return RemoteObjectList(objects->begin(), objects->end());
}

void MemoryPlayer::stepTrack(int step)
{
    const MemoryObjectPtr playlist = currentPlaylist_.lock();
    const QList<MemoryObjectPtr> queue = tracksOf(playlist ? *playlist : *libraryPlaylist());
    if (queue.isEmpty())
        return;
    const qsizetype index = queue.indexOf(currentTrackObject());
    currentTrack_ = queue.at(index < 0 ? 0 : (index + step + queue.size()) % queue.size());
    values_.insert(Prop::playerPosition, 0.0);
}

void MemoryPlayer::perform(Command command)
{
    Lock lock(mutex_);
    checkRunning();
    const FourCharCode state = values_.value(Prop::playerState).toUInt();
    switch (command) {
    case Command::playpause:
        if (!currentTrackObject())
            stepTrack(0);
        if (state == kPSP)
            values_.insert(Prop::playerState, kPSp);
        else if (currentTrackObject())
            values_.insert(Prop::playerState, kPSP);
        break;
    case Command::nextTrack:
        stepTrack(1);
        break;
    case Command::backTrack:
        stepTrack(-1);
        break;
    case Command::fastForward:
        values_.insert(Prop::playerState, kPSF);
        break;
    case Command::rewind:
        values_.insert(Prop::playerState, kPSR);
        break;
    case Command::resume:
        if (state == kPSF || state == kPSR)
            values_.insert(Prop::playerState, kPSP);
        break;
    case Command::activate:
        values_.insert(Prop::frontmost, true);
        break;
    default:
        unsupported(ObjectClass::Application, commandName(command));
    }
}

RemoteObjectList MemoryPlayer::add(const QStringList &paths, const RemoteObjectPtr &to)
{
    Lock lock(mutex_);
    checkRunning();
    const MemoryObjectPtr playlist = memoryObject(to);
    QStringList files;
    for (const QString &path : paths) {
        const QFileInfo info(path);
        if (info.isFile()) {
            files.append(info.absoluteFilePath());
        } else if (info.isDir()) {
            QStringList inside;
            QDirIterator it(path, QDir::Files, QDirIterator::Subdirectories);
            while (it.hasNext())
                inside.append(QFileInfo(it.next()).absoluteFilePath());
            inside.sort();
            files += inside;
        }
    }
    RemoteObjectList added;
    for (const QString &file : std::as_const(files)) {
        const QFileInfo info(file);
        MemoryObjectPtr track = addFileTrack(info.completeBaseName(), file,
                                             {{Prop::size, info.size()},
                                              {Prop::kind, info.suffix().toUpper() + " audio file"}});
        if (playlist && playlist->class_ == ObjectClass::UserPlaylist)
            playlist->lists_[Prop::tracks].append(track);
        added.append(track);
    }
    return added;
}
