#pragma once

#include "player/scriptingobject.h"

// The player's object model as the program's logic sees it. The names are the player's
// scripting names; each read or write is one call into the backend.

class ITunesPlaylist;
class ITunesSource;
class ITunesTrack;

class ITunesItem : public ScriptingObject
{
public:
    static constexpr ObjectClass kClass = ObjectClass::Item;
    using ScriptingObject::ScriptingObject;

    QString name() const { return text(Prop::name); }
    void setName(const QString &name) const { setValue(Prop::name, name); }
    QString persistentID() const { return text(Prop::persistentID); }
    // A specifier: resolve it with get() before a kind test.
    ITunesItem container() const { return wrap<ITunesItem>(relatedObject(Prop::container)); }

    void reveal() const { performCommand(Command::reveal); }
    void deleteItem() const { performCommand(Command::deleteItem); } // the player's "delete"
    ITunesItem duplicateTo(const ScriptingObject &target) const;
    ITunesItem moveTo(const ScriptingObject &target) const;

    ITunesItem get() const { return wrap<ITunesItem>(resolvedObject()); }
};

class ITunesArtwork : public ITunesItem
{
public:
    static constexpr ObjectClass kClass = ObjectClass::Artwork;
    using ITunesItem::ITunesItem;

    QImage data() const { return value(Prop::data).value<QImage>(); }
    void setData(const QImage &image) const { setValue(Prop::data, image); }
    QByteArray rawData() const { return value(Prop::rawData).toByteArray(); }
    void setRawData(const QByteArray &bytes) const { setValue(Prop::rawData, bytes); }
    FourCharCode format() const { return code(Prop::format); }
    bool downloaded() const { return boolean(Prop::downloaded); }
    QString objectDescription() const { return text(Prop::objectDescription); }
    void setObjectDescription(const QString &text) const { setValue(Prop::objectDescription, text); }
};

class ITunesTrack : public ITunesItem
{
public:
    static constexpr ObjectClass kClass = ObjectClass::Track;
    using ITunesItem::ITunesItem;

    ITunesTrack get() const { return wrap<ITunesTrack>(resolvedObject()); }

    // Read and write.
    QString album() const { return text(Prop::album); }
    void setAlbum(const QString &v) const { setValue(Prop::album, v); }
    QString albumArtist() const { return text(Prop::albumArtist); }
    void setAlbumArtist(const QString &v) const { setValue(Prop::albumArtist, v); }
    QString artist() const { return text(Prop::artist); }
    void setArtist(const QString &v) const { setValue(Prop::artist, v); }
    QString composer() const { return text(Prop::composer); }
    void setComposer(const QString &v) const { setValue(Prop::composer, v); }
    QString genre() const { return text(Prop::genre); }
    void setGenre(const QString &v) const { setValue(Prop::genre, v); }
    QString grouping() const { return text(Prop::grouping); }
    void setGrouping(const QString &v) const { setValue(Prop::grouping, v); }
    QString comment() const { return text(Prop::comment); }
    void setComment(const QString &v) const { setValue(Prop::comment, v); }
    QString lyrics() const { return text(Prop::lyrics); }
    void setLyrics(const QString &v) const { setValue(Prop::lyrics, v); }
    QString show() const { return text(Prop::show); }
    void setShow(const QString &v) const { setValue(Prop::show, v); }
    QString episodeID() const { return text(Prop::episodeID); }
    void setEpisodeID(const QString &v) const { setValue(Prop::episodeID, v); }
    QString objectDescription() const { return text(Prop::objectDescription); }
    void setObjectDescription(const QString &v) const { setValue(Prop::objectDescription, v); }
    QString sortName() const { return text(Prop::sortName); }
    void setSortName(const QString &v) const { setValue(Prop::sortName, v); }
    QString sortAlbum() const { return text(Prop::sortAlbum); }
    void setSortAlbum(const QString &v) const { setValue(Prop::sortAlbum, v); }
    QString sortAlbumArtist() const { return text(Prop::sortAlbumArtist); }
    void setSortAlbumArtist(const QString &v) const { setValue(Prop::sortAlbumArtist, v); }
    QString sortArtist() const { return text(Prop::sortArtist); }
    void setSortArtist(const QString &v) const { setValue(Prop::sortArtist, v); }
    QString sortComposer() const { return text(Prop::sortComposer); }
    void setSortComposer(const QString &v) const { setValue(Prop::sortComposer, v); }
    QString sortShow() const { return text(Prop::sortShow); }
    void setSortShow(const QString &v) const { setValue(Prop::sortShow, v); }
    qint64 year() const { return integer(Prop::year); }
    void setYear(qint64 v) const { setValue(Prop::year, v); }
    qint64 bpm() const { return integer(Prop::bpm); }
    void setBpm(qint64 v) const { setValue(Prop::bpm, v); }
    qint64 trackNumber() const { return integer(Prop::trackNumber); }
    void setTrackNumber(qint64 v) const { setValue(Prop::trackNumber, v); }
    qint64 trackCount() const { return integer(Prop::trackCount); }
    void setTrackCount(qint64 v) const { setValue(Prop::trackCount, v); }
    qint64 discNumber() const { return integer(Prop::discNumber); }
    void setDiscNumber(qint64 v) const { setValue(Prop::discNumber, v); }
    qint64 discCount() const { return integer(Prop::discCount); }
    void setDiscCount(qint64 v) const { setValue(Prop::discCount, v); }
    qint64 episodeNumber() const { return integer(Prop::episodeNumber); }
    void setEpisodeNumber(qint64 v) const { setValue(Prop::episodeNumber, v); }
    qint64 seasonNumber() const { return integer(Prop::seasonNumber); }
    void setSeasonNumber(qint64 v) const { setValue(Prop::seasonNumber, v); }
    qint64 playedCount() const { return integer(Prop::playedCount); }
    void setPlayedCount(qint64 v) const { setValue(Prop::playedCount, v); }
    double start() const { return real(Prop::start); }   // seconds
    void setStart(double v) const { setValue(Prop::start, v); }
    double finish() const { return real(Prop::finish); } // seconds
    void setFinish(double v) const { setValue(Prop::finish, v); }
    qint64 rating() const { return integer(Prop::rating); } // 0 to 100, a star is 20
    void setRating(qint64 v) const { setValue(Prop::rating, v); }
    qint64 albumRating() const { return integer(Prop::albumRating); }
    void setAlbumRating(qint64 v) const { setValue(Prop::albumRating, v); }
    bool loved() const { return boolean(Prop::loved); }
    void setLoved(bool v) const { setValue(Prop::loved, v); }
    bool albumLoved() const { return boolean(Prop::albumLoved); }
    void setAlbumLoved(bool v) const { setValue(Prop::albumLoved, v); }

