#pragma once

#include "player/itunes.h"

#include <QHash>

#include <mutex>

class MemoryPlayer;
class MemoryObject;
using MemoryObjectPtr = std::shared_ptr<MemoryObject>;

// Property values of a memory object, e.g. {{Prop::name, "Song"}, {Prop::rating, 60}}.
using MemoryProperties = QHash<Prop, QVariant>;

// One object held by a MemoryPlayer: a track, playlist, source, artwork, EQ preset or AirPlay
// device. Reads and writes through the bridge obey the player's failure injection and count
// writes; stored()/setStored() are the test's own access and bypass both, so read-only
// properties such as ratingKind can be set.
class MemoryObject : public RemoteObject
{
public:
    MemoryObject(MemoryPlayer *player, ObjectClass objectClass);

    ObjectClass objectClass() const override { return class_; }
    RemoteObjectPtr resolve() override;

    QVariant read(Prop property) override;
    void write(Prop property, const QVariant &value) override;
    RemoteObjectPtr object(Prop relation) override;
    RemoteObjectList elements(Prop list) override;
    RemoteObjectPtr elementAt(Prop list, qsizetype index) override;
    void perform(Command command) override;
    RemoteObjectPtr duplicateTo(const RemoteObjectPtr &target) override;
    RemoteObjectPtr moveTo(const RemoteObjectPtr &target) override;
    RemoteObjectPtr make(ObjectClass objectClass, const QVariantMap &properties, Prop list,
                         qsizetype index) override;

    QVariant stored(Prop property) const;
    void setStored(Prop property, const QVariant &value);
    void setStored(const MemoryProperties &properties);
    bool isDeleted() const;

private:
    friend class MemoryPlayer;

    MemoryPlayer *player_; // the player owns every object it hands out
    ObjectClass class_;
    MemoryProperties values_;
    QHash<Prop, QList<MemoryObjectPtr>> lists_; // stored element lists
    std::weak_ptr<MemoryObject> container_;     // source of a playlist, playlist of a track
    std::weak_ptr<MemoryObject> parent_;        // folder of a playlist
    std::weak_ptr<MemoryObject> slotOwner_;     // track of an artwork slot not yet written
    bool deleted_ = false;
};

// A complete player held in memory, for tests. It starts running, with the library source
// "Library" (kLib) and its library playlist "Library" (kSpL), stopped, volume 100. Objects are
// added through the test API below and then reached through handles like any backend's.
// Thread-safe: every call takes one (recursive) lock, so a worker thread may read while the
// test thread changes things. Create it on the thread that owns the notifier (the main thread).
class MemoryPlayer : public PlayerBackend
{
public:
    enum class Access { Read, Write };
    static constexpr int kAlways = -1;

    static std::shared_ptr<MemoryPlayer> create();
    MemoryPlayer();
    ~MemoryPlayer() override;

    // Handles on this player: a fresh connection with the given delegate.
    ITunesApplication application(ScriptingBridgeDelegate *delegate = nullptr);
    template <class Handle>
    Handle handle(const MemoryObjectPtr &object, ScriptingBridgeDelegate *delegate = nullptr)
    {
        return Handle(application(delegate).connection(), object);
    }
    // Makes this player the process-wide default backend.
    void makeDefault();

    // --- Building the content.
    MemoryObjectPtr librarySource() const;
    MemoryObjectPtr libraryPlaylist(const MemoryObjectPtr &source = nullptr) const;
    // A further source with a library playlist of its own (kShd for a shared library).
    MemoryObjectPtr addSource(const QString &name, SourceKind kind = SourceKind::kShd);
    // A user or folder playlist at the end of the source's userPlaylists, inside a folder if
    // given (the folder's source is used then).
    MemoryObjectPtr addUserPlaylist(const QString &name, const MemoryObjectPtr &folder = nullptr,
                                    const MemoryProperties &properties = {});
    MemoryObjectPtr addFolderPlaylist(const QString &name, const MemoryObjectPtr &folder = nullptr);
    // A track of any track class in the source's library (default: the main library); shared
    // tracks default to the first kShd source if there is one.
    MemoryObjectPtr addTrack(ObjectClass trackClass, const MemoryProperties &properties,
                             const MemoryObjectPtr &source = nullptr);
    MemoryObjectPtr addFileTrack(const QString &name, const QString &location,
                                 const MemoryProperties &properties = {});
    MemoryObjectPtr addURLTrack(const QString &name, const QString &address,
                                const MemoryProperties &properties = {});
    void addToPlaylist(const MemoryObjectPtr &track, const MemoryObjectPtr &playlist);
    MemoryObjectPtr addArtwork(const MemoryObjectPtr &track, const QImage &image);
    MemoryObjectPtr addEQPreset(const QString &name, const MemoryProperties &properties = {});
    MemoryObjectPtr addAirPlayDevice(const QString &name, const MemoryProperties &properties = {});
    QList<MemoryObjectPtr> tracks() const; // every track of the main library
    // Removes an object as the player's "delete" would.
    void remove(const MemoryObjectPtr &object);

