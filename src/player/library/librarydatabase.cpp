#include "player/library/librarydatabase.h"

#include "player/remoteobject.h"

#include <QSqlError>
#include <QSqlRecord>

namespace {

// Each step is applied once, in order, inside a transaction. Never edit a step that has
// shipped: add a new one.
const QList<QStringList> &schemaSteps()
{
    static const QList<QStringList> steps = {
        // 1: tracks, playlists with their entries, and settings.
        {
            R"(CREATE TABLE tracks (
                id INTEGER PRIMARY KEY AUTOINCREMENT,
                persistentID TEXT NOT NULL UNIQUE,
                path TEXT NOT NULL UNIQUE,
                name TEXT NOT NULL DEFAULT '', album TEXT NOT NULL DEFAULT '',
                albumArtist TEXT NOT NULL DEFAULT '', artist TEXT NOT NULL DEFAULT '',
                composer TEXT NOT NULL DEFAULT '', genre TEXT NOT NULL DEFAULT '',
                grouping TEXT NOT NULL DEFAULT '', comment TEXT NOT NULL DEFAULT '',
                lyrics TEXT NOT NULL DEFAULT '', show TEXT NOT NULL DEFAULT '',
                episodeID TEXT NOT NULL DEFAULT '', objectDescription TEXT NOT NULL DEFAULT '',
                sortName TEXT NOT NULL DEFAULT '', sortAlbum TEXT NOT NULL DEFAULT '',
                sortAlbumArtist TEXT NOT NULL DEFAULT '', sortArtist TEXT NOT NULL DEFAULT '',
                sortComposer TEXT NOT NULL DEFAULT '', sortShow TEXT NOT NULL DEFAULT '',
                year INTEGER NOT NULL DEFAULT 0, bpm INTEGER NOT NULL DEFAULT 0,
                trackNumber INTEGER NOT NULL DEFAULT 0, trackCount INTEGER NOT NULL DEFAULT 0,
                discNumber INTEGER NOT NULL DEFAULT 0, discCount INTEGER NOT NULL DEFAULT 0,
                episodeNumber INTEGER NOT NULL DEFAULT 0, seasonNumber INTEGER NOT NULL DEFAULT 0,
                compilation INTEGER NOT NULL DEFAULT 0,
                playedCount INTEGER NOT NULL DEFAULT 0, start REAL NOT NULL DEFAULT 0,
                finish REAL NOT NULL DEFAULT 0, rating INTEGER NOT NULL DEFAULT 0,
                albumRating INTEGER NOT NULL DEFAULT 0, loved INTEGER NOT NULL DEFAULT 0,
                albumLoved INTEGER NOT NULL DEFAULT 0,
                ratingKind INTEGER NOT NULL DEFAULT 1800565845, -- kRtU
                albumRatingKind INTEGER NOT NULL DEFAULT 1800565845, -- kRtU
                mediaKind INTEGER NOT NULL DEFAULT 1800234067, -- kMdS
                videoKind INTEGER NOT NULL DEFAULT 1800302446, -- kNon
                enabled INTEGER NOT NULL DEFAULT 1, gapless INTEGER NOT NULL DEFAULT 0,
                shufflable INTEGER NOT NULL DEFAULT 1, bookmarkable INTEGER NOT NULL DEFAULT 0,
                dateAdded INTEGER, modificationDate INTEGER, playedDate INTEGER,
                skippedDate INTEGER, skippedCount INTEGER NOT NULL DEFAULT 0,
                kind TEXT NOT NULL DEFAULT '', duration REAL NOT NULL DEFAULT 0,
                size INTEGER NOT NULL DEFAULT 0, bitRate INTEGER NOT NULL DEFAULT 0,
                sampleRate INTEGER NOT NULL DEFAULT 0))",
            R"(CREATE TABLE playlists (
                id INTEGER PRIMARY KEY AUTOINCREMENT,
                persistentID TEXT NOT NULL UNIQUE,
                name TEXT NOT NULL DEFAULT '',
                specialKind INTEGER NOT NULL,
                parent INTEGER REFERENCES playlists(id),
                position INTEGER NOT NULL DEFAULT 0,
                smart INTEGER NOT NULL DEFAULT 0,
                shared INTEGER NOT NULL DEFAULT 0))",
            R"(CREATE TABLE playlist_tracks (
                playlist INTEGER NOT NULL REFERENCES playlists(id),
                position INTEGER NOT NULL,
                track INTEGER NOT NULL REFERENCES tracks(id),
                PRIMARY KEY (playlist, position)))",
            R"(CREATE TABLE settings (key TEXT PRIMARY KEY, value))",
            // The library playlist (kSpL) and the source's identity.
            R"(INSERT INTO playlists (persistentID, name, specialKind)
               VALUES (upper(hex(randomblob(8))), 'Library', 1800630348 /* kSpL */))",
            R"(INSERT INTO settings (key, value)
               VALUES ('sourcePersistentID', upper(hex(randomblob(8)))))",
        },
        // 2: equaliser and volume settings per track; entries found by track for deletes.
        {
            R"(ALTER TABLE tracks ADD COLUMN EQ TEXT NOT NULL DEFAULT '')",
            R"(ALTER TABLE tracks ADD COLUMN volumeAdjustment INTEGER NOT NULL DEFAULT 0)",
            R"(CREATE INDEX playlist_tracks_by_track ON playlist_tracks (track))",
        },
    };
    return steps;
}

