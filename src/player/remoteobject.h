#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <memory>
#include <stdexcept>

// The backend side of the player bridge. A backend (the in-memory player, the library, the
// MPRIS player, the composite) models the player as a tree of RemoteObjects; the handle types
// of itunes.h wrap them and turn every failure into an empty value plus a delegate call.

// The classes of remote objects that the program tells apart. isKindOf() follows the
// player's own hierarchy: a folder playlist is a user playlist, every track is an item.
enum class ObjectClass {
    Application,
    Item,
    Track,
    FileTrack,
    URLTrack,
    SharedTrack,
    AudioCDTrack,
    Playlist,
    LibraryPlaylist,
    UserPlaylist,
    FolderPlaylist,
    Source,
    Artwork,
    AirPlayDevice,
    EQPreset,
};

bool objectClassIsKindOf(ObjectClass actual, ObjectClass wanted);
QString objectClassName(ObjectClass objectClass); // "ITunesFileTrack" ...

// Every property, relation and element list that the program reads or writes, of any class.
// Values: text as QString, integers as qint64, seconds and sizes as double or qint64 as the
// player gives them, enumerators as FourCharCode (quint32), dates as QDateTime, bytes as
// QByteArray, pictures as QImage.
enum class Prop {
    // item
    name, persistentID, container,
    // track: read and write
    album, albumArtist, artist, composer, genre, grouping, comment, lyrics, show, episodeID,
    objectDescription, sortName, sortAlbum, sortAlbumArtist, sortArtist, sortComposer, sortShow,
    year, bpm, trackNumber, trackCount, discNumber, discCount, episodeNumber, seasonNumber,
    playedCount, start, finish, rating, albumRating, loved, albumLoved, location,
    // track: read only
    ratingKind, albumRatingKind, mediaKind, videoKind, kind, time, duration, size, bitRate,
    sampleRate, EQ, enabled, gapless, shufflable, bookmarkable, compilation, unplayed, dateAdded,
    modificationDate, playedDate, skippedDate, skippedCount, volumeAdjustment, databaseID,
    artworks,
    // the store values held in the track's file: a map with keys "itsk/apID", "itsk/ownr",
    // "itsk/purd", "itsk/rtng" (absent keys are not in the file)
    storeMetadata,
    // URL track
    address,
    // artwork
    data, rawData, format, downloaded,
    // playlist
    shuffle, songRepeat, specialKind, parent, tracks, fileTracks, smart,
    shared,
    // source
    capacity, freeSpace, playlists, libraryPlaylists, userPlaylists,
    // AirPlay device
    networkAddress, active, available, protected_, selected, supportsAudio, supportsVideo,
    // EQ preset
    preamp, band1, band2, band3, band4, band5, band6, band7, band8, band9, band10,
    // application
    currentTrack, currentPlaylist, playerState, playerPosition, soundVolume, mute, frontmost,
    EQEnabled, AirPlayEnabled, EQPresets, AirPlayDevices, sources, selection, version,
};

QString propertyName(Prop property); // the scripting name, "rating", "albumArtist" ...

// Commands that take no argument, on the application or on an item. saveTags writes a track's
// pending file tag changes now (a backend that stores at once has nothing to do).
enum class Command {
    playpause, nextTrack, backTrack, fastForward, rewind, resume, activate, reveal, deleteItem,
    saveTags,
};

QString commandName(Command command);

// What went wrong in one call; the handle passes it to its connection's delegate.
struct BridgeError
{
    QString domain;  // "OrvaneBridgeErrorDomain", "org.freedesktop.DBus.Error.ServiceUnknown" ...
    int code = 0;
    QString message; // for people and logs
};

// Thrown by backends for a call that failed; never seen by the program's logic.
class BridgeFailure : public std::runtime_error
{
public:
    explicit BridgeFailure(BridgeError error);
    const BridgeError &error() const { return error_; }

private:
    BridgeError error_;
};

// Codes of BridgeError in the bridge's own domain.
inline const QString kBridgeErrorDomain = QStringLiteral("OrvaneBridgeErrorDomain");
enum BridgeErrorCode {
    kBridgeErrorUnsupported = -1708, // the object does not understand the call
    kBridgeErrorNoSuchObject = -1728, // the object is gone
    kBridgeErrorNotRunning = -600,    // the player is not running
    kBridgeErrorWriteFailed = -5000,  // a value could not be stored (file tag save failed ...)
    kBridgeErrorTimeout = -1712,
    kBridgeErrorInjected = -1,        // a failure injected by a test
};

[[noreturn]] void throwBridgeFailure(int code, const QString &message);

class RemoteObject;
using RemoteObjectPtr = std::shared_ptr<RemoteObject>;
using RemoteObjectList = QList<RemoteObjectPtr>;

// One object of the player. Every call may throw BridgeFailure. The defaults answer
// "unsupported", so a backend implements only what its objects have.
class RemoteObject : public std::enable_shared_from_this<RemoteObject>
{
public:
    virtual ~RemoteObject() = default;

    // The class of the object; for an unresolved specifier, the class it was declared with.
    virtual ObjectClass objectClass() const = 0;

    // get(): the concrete object, or null when there is none. Concrete objects return
    // themselves.
    virtual RemoteObjectPtr resolve();

    // Same object in the player (same backend and identity), for comparisons of handles.
    virtual bool isSameObject(const RemoteObject &other) const { return this == &other; }

    virtual QVariant read(Prop property);
    virtual void write(Prop property, const QVariant &value);
    virtual RemoteObjectPtr object(Prop relation);      // container, parent, currentTrack ...
    virtual RemoteObjectList elements(Prop list);       // tracks, artworks, sources ...
    // The element at an index of a list; may be past the end (writing an artwork slot past
    // the end appends one). Default: from elements(), null past the end.
    virtual RemoteObjectPtr elementAt(Prop list, qsizetype index);

    virtual void perform(Command command);
    virtual RemoteObjectPtr duplicateTo(const RemoteObjectPtr &target);
    virtual RemoteObjectPtr moveTo(const RemoteObjectPtr &target);

    // Makes a new element of a list from properties and inserts it at an index (a user or
    // folder playlist into a source's userPlaylists, at 0). Returns the new object.
    virtual RemoteObjectPtr make(ObjectClass objectClass, const QVariantMap &properties,
                                 Prop list, qsizetype index);

    // The application: adds files and folders to the library, into a playlist if given.
    virtual RemoteObjectList add(const QStringList &paths, const RemoteObjectPtr &to);
};

// A lazy reference: every call resolves afresh, as a reference into the player would. Backends
// hand these out for currentTrack and the like.
class SpecifierObject : public RemoteObject
{
public:
    using Resolver = std::function<RemoteObjectPtr()>;
    SpecifierObject(ObjectClass declaredClass, Resolver resolver);

    ObjectClass objectClass() const override { return declaredClass_; }
    RemoteObjectPtr resolve() override;
    QVariant read(Prop property) override;
    void write(Prop property, const QVariant &value) override;
    RemoteObjectPtr object(Prop relation) override;
    RemoteObjectList elements(Prop list) override;
    RemoteObjectPtr elementAt(Prop list, qsizetype index) override;
    void perform(Command command) override;

private:
    RemoteObjectPtr target(); // resolves or throws "no such object"

    ObjectClass declaredClass_;
    Resolver resolver_;
};