    // Read only.
    FourCharCode ratingKind() const { return code(Prop::ratingKind); }
    FourCharCode albumRatingKind() const { return code(Prop::albumRatingKind); }
    FourCharCode mediaKind() const { return code(Prop::mediaKind); }
    FourCharCode videoKind() const { return code(Prop::videoKind); }
    QString kind() const { return text(Prop::kind); }        // "MPEG audio file" ...
    QString time() const { return text(Prop::time); }        // "3:25"
    double duration() const { return real(Prop::duration); } // seconds
    qint64 size() const { return integer(Prop::size); }      // bytes
    qint64 bitRate() const { return integer(Prop::bitRate); } // kbps
    qint64 sampleRate() const { return integer(Prop::sampleRate); }
    QString EQ() const { return text(Prop::EQ); }
    bool enabled() const { return boolean(Prop::enabled); }
    bool gapless() const { return boolean(Prop::gapless); }
    bool shufflable() const { return boolean(Prop::shufflable); }
    bool bookmarkable() const { return boolean(Prop::bookmarkable); }
    bool compilation() const { return boolean(Prop::compilation); }
    bool unplayed() const { return boolean(Prop::unplayed); }
    QDateTime dateAdded() const { return date(Prop::dateAdded); }
    QDateTime modificationDate() const { return date(Prop::modificationDate); }
    QDateTime playedDate() const { return date(Prop::playedDate); }
    QDateTime skippedDate() const { return date(Prop::skippedDate); }
    qint64 skippedCount() const { return integer(Prop::skippedCount); }
    qint64 volumeAdjustment() const { return integer(Prop::volumeAdjustment); }
    qint64 databaseID() const { return integer(Prop::databaseID); }
    QVariantMap storeMetadata() const { return value(Prop::storeMetadata).toMap(); }

    // Writes the pending file tag changes of this track now. Unlike every other call this one
    // raises: a failed save throws OVException (the backend has rolled the track back), so the
    // organizer can log it against the track.
    void saveTags() const;

    QList<ITunesArtwork> artworks() const;
    // The artwork at an index counted from 0; past the end a slot whose setData appends.
    ITunesArtwork artworkAt(qsizetype index) const;

