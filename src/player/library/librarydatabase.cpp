#include "player/library/librarydatabase.h"

#include "player/remoteobject.h"

#include <QFileInfo>
#include <QSqlError>
#include <QSqlRecord>

#include <vector>

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
        // 3: the file's modification time (ms since 1970) when its row was last read from or
        // written to it, with the size column: a file that differs from both was changed
        // outside the library, or a save was cut off before its row was written.
        {
            R"(ALTER TABLE tracks ADD COLUMN fileModified INTEGER NOT NULL DEFAULT 0)",
        },
    };
    return steps;
}

[[noreturn]] void fail(const QString &what, const QSqlError &error)
{
    // SQLite's primary result codes (the low byte of the extended ones) that the user can act on.
    QString advice;
    switch (error.nativeErrorCode().toInt() & 0xff) {
    case 8: advice = QStringLiteral(" (the library file is read-only: make it and its folder "
                                    "writable, then try again)"); break;
    case 13: advice = QStringLiteral(" (the disk is full: make room, then try again)"); break;
    default: break;
    }
    throwBridgeFailure(kBridgeErrorWriteFailed, QStringLiteral("library database: %1: %2%3")
                                                    .arg(what, error.text(), advice));
}

} // namespace

struct LibraryDatabase::Connections
{
    QMutex mutex;
    QHash<QThread *, QString> names;
    QHash<QThread *, QHash<QString, QSqlQuery>> queries;

    void drop(QThread *thread)
    {
        QMutexLocker locker(&mutex);
        queries.remove(thread);
        const QString name = names.take(thread);
        if (name.isEmpty())
            return;
        QSqlDatabase::database(name, false).close();
        QSqlDatabase::removeDatabase(name);
    }

    void dropAll()
    {
        QMutexLocker locker(&mutex);
        queries.clear();
        for (const QString &name : std::as_const(names)) {
            QSqlDatabase::database(name, false).close();
            QSqlDatabase::removeDatabase(name);
        }
        names.clear();
    }
};

namespace {

// Closes the connections a thread made when it ends. A thread Qt did not start never emits
// finished(), so a thread-local owner is the one place that sees every thread go.
struct ThreadConnections
{
    std::vector<std::pair<std::weak_ptr<LibraryDatabase::Connections>, QThread *>> made;
    ~ThreadConnections()
    {
        for (auto &[connections, thread] : made)
            if (auto alive = connections.lock())
                alive->drop(thread);
    }
};

thread_local ThreadConnections threadConnections;

} // namespace

int LibraryDatabase::latestSchemaVersion()
{
    return int(schemaSteps().size());
}

LibraryDatabase::LibraryDatabase(QString path, int targetVersion)
    : path_(std::move(path)),
      connectionPrefix_(QStringLiteral("orvane-library-%1-").arg(quintptr(this), 0, 16)),
      connections_(std::make_shared<Connections>())
{
    try {
        // Looked at before anything is written, so a library this version cannot read stays as it
        // was, and a file that is not one is named as such.
        QSqlQuery check(connection());
        if (!check.exec(QStringLiteral("PRAGMA user_version")) || !check.next())
            throwBridgeFailure(
                kBridgeErrorNotRunning,
                QStringLiteral("cannot open the library %1: %2. If the file is damaged, move it "
                               "away and Orvane starts a new library; restore it from a backup to "
                               "keep its playlists and settings.")
                    .arg(path_, check.lastError().text()));
        const int version = check.value(0).toInt();
        check.finish();
        if (version > latestSchemaVersion())
            throwBridgeFailure(
                kBridgeErrorNotRunning,
                QStringLiteral("the library %1 was made by a newer version of Orvane (format %2, "
                               "this version reads up to %3); it was left untouched. Use the newer "
                               "version, or move the file away to start a new library.")
                    .arg(path_)
                    .arg(version)
                    .arg(latestSchemaVersion()));
        QSqlQuery(connection()).exec(QStringLiteral("PRAGMA journal_mode=WAL"));
        migrate(targetVersion);
    } catch (...) {
        connections_->dropAll();
        throw;
    }
}

LibraryDatabase::~LibraryDatabase()
{
    connections_->dropAll();
}

QSqlDatabase LibraryDatabase::connection()
{
    QThread *thread = QThread::currentThread();
    QMutexLocker locker(&connections_->mutex);
    auto found = connections_->names.constFind(thread);
    if (found != connections_->names.constEnd())
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
    connections_->names.insert(thread, name);
    std::erase_if(threadConnections.made, [](const auto &entry) { return entry.first.expired(); });
    threadConnections.made.emplace_back(connections_, thread);
    return db;
}

QSqlQuery &LibraryDatabase::prepared(const QString &statement)
{
    QSqlDatabase db = connection();
    QMutexLocker locker(&connections_->mutex);
    QHash<QString, QSqlQuery> &cache = connections_->queries[QThread::currentThread()];
    auto found = cache.find(statement);
    if (found == cache.end()) {
        QSqlQuery query(db);
        if (!query.prepare(statement))
            fail(QStringLiteral("cannot prepare \"%1\"").arg(statement), query.lastError());
        found = cache.insert(statement, query);
    }
    return *found;
}

std::optional<QSqlRecord> LibraryDatabase::singleRow(const QString &statement,
                                                     const QVariantList &values)
{
    QueryRun query = run(statement, values);
    if (!query.next())
        return std::nullopt;
    return query.record();
}

QVariant LibraryDatabase::singleValue(const QString &statement, const QVariantList &values)
{
    const std::optional<QSqlRecord> row = singleRow(statement, values);
    return row ? row->value(0) : QVariant();
}

QueryRun LibraryDatabase::run(const QString &statement, const QVariantList &values)
{
    QSqlQuery &query = prepared(statement);
    for (int i = 0; i < values.size(); ++i)
        query.bindValue(i, values.at(i));
    if (!query.exec()) {
        const QSqlError error = query.lastError();
        query.finish();
        fail(QStringLiteral("\"%1\" failed").arg(statement), error);
    }
    return QueryRun(query);
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

TransactionGuard::TransactionGuard(LibraryDatabase &database)
    : database_(database), connection_(database.connection())
{
    if (!connection_.transaction())
        fail(QStringLiteral("cannot begin a transaction"), connection_.lastError());
}

TransactionGuard::~TransactionGuard()
{
    if (!done_) {
        connection_.rollback();
        ++database_.rollbacks_;
    }
}

void TransactionGuard::commit()
{
    if (!connection_.commit())
        fail(QStringLiteral("cannot commit"), connection_.lastError());
    done_ = true;
}
