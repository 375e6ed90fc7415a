#pragma once

#include "player/library/audiofile.h"
#include "player/library/librarydatabase.h"

#include <QObject>
#include <QRecursiveMutex>
#include <QSet>
#include <QTimer>

#include <optional>

// The library's data: tracks, playlists and settings in the database, tags in the files.
//
// Threads: any thread may call; one recursive lock serialises every call, and the database
// gives each thread its own connection. The track rows are cached in memory (loaded whole on
// open, updated by every write made here), so reads cost no query. The playlists, and apart
// from them their entries, are each read whole in one query when first needed and kept until a
// write made here to that table (or a rolled back transaction) drops them: walking a thousand
// playlists, as the current track action does at every player event, costs no query either.
// Another process writing the same database is not seen until the library is opened again.
//
// File tags: a write to a property kept in files goes to the cache at once and is kept
// pending for its track; the file is saved once per track when
//  - saveTrack() or saveAll() is called (the pool engine does so after each track),
//  - the same thread writes a file tag of another track, or
//  - the save timer fires, within a second, on the thread that made the store.
// The save writes the row in a transaction, replaces the file (see AudioFile), and only then
// commits, with the file's new size and modification time: a database that cannot be written
// stops the save before the file changes, and a save cut off between file and commit is found
// by refreshChangedTracks(), which reads such files again. A save that fails restores the
// track's previous values in the cache and throws BridgeFailure (kBridgeErrorWriteFailed);
// from the timer, where no caller waits, the failure goes to the exception sink and to
// tagSaveFailed(). Saved files reach the disk at checkpoints (every so many saves, when saves
// pause for a moment, saveAll() and syncSavedFiles()), not one by one.
class LibraryStore : public QObject
{
    Q_OBJECT
public:
    // Throws BridgeFailure when the database cannot be opened or upgraded.
    explicit LibraryStore(const QString &databasePath);
    ~LibraryStore() override; // saves what is pending

    LibraryDatabase &database() { return database_; }

    // Tracks, by databaseID. Calls on a track that is gone throw kBridgeErrorNoSuchObject.
    QList<qint64> trackIds();
    bool hasTrack(qint64 id);
    qint64 trackIdForPersistentID(const QString &persistentID);
    qint64 trackIdForPath(const QString &path);
    QVariant trackValue(qint64 id, Prop property);
    void setTrackValue(qint64 id, Prop property, const QVariant &value);
    void removeTrack(qint64 id);
    QVariantMap storeMetadata(qint64 id);

    void saveTrack(qint64 id);
    void saveAll(); // and syncs the saved files
    // Asks the file systems of the files saved since the last time to write them to disk.
    void syncSavedFiles();
    // Reads again, from the file, every track whose file's size or modification time is not
    // what the library recorded (changed by another program, or a save cut off by a crash).
    // Returns those tracks.
    QList<qint64> refreshChangedTracks();

    // Artworks: the pictures in the file, then a picture held beside the file ("cover.jpg",
    // "folder.png" ... in its folder), which is the downloaded one.
    struct Artwork
    {
        QByteArray data;
        QString description;
        bool downloaded = false;
    };
    QList<Artwork> artworks(qint64 id);
    // Replaces the embedded artwork at the index, or appends one when the index is past the
    // embedded ones. Writing the downloaded artwork's slot embeds the picture there: the file
    // beside the track is shared by every track of its folder and is left alone.
    void setArtworkData(qint64 id, qsizetype index, const QByteArray &data);
    void setArtworkDescription(qint64 id, qsizetype index, const QString &description);
    void removeArtwork(qint64 id, qsizetype index);

    // Files and folders (searched for audio files) into the library, and into a playlist
    // unless 0. A file already in the library is not added again. Every refused file is
    // named with the reason; the others are added in one transaction.
    struct ImportResult
    {
        QList<qint64> added;
        QList<QPair<QString, QString>> refused; // path, reason
    };
    ImportResult importPaths(const QStringList &paths, qint64 playlistId = 0);
    // The files importPaths() considers for a path: the file itself, or the audio files below
    // a folder, sorted. Lets a front end import a large tree in parts.
    static QStringList importCandidates(const QString &path);