    // --- Player state.
    void setCurrentTrack(const MemoryObjectPtr &track);
    MemoryObjectPtr currentTrackObject() const; // null when none or removed
    void setCurrentPlaylist(const MemoryObjectPtr &playlist);
    void setSelection(const QList<MemoryObjectPtr> &tracks);
    void setPlayerState(FourCharCode state);
    void setApplicationValue(Prop property, const QVariant &value); // position, volume, ...
    QVariant applicationValue(Prop property) const;
    void setRunning(bool running);  // silent; use postLaunched()/postTerminated() to tell
    void setLaunchable(bool launchable);
    int launchCount() const;
    MemoryObjectPtr lastRevealed() const;
    void setMusicFolder(const QString &path); // empty at the start

    // --- Notifications, emitted at once on the calling thread.
    void postPlayerInfo(const QVariantMap &userInfo);
    void postPlayerState(const QString &state); // "Playing", "Paused", "Stopped"
    void postLaunched();
    void postTerminated();

    // --- Failure injection: the next `times` reads (or writes) of a property fail with
    // kBridgeErrorInjected; on one object only if given, else on any. Reads cover values,
    // relations and element lists. kAlways keeps failing until cleared.
    void injectFailure(Prop property, Access access, int times = 1,
                       const RemoteObjectPtr &on = nullptr);
    void clearFailures();
    // Successful writes through the bridge, per property, since the start or the last reset.
    int writeCount(Prop property) const;
    int totalWriteCount() const;
    void resetWriteCounts();

    // --- PlayerBackend.
    bool isRunning() const override;
    bool launch() override;
    PlayerNotifier *notifier() override { return notifier_.get(); }
    QVariant read(Prop property) override;
    void write(Prop property, const QVariant &value) override;
    RemoteObjectPtr object(Prop relation) override;
    RemoteObjectList elements(Prop list) override;
    void perform(Command command) override;
    RemoteObjectList add(const QStringList &paths, const RemoteObjectPtr &to) override;
    QString musicFolder() override;

private:
    friend class MemoryObject;
    struct Failure
    {
        Prop property;
        Access access;
        int remaining;
        std::weak_ptr<RemoteObject> on;
        bool anyObject;
    };

    void checkRunning() const; // every call fails while the player is not running
    void checkFailure(const RemoteObject *object, Prop property, Access access);
    void countWrite(Prop property);
    MemoryObjectPtr newObject(ObjectClass objectClass, const MemoryProperties &properties);
    MemoryObjectPtr sourceOf(const MemoryObjectPtr &object) const;
    QList<MemoryObjectPtr> childrenOf(const MemoryObject &folder) const;
    QList<MemoryObjectPtr> tracksOf(const MemoryObject &playlist) const;
    QList<MemoryObjectPtr> playlistsOf(const MemoryObject &source) const;
    QList<MemoryObjectPtr> listOf(MemoryObject &object, Prop list);
    QVariant readValue(MemoryObject &object, Prop property);
    void writeValue(MemoryObject &object, Prop property, const QVariant &value);
    RemoteObjectPtr relation(MemoryObject &object, Prop relation);
    void removeLocked(const MemoryObjectPtr &object);
    void stepTrack(int step);
    void insertPlaylist(const MemoryObjectPtr &source, const MemoryObjectPtr &playlist,
                        qsizetype index, const MemoryObjectPtr &folder);

    mutable std::recursive_mutex mutex_;
    std::unique_ptr<PlayerNotifier> notifier_;
    MemoryProperties values_;
    QList<MemoryObjectPtr> sources_;
    QList<MemoryObjectPtr> selection_;
    QList<MemoryObjectPtr> eqPresets_;
    QList<MemoryObjectPtr> airPlayDevices_;
    std::weak_ptr<MemoryObject> currentTrack_;
    std::weak_ptr<MemoryObject> currentPlaylist_;
    std::weak_ptr<MemoryObject> lastRevealed_;
    QList<Failure> failures_;
    QHash<Prop, int> writeCounts_;
    QString musicFolder_;
    quint64 nextID_ = 1;
    bool running_ = true;
    bool launchable_ = true;
    int launchCount_ = 0;
};

using MemoryPlayerPtr = std::shared_ptr<MemoryPlayer>;
