#include "player/remoteobject.h"

#include <QHash>

namespace {

ObjectClass parentClass(ObjectClass objectClass)
{
    switch (objectClass) {
    case ObjectClass::FileTrack:
    case ObjectClass::URLTrack:
    case ObjectClass::SharedTrack:
    case ObjectClass::AudioCDTrack:
        return ObjectClass::Track;
    case ObjectClass::LibraryPlaylist:
    case ObjectClass::UserPlaylist:
        return ObjectClass::Playlist;
    case ObjectClass::FolderPlaylist:
        return ObjectClass::UserPlaylist;
    default:
        return ObjectClass::Item;
    }
}

[[noreturn]] void unsupported(const QString &what)
{
    throwBridgeFailure(kBridgeErrorUnsupported, QStringLiteral("unsupported: %1").arg(what));
}

} // namespace

bool objectClassIsKindOf(ObjectClass actual, ObjectClass wanted)
{
    if (actual == wanted)
        return true;
    if (actual == ObjectClass::Application || actual == ObjectClass::Item)
        return false;
    return objectClassIsKindOf(parentClass(actual), wanted);
}

QString objectClassName(ObjectClass objectClass)
{
    switch (objectClass) {
    case ObjectClass::Application: return QStringLiteral("ITunesApplication");
    case ObjectClass::Item: return QStringLiteral("ITunesItem");
    case ObjectClass::Track: return QStringLiteral("ITunesTrack");
    case ObjectClass::FileTrack: return QStringLiteral("ITunesFileTrack");
    case ObjectClass::URLTrack: return QStringLiteral("ITunesURLTrack");
    case ObjectClass::SharedTrack: return QStringLiteral("ITunesSharedTrack");
    case ObjectClass::AudioCDTrack: return QStringLiteral("ITunesAudioCDTrack");
    case ObjectClass::Playlist: return QStringLiteral("ITunesPlaylist");
    case ObjectClass::LibraryPlaylist: return QStringLiteral("ITunesLibraryPlaylist");
    case ObjectClass::UserPlaylist: return QStringLiteral("ITunesUserPlaylist");
    case ObjectClass::FolderPlaylist: return QStringLiteral("ITunesFolderPlaylist");
    case ObjectClass::Source: return QStringLiteral("ITunesSource");
    case ObjectClass::Artwork: return QStringLiteral("ITunesArtwork");
    case ObjectClass::AirPlayDevice: return QStringLiteral("ITunesAirPlayDevice");
    case ObjectClass::EQPreset: return QStringLiteral("ITunesEQPreset");
    }
    return {};
}

QString propertyName(Prop property)
{
    static const QHash<Prop, QString> names = {
        {Prop::name, "name"}, {Prop::persistentID, "persistentID"}, {Prop::container, "container"},
        {Prop::album, "album"}, {Prop::albumArtist, "albumArtist"}, {Prop::artist, "artist"},
        {Prop::composer, "composer"}, {Prop::genre, "genre"}, {Prop::grouping, "grouping"},
        {Prop::comment, "comment"}, {Prop::lyrics, "lyrics"}, {Prop::show, "show"},
        {Prop::episodeID, "episodeID"}, {Prop::objectDescription, "objectDescription"},
        {Prop::sortName, "sortName"}, {Prop::sortAlbum, "sortAlbum"},
        {Prop::sortAlbumArtist, "sortAlbumArtist"}, {Prop::sortArtist, "sortArtist"},
        {Prop::sortComposer, "sortComposer"}, {Prop::sortShow, "sortShow"}, {Prop::year, "year"},
        {Prop::bpm, "bpm"}, {Prop::trackNumber, "trackNumber"}, {Prop::trackCount, "trackCount"},
        {Prop::discNumber, "discNumber"}, {Prop::discCount, "discCount"},
        {Prop::episodeNumber, "episodeNumber"}, {Prop::seasonNumber, "seasonNumber"},
        {Prop::playedCount, "playedCount"}, {Prop::start, "start"}, {Prop::finish, "finish"},
        {Prop::rating, "rating"}, {Prop::albumRating, "albumRating"}, {Prop::loved, "loved"},
        {Prop::albumLoved, "albumLoved"}, {Prop::location, "location"},
        {Prop::ratingKind, "ratingKind"}, {Prop::albumRatingKind, "albumRatingKind"},
        {Prop::mediaKind, "mediaKind"}, {Prop::videoKind, "videoKind"}, {Prop::kind, "kind"},
        {Prop::time, "time"}, {Prop::duration, "duration"}, {Prop::size, "size"},
        {Prop::bitRate, "bitRate"}, {Prop::sampleRate, "sampleRate"}, {Prop::EQ, "EQ"},
        {Prop::enabled, "enabled"}, {Prop::gapless, "gapless"}, {Prop::shufflable, "shufflable"},
        {Prop::bookmarkable, "bookmarkable"}, {Prop::compilation, "compilation"},
        {Prop::unplayed, "unplayed"}, {Prop::dateAdded, "dateAdded"},
        {Prop::modificationDate, "modificationDate"}, {Prop::playedDate, "playedDate"},
        {Prop::skippedDate, "skippedDate"}, {Prop::skippedCount, "skippedCount"},
        {Prop::volumeAdjustment, "volumeAdjustment"}, {Prop::databaseID, "databaseID"},
        {Prop::artworks, "artworks"}, {Prop::storeMetadata, "storeMetadata"},
        {Prop::address, "address"}, {Prop::data, "data"}, {Prop::rawData, "rawData"},
        {Prop::format, "format"}, {Prop::downloaded, "downloaded"}, {Prop::shuffle, "shuffle"},
        {Prop::songRepeat, "songRepeat"}, {Prop::specialKind, "specialKind"},
        {Prop::parent, "parent"}, {Prop::tracks, "tracks"}, {Prop::fileTracks, "fileTracks"},
        {Prop::smart, "smart"}, {Prop::shared, "shared"}, {Prop::capacity, "capacity"},
        {Prop::freeSpace, "freeSpace"}, {Prop::playlists, "playlists"},
        {Prop::libraryPlaylists, "libraryPlaylists"}, {Prop::userPlaylists, "userPlaylists"},
        {Prop::networkAddress, "networkAddress"}, {Prop::active, "active"},
        {Prop::available, "available"}, {Prop::protected_, "protected"},
        {Prop::selected, "selected"}, {Prop::supportsAudio, "supportsAudio"},
        {Prop::supportsVideo, "supportsVideo"}, {Prop::preamp, "preamp"}, {Prop::band1, "band1"},
        {Prop::band2, "band2"}, {Prop::band3, "band3"}, {Prop::band4, "band4"},
        {Prop::band5, "band5"}, {Prop::band6, "band6"}, {Prop::band7, "band7"},
        {Prop::band8, "band8"}, {Prop::band9, "band9"}, {Prop::band10, "band10"},
        {Prop::currentTrack, "currentTrack"}, {Prop::currentPlaylist, "currentPlaylist"},
        {Prop::playerState, "playerState"}, {Prop::playerPosition, "playerPosition"},
        {Prop::soundVolume, "soundVolume"}, {Prop::mute, "mute"}, {Prop::frontmost, "frontmost"},
        {Prop::EQEnabled, "EQEnabled"}, {Prop::AirPlayEnabled, "AirPlayEnabled"},
        {Prop::EQPresets, "EQPresets"}, {Prop::AirPlayDevices, "AirPlayDevices"},
        {Prop::sources, "sources"}, {Prop::selection, "selection"}, {Prop::version, "version"},
    };
    return names.value(property);
}