[[noreturn]] void fail(const QString &what, const QSqlError &error)
{
    throwBridgeFailure(kBridgeErrorWriteFailed,
                       QStringLiteral("library database: %1: %2").arg(what, error.text()));
}

} // namespace

int LibraryDatabase::latestSchemaVersion()
{
    return int(schemaSteps().size());
}

LibraryDatabase::LibraryDatabase(QString path, int targetVersion)
    : path_(std::move(path)),
      connectionPrefix_(QStringLiteral("orvane-library-%1-").arg(quintptr(this), 0, 16))
{
    QSqlQuery(connection()).exec(QStringLiteral("PRAGMA journal_mode=WAL"));
    migrate(targetVersion);
}

LibraryDatabase::~LibraryDatabase()
{
    QMutexLocker locker(&connectionsMutex_);
    for (const QMetaObject::Connection &watch : std::as_const(threadWatches_))
        QObject::disconnect(watch);
    queries_.clear();
    for (const QString &name : std::as_const(connections_)) {
        QSqlDatabase::database(name, false).close();
        QSqlDatabase::removeDatabase(name);
    }
}

QSqlDatabase LibraryDatabase::connection()
{
    QThread *thread = QThread::currentThread();
    QMutexLocker locker(&connectionsMutex_);
    auto found = connections_.constFind(thread);
    if (found != connections_.constEnd())
        return QSqlDatabase::database(*found, false);

    const QString name = connectionPrefix_ + QString::number(quintptr(thread), 16);
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
    db.setDatabaseName(path_);
    db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000"));
    if (!db.open()) {
        const QSqlError error = db.lastError();
        db = QSqlDatabase();
        QSqlDatabase::removeDatabase(name);
        fail(QStringLiteral("cannot open %1").arg(path_), error);
    }
    // Per connection: with the write-ahead log, NORMAL syncs at checkpoints rather than at
    // every commit, which is what keeps a tag write per track cheap on the organizer's thread.
    QSqlQuery(db).exec(QStringLiteral("PRAGMA foreign_keys=ON"));
    QSqlQuery(db).exec(QStringLiteral("PRAGMA synchronous=NORMAL"));
    connections_.insert(thread, name);
    // A thread that ends takes its connection with it.
    threadWatches_[thread] = QObject::connect(thread, &QThread::finished, thread, [this, thread, name] {
        QMutexLocker locker(&connectionsMutex_);
        if (connections_.value(thread) != name)
            return;
        queries_.remove(thread);
        connections_.remove(thread);
        threadWatches_.remove(thread);
        QSqlDatabase::database(name, false).close();
        QSqlDatabase::removeDatabase(name);
    }, Qt::DirectConnection);
    return db;
}

QSqlQuery &LibraryDatabase::prepared(const QString &statement)
{
    QSqlDatabase db = connection();
    QMutexLocker locker(&connectionsMutex_);
    QHash<QString, QSqlQuery> &cache = queries_[QThread::currentThread()];
    auto found = cache.find(statement);
    if (found == cache.end()) {
        QSqlQuery query(db);
        if (!query.prepare(statement))
            fail(QStringLiteral("cannot prepare \"%1\"").arg(statement), query.lastError());
        found = cache.insert(statement, query);
    }
    return *found;
}

QSqlQuery &LibraryDatabase::run(const QString &statement, const QVariantList &values)
{
    QSqlQuery &query = prepared(statement);
    for (int i = 0; i < values.size(); ++i)
        query.bindValue(i, values.at(i));
    if (!query.exec())
        fail(QStringLiteral("\"%1\" failed").arg(statement), query.lastError());
    return query;
}

int LibraryDatabase::schemaVersion()
{
    QSqlQuery query(connection());
    if (!query.exec(QStringLiteral("PRAGMA user_version")) || !query.next())
        fail(QStringLiteral("cannot read the schema version"), query.lastError());
    return query.value(0).toInt();
}

void LibraryDatabase::migrate(int targetVersion)
{
    const QList<QStringList> &steps = schemaSteps();
    for (int version = schemaVersion(); version < targetVersion && version < steps.size();
         ++version) {
        TransactionGuard transaction(*this);
        QSqlQuery query(connection());
        for (const QString &statement : steps.at(version))
            if (!query.exec(statement))
                fail(QStringLiteral("schema step %1").arg(version + 1), query.lastError());
        if (!query.exec(QStringLiteral("PRAGMA user_version = %1").arg(version + 1)))
            fail(QStringLiteral("schema step %1").arg(version + 1), query.lastError());
        transaction.commit();
    }
}

TransactionGuard::TransactionGuard(LibraryDatabase &database) : connection_(database.connection())
{
    if (!connection_.transaction())
        fail(QStringLiteral("cannot begin a transaction"), connection_.lastError());
}

TransactionGuard::~TransactionGuard()
{
    if (!done_)
        connection_.rollback();
}

void TransactionGuard::commit()
{
    if (!connection_.commit())
        fail(QStringLiteral("cannot commit"), connection_.lastError());
    done_ = true;
}
