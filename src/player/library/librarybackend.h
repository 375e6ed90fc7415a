#pragma once

#include "player/library/librarystore.h"
#include "player/playerbackend.h"

// Orvane's own music library as a player backend: one source (kLib) with the library playlist
// (kSpL), user and folder playlists, file tracks and their artworks, the selection and add.
// The data lives in LibraryStore; the objects handed out are light references by id that ask
// the store on every call, so they never hold stale values.
//
// Usable from any thread (the organizer works on a worker thread); see LibraryStore for the
// locking and for when file tags are saved.
class LibraryBackend : public PlayerBackend
{
public:
    // "$XDG_DATA_HOME/Orvane Library/Library.sqlite".
    static QString defaultDatabasePath();

    // Opens (or makes) the library. When it cannot be opened the backend is not running and
    // every call fails with kBridgeErrorNotRunning; openError() says why.
    explicit LibraryBackend(const QString &databasePath = defaultDatabasePath());
    ~LibraryBackend() override;

    bool isRunning() const override { return store_ != nullptr; }
    const QString &openError() const { return openError_; }
    // Null when not running.
    LibraryStore *store() const { return store_.get(); }

    QVariant read(Prop property) override;
    RemoteObjectPtr object(Prop relation) override;
    RemoteObjectList elements(Prop list) override;
    RemoteObjectList add(const QStringList &paths, const RemoteObjectPtr &to) override;

    // add with the reasons for refused files, for front ends that report them.
    LibraryStore::ImportResult importPaths(const QStringList &paths,
                                           const RemoteObjectPtr &to = nullptr);

    RemoteObjectPtr source();
    RemoteObjectPtr libraryPlaylist();
    RemoteObjectPtr trackWithPersistentID(const QString &persistentID);
    RemoteObjectPtr trackWithDatabaseID(qint64 databaseID);
    // The track of a file, or null when the library does not hold it.
    RemoteObjectPtr trackWithLocation(const QString &path);
    RemoteObjectPtr playlistWithPersistentID(const QString &persistentID);
    QList<RemoteObjectPtr> tracks();

    // What the library window has selected: tracks by persistentID.
    void setSelection(const QStringList &persistentIDs);

    // Saves the pending tag writes of one track, or of all; throws BridgeFailure when a save
    // failed (the track's values are then rolled back).
    void saveTrack(const QString &persistentID);
    void saveAll();
    // Writes the files saved so far to disk; a run calls it at its end.
    void syncSavedFiles();
    // Reads again the tracks whose files changed since the library last read or wrote them
    // (by another program, or a save cut off by a crash); returns how many. Runs call it first.
    qsizetype refreshChangedTracks();

    // The folder the library keeps music in: the "musicFolder" setting, else the user's music
    // folder.
    QString musicFolder() override;
    void organizerRunWillStart() override { refreshChangedTracks(); }
    void organizerRunDidEnd() override { syncSavedFiles(); }
    void setMusicFolder(const QString &path);

private:
    LibraryStore &running() const;

    std::shared_ptr<LibraryStore> store_;
    QString openError_;
};

// Objects of a library, by row id. A track read through a playlist remembers it, so that
// deleting it removes it from that playlist only.
RemoteObjectPtr makeLibrarySource(const std::shared_ptr<LibraryStore> &store);
RemoteObjectPtr makeLibraryPlaylist(const std::shared_ptr<LibraryStore> &store, qint64 id);
RemoteObjectPtr makeLibraryTrack(const std::shared_ptr<LibraryStore> &store, qint64 id,
                                 qint64 playlistId = 0);