QString commandName(Command command)
{
    switch (command) {
    case Command::playpause: return QStringLiteral("playpause");
    case Command::nextTrack: return QStringLiteral("nextTrack");
    case Command::backTrack: return QStringLiteral("backTrack");
    case Command::fastForward: return QStringLiteral("fastForward");
    case Command::rewind: return QStringLiteral("rewind");
    case Command::resume: return QStringLiteral("resume");
    case Command::activate: return QStringLiteral("activate");
    case Command::reveal: return QStringLiteral("reveal");
    case Command::deleteItem: return QStringLiteral("delete");
    case Command::saveTags: return QStringLiteral("saveTags");
    }
    return {};
}

BridgeFailure::BridgeFailure(BridgeError error)
    : std::runtime_error(error.message.toStdString()), error_(std::move(error))
{
}

void throwBridgeFailure(int code, const QString &message)
{
    throw BridgeFailure(BridgeError{kBridgeErrorDomain, code, message});
}

RemoteObjectPtr RemoteObject::resolve()
{
    return shared_from_this();
}

QVariant RemoteObject::read(Prop property)
{
    unsupported(propertyName(property));
}

void RemoteObject::write(Prop property, const QVariant &)
{
    unsupported(propertyName(property));
}

RemoteObjectPtr RemoteObject::object(Prop relation)
{
    unsupported(propertyName(relation));
}

RemoteObjectList RemoteObject::elements(Prop list)
{
    unsupported(propertyName(list));
}

RemoteObjectPtr RemoteObject::elementAt(Prop list, qsizetype index)
{
    const RemoteObjectList all = elements(list);
    return index >= 0 && index < all.size() ? all.at(index) : nullptr;
}

void RemoteObject::perform(Command command)
{
    unsupported(commandName(command));
}

RemoteObjectPtr RemoteObject::duplicateTo(const RemoteObjectPtr &)
{
    unsupported(QStringLiteral("duplicateTo"));
}

RemoteObjectPtr RemoteObject::moveTo(const RemoteObjectPtr &)
{
    unsupported(QStringLiteral("moveTo"));
}

RemoteObjectPtr RemoteObject::make(ObjectClass, const QVariantMap &, Prop, qsizetype)
{
    unsupported(QStringLiteral("make"));
}

RemoteObjectList RemoteObject::add(const QStringList &, const RemoteObjectPtr &)
{
    unsupported(QStringLiteral("add"));
}

SpecifierObject::SpecifierObject(ObjectClass declaredClass, Resolver resolver)
    : declaredClass_(declaredClass), resolver_(std::move(resolver))
{
}

RemoteObjectPtr SpecifierObject::resolve()
{
    RemoteObjectPtr resolved = resolver_ ? resolver_() : nullptr;
    return resolved ? resolved->resolve() : nullptr;
}

RemoteObjectPtr SpecifierObject::target()
{
    RemoteObjectPtr resolved = resolve();
    if (!resolved)
        throwBridgeFailure(kBridgeErrorNoSuchObject, QStringLiteral("no such object"));
    return resolved;
}

QVariant SpecifierObject::read(Prop property) { return target()->read(property); }
void SpecifierObject::write(Prop property, const QVariant &value) { target()->write(property, value); }
RemoteObjectPtr SpecifierObject::object(Prop relation) { return target()->object(relation); }
RemoteObjectList SpecifierObject::elements(Prop list) { return target()->elements(list); }
RemoteObjectPtr SpecifierObject::elementAt(Prop list, qsizetype index) { return target()->elementAt(list, index); }
void SpecifierObject::perform(Command command) { target()->perform(command); }