    // The auto-love settings, read afresh from the general preference file at every call, so a
    // change counts here only once the general preferences are saved. An empty map when the
    // file cannot be read or is empty.
    static QVariantMap ov_generalPreferencesInfo();
    // The value of a key if it has the wanted type; any number (boolean, integer or real)
    // counts as every number type, as one number class would.
    static QVariant ov_generalPreferencesInfoValueForKey(const QString &key, QMetaType andClass);
    static bool ov_useAutoLovedRating(); // "UseAutoLove"
    static qint64 ov_autoLovedRating();  // "UseAutoLoveValue", 0 to 100
};

class ITunesFileTrack : public ITunesTrack
{
public:
    static constexpr ObjectClass kClass = ObjectClass::FileTrack;
    using ITunesTrack::ITunesTrack;

    // The file's absolute path; empty when the file is gone.
    QString location() const { return text(Prop::location); }
    void setLocation(const QString &path) const { setValue(Prop::location, path); }
};

class ITunesURLTrack : public ITunesTrack
{
public:
    static constexpr ObjectClass kClass = ObjectClass::URLTrack;
    using ITunesTrack::ITunesTrack;

    QString address() const { return text(Prop::address); }
};

class ITunesSharedTrack : public ITunesTrack
{
public:
    static constexpr ObjectClass kClass = ObjectClass::SharedTrack;
    using ITunesTrack::ITunesTrack;
};

class ITunesAudioCDTrack : public ITunesTrack
{
public:
    static constexpr ObjectClass kClass = ObjectClass::AudioCDTrack;
    using ITunesTrack::ITunesTrack;
};

class ITunesPlaylist : public ITunesItem
{
public:
    static constexpr ObjectClass kClass = ObjectClass::Playlist;
    using ITunesItem::ITunesItem;

    ITunesPlaylist get() const { return wrap<ITunesPlaylist>(resolvedObject()); }

    QString time() const { return text(Prop::time); } // "1:02:03"
    double duration() const { return real(Prop::duration); }
    qint64 size() const { return integer(Prop::size); }
    bool loved() const { return boolean(Prop::loved); }
    bool shuffle() const { return boolean(Prop::shuffle); }
    FourCharCode songRepeat() const { return code(Prop::songRepeat); }
    FourCharCode specialKind() const { return code(Prop::specialKind); }
    // Specifiers: resolve with get().
    ITunesPlaylist parent() const { return wrap<ITunesPlaylist>(relatedObject(Prop::parent)); }
    QList<ITunesTrack> tracks() const;
    QList<ITunesFileTrack> fileTracks() const; // library and user playlists
    bool smart() const { return boolean(Prop::smart); }   // user playlists
    bool shared() const { return boolean(Prop::shared); } // user playlists

    // The playlist's place as "Source/Folder/Playlist"; empty for a null playlist or one whose
    // container cannot be had. The library playlist has no container to ask.
    QString ov_path() const;
    // The count of tracks, never negative.
    qint64 ov_tracksCount() const;
};

class ITunesLibraryPlaylist : public ITunesPlaylist
{
public:
    static constexpr ObjectClass kClass = ObjectClass::LibraryPlaylist;
    using ITunesPlaylist::ITunesPlaylist;
};

class ITunesUserPlaylist : public ITunesPlaylist
{
public:
    static constexpr ObjectClass kClass = ObjectClass::UserPlaylist;
    using ITunesPlaylist::ITunesPlaylist;
};

class ITunesFolderPlaylist : public ITunesUserPlaylist
{
public:
    static constexpr ObjectClass kClass = ObjectClass::FolderPlaylist;
    using ITunesUserPlaylist::ITunesUserPlaylist;
};

class ITunesSource : public ITunesItem
{
public:
    static constexpr ObjectClass kClass = ObjectClass::Source;
    using ITunesItem::ITunesItem;

    SourceKind kind() const { return SourceKind(code(Prop::kind)); }
    double capacity() const { return real(Prop::capacity); }
    double freeSpace() const { return real(Prop::freeSpace); }
    QList<ITunesPlaylist> playlists() const;
    QList<ITunesLibraryPlaylist> libraryPlaylists() const;
    QList<ITunesUserPlaylist> userPlaylists() const;

    // Makes a playlist ("name" and other properties) and inserts it into userPlaylists at the
    // index; objectClass is UserPlaylist or FolderPlaylist. Null on failure.
    ITunesUserPlaylist makeUserPlaylist(const QVariantMap &properties, ObjectClass objectClass,
                                        qsizetype index = 0) const;
};