    // Playlists, by row id.
    struct PlaylistRow
    {
        qint64 id = 0;
        QString persistentID;
        QString name;
        FourCharCode specialKind = 0;
        qint64 parent = 0;
        bool smart = false;
        bool shared = false;
    };
    qint64 libraryPlaylistId();
    QList<qint64> userPlaylistIds(); // user and folder playlists in their order
    std::optional<PlaylistRow> playlist(qint64 id);
    qint64 playlistIdForPersistentID(const QString &persistentID);
    QList<qint64> playlistTrackIds(qint64 id);
    qint64 makePlaylist(const QString &name, bool folder, qsizetype index);
    void renamePlaylist(qint64 id, const QString &name);
    void addTracksToPlaylist(qint64 playlistId, const QList<qint64> &trackIds);
    void removeTrackFromPlaylist(qint64 playlistId, qint64 trackId);
    qint64 duplicatePlaylist(qint64 id, qint64 parent);
    void movePlaylist(qint64 id, qint64 parent); // parent 0: the top level
    void deletePlaylist(qint64 id);

    QString sourcePersistentID();
    // The "musicFolder" setting, else the user's music folder.
    QString musicFolder();
    QVariant setting(const QString &key);
    void setSetting(const QString &key, const QVariant &value);

    QStringList selection() const; // persistentIDs
    void setSelection(const QStringList &persistentIDs);

    void requestReveal(qint64 trackId);

signals:
    void tagSaveFailed(const QString &persistentID, const QString &message);
    void revealRequested(const QString &persistentID);
    // Tracks were added, removed or changed their values (from any thread, after the change;
    // the ids of removed tracks are no longer held).
    void tracksChanged(const QList<qint64> &trackIds);

private:
    struct TrackRow
    {
        QString persistentID;
        QString path;
        QList<QVariant> values; // in the order of trackColumns()
        qint64 fileModified = 0; // ms since 1970, when the row last matched the file
    };
    struct PendingSave
    {
        QThread *owner = nullptr;
        QHash<Prop, QVariant> tags;
        QHash<Prop, QVariant> originals;
        std::optional<QList<EmbeddedPicture>> pictures;
    };

    // Every playlist as the database holds it; the user playlists and the children of each
    // folder in their order (position, then id).
    struct Playlists
    {
        qint64 libraryId = 0;
        QList<qint64> userIds;
        QHash<qint64, PlaylistRow> rows;
        QHash<qint64, QList<qint64>> children; // by parent
        quint64 rollbacks = 0; // the database's count when read
    };
    // The track ids of every playlist's entries, in their order.
    struct PlaylistEntries
    {
        QHash<qint64, QList<qint64>> tracks;
        quint64 rollbacks = 0;
    };
    enum PlaylistTable { PlaylistsTable = 1, EntriesTable = 2 };

    void loadTracks(qint64 fromId = 0); // all rows, or the rows just added
    const Playlists &playlists();
    const QList<qint64> &playlistEntries(qint64 playlistId);
    // Runs a statement that changes the table(s), dropping their copies first.
    QueryRun changePlaylists(int tables, const QString &statement, const QVariantList &values = {});
    void appendToPlaylist(qint64 playlistId, const QList<qint64> &trackIds);
    TrackRow &row(qint64 id);
    void storeColumns(qint64 id, const QHash<Prop, QVariant> &values);
    void writeColumns(qint64 id, const QHash<Prop, QVariant> &values, qint64 fileModified = -1);
    void cacheColumns(qint64 id, const QHash<Prop, QVariant> &values);
    void readFromFile(qint64 id, AudioFile &file);
    void noteSaved(const QString &path);
    void relink(qint64 id, const QString &path);
    PendingSave &pendingFor(qint64 id);
    void saveOthersOfThisThread(qint64 id);
    void flush(qint64 id); // throws after rolling back
    void flushFromTimer();
    QList<EmbeddedPicture> embeddedPictures(qint64 id);
    QString sidecarArtworkPath(qint64 id);
    QString newPersistentID();
    QList<qint64> descendants(qint64 playlistId);

    mutable QRecursiveMutex mutex_;
    LibraryDatabase database_;
    QHash<qint64, TrackRow> rows_;
    QList<qint64> order_;
    QHash<QString, qint64> byPersistentID_;
    QHash<QString, qint64> byPath_;
    std::optional<Playlists> playlists_;
    std::optional<PlaylistEntries> playlistEntries_;
    QHash<qint64, PendingSave> pending_;
    QStringList selection_;
    QTimer saveTimer_;
    QTimer syncTimer_; // a checkpoint once saves pause, such as at the end of a run
    QSet<QString> unsyncedFolders_;
    int unsyncedSaves_ = 0;
};