class ITunesAirPlayDevice : public ITunesItem
{
public:
    static constexpr ObjectClass kClass = ObjectClass::AirPlayDevice;
    using ITunesItem::ITunesItem;

    AirPlayDeviceKind kind() const { return AirPlayDeviceKind(code(Prop::kind)); }
    QString networkAddress() const { return text(Prop::networkAddress); }
    bool active() const { return boolean(Prop::active); }
    bool available() const { return boolean(Prop::available); }
    bool isProtected() const { return boolean(Prop::protected_); }
    bool selected() const { return boolean(Prop::selected); }
    qint64 soundVolume() const { return integer(Prop::soundVolume); }
    bool supportsAudio() const { return boolean(Prop::supportsAudio); }
    bool supportsVideo() const { return boolean(Prop::supportsVideo); }
};

class ITunesEQPreset : public ITunesItem
{
public:
    static constexpr ObjectClass kClass = ObjectClass::EQPreset;
    using ITunesItem::ITunesItem;

    double preamp() const { return real(Prop::preamp); }
    double band(int number) const; // 1 to 10
};

class ITunesApplication : public ScriptingObject
{
public:
    static constexpr ObjectClass kClass = ObjectClass::Application;
    using ScriptingObject::ScriptingObject;

    // A connection to the process-wide backend (the AppContext's player backend); the
    // identifier names the player ("com.apple.iTunes" is the only one there is).
    static ITunesApplication initWithBundleIdentifier(const QString &bundleIdentifier);
    // A connection to a given backend, for tests and for the backends themselves.
    static ITunesApplication withBackend(PlayerBackendPtr backend);

    void setDelegate(ScriptingBridgeDelegate *delegate) const;
    ScriptingBridgeDelegate *delegate() const;

    bool isRunning() const;
    PlayerNotifier *notifier() const;

    ITunesTrack currentTrack() const; // a specifier: resolve with get()
    ITunesPlaylist currentPlaylist() const;
    FourCharCode playerState() const { return code(Prop::playerState); }
    double playerPosition() const { return real(Prop::playerPosition); }
    void setPlayerPosition(double seconds) const { setValue(Prop::playerPosition, seconds); }
    qint64 soundVolume() const { return integer(Prop::soundVolume); } // 0 to 100
    void setSoundVolume(qint64 v) const { setValue(Prop::soundVolume, v); }
    bool mute() const { return boolean(Prop::mute); }
    void setMute(bool v) const { setValue(Prop::mute, v); }
    bool frontmost() const { return boolean(Prop::frontmost); }
    bool EQEnabled() const { return boolean(Prop::EQEnabled); }
    bool AirPlayEnabled() const { return boolean(Prop::AirPlayEnabled); }
    QString version() const { return text(Prop::version); }
    QList<ITunesEQPreset> EQPresets() const;
    QList<ITunesAirPlayDevice> AirPlayDevices() const;
    QList<ITunesSource> sources() const;
    QList<ITunesTrack> selection() const;

    void playpause() const { performCommand(Command::playpause); }
    void nextTrack() const { performCommand(Command::nextTrack); }
    void backTrack() const { performCommand(Command::backTrack); }
    void fastForward() const { performCommand(Command::fastForward); }
    void rewind() const { performCommand(Command::rewind); }
    void resume() const { performCommand(Command::resume); }
    void activate() const { performCommand(Command::activate); }

    // Adds files and folders to the library (and to the playlist, if not null); the tracks
    // made. Files that cannot be added are left out.
    QList<ITunesTrack> add(const QStringList &paths, const ITunesPlaylist &to = {}) const;

    // Operations that make a fresh handle of their own per call, with no delegate, so they
    // hold no state and fail silently.
    static ITunesApplication ov_iTunesApplication();
    static ITunesTrack ov_currentTrack(); // the specifier; null without a handle

    // Love and rating of the playing track, with the auto-love rules when they are switched
    // on: a rating decides love, love decides the rating. True when something was done.
    static bool ov_toggleTrackLoved();
    static bool ov_setCurrentTrackLoved(bool loved);
    static bool ov_setCurrentTrackAutoLoved();
    static bool ov_setCurrentTrackRating(qint64 rating);
    static bool ov_setCurrentTrackAutoRating();
    // The same for the playing track's album.
    static bool ov_toggleAlbumLoved();
    static bool ov_setCurrentAlbumLoved(bool loved);
    static bool ov_setCurrentAlbumAutoLoved();
    static bool ov_setCurrentAlbumRating(qint64 rating);
    static bool ov_setCurrentAlbumAutoRating();
};
