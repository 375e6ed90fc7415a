#include "player/library/librarystore.h"

#include "additions/exceptionsink.h"
#include "additions/filewriting.h"
#include "player/library/trackcolumns.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QSet>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QStandardPaths>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const QStringList kAudioSuffixes = {"mp3", "m4a", "m4b", "mp4", "aac", "flac", "ogg", "oga", "opus"};
const QStringList kSidecarArtworkNames = {"cover.jpg", "cover.png", "folder.jpg", "folder.png"};

[[noreturn]] void noSuchObject(const QString &what)
{
    throwBridgeFailure(kBridgeErrorNoSuchObject, QStringLiteral("no such %1").arg(what));
}

QString columnList(const QStringList &names)
{
    QStringList quoted;
    for (const QString &name : names)
        quoted.append(QLatin1Char('"') + name + QLatin1Char('"'));
    return quoted.join(QLatin1String(", "));
}

QStringList storedColumnNames()
{
    QStringList names;
    for (const TrackColumn &column : trackColumns())
        names.append(propertyName(column.property));
    return names;
}

QHash<Prop, QVariant> factValues(const AudioFacts &facts)
{
    return {{Prop::kind, facts.kind}, {Prop::duration, facts.duration}, {Prop::size, facts.size},
            {Prop::bitRate, facts.bitRate}, {Prop::sampleRate, facts.sampleRate}};
}

// The audio files a path names: the file itself, or the audio files below a folder.
QStringList candidateFiles(const QString &path)
{
    const QFileInfo info(path);
    if (!info.isDir())
        return {info.absoluteFilePath()};
    QStringList files;
    QDirIterator it(info.absoluteFilePath(), QDir::Files | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString file = it.next();
        if (kAudioSuffixes.contains(QFileInfo(file).suffix().toLower()))
            files.append(QDir::cleanPath(file));
    }
    files.sort();
    return files;
}

// The modification time the library records for a file, or 0 when it cannot be read.
qint64 fileModifiedTime(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() ? info.lastModified().toMSecsSinceEpoch() : 0;
}

// Saves between two syncs of the saved files: a crash of the machine loses at most these.
constexpr int kSavesPerCheckpoint = 200;

QVariant clampedValue(Prop property, const QVariant &value)
{
    if (property == Prop::rating || property == Prop::albumRating)
        return std::clamp<qint64>(value.toLongLong(), 0, 100);
    return value;
}

} // namespace

LibraryStore::LibraryStore(const QString &databasePath) : database_(databasePath)
{
    loadTracks();
    saveTimer_.setSingleShot(true);
    saveTimer_.setInterval(500);
    connect(&saveTimer_, &QTimer::timeout, this, &LibraryStore::flushFromTimer);
    syncTimer_.setSingleShot(true);
    syncTimer_.setInterval(2000);
    connect(&syncTimer_, &QTimer::timeout, this, &LibraryStore::syncSavedFiles);
}

LibraryStore::~LibraryStore()
{
    try {
        saveAll();
    } catch (const std::exception &failure) {
        ExceptionSink::logException(failure);
    }
}

void LibraryStore::loadTracks(qint64 fromId)
{
    const QString statement =
        QStringLiteral("SELECT id, persistentID, path, fileModified, %1 FROM tracks %2 ORDER BY id")
            .arg(columnList(storedColumnNames()),
                 fromId ? QStringLiteral("WHERE id >= %1").arg(fromId) : QString());
    QSqlQuery query(database_.connection());
    query.setForwardOnly(true);
    if (!query.exec(statement))
        throwBridgeFailure(kBridgeErrorNotRunning, QStringLiteral("cannot read the library"));
    const QList<TrackColumn> &columns = trackColumns();
    while (query.next()) {
        TrackRow row;
        const qint64 id = query.value(0).toLongLong();
        row.persistentID = query.value(1).toString();
        row.path = query.value(2).toString();
        row.fileModified = query.value(3).toLongLong();
        row.values.reserve(columns.size());
        for (int i = 0; i < columns.size(); ++i)
            row.values.append(columnValueFromSql(columns.at(i).type, query.value(4 + i)));
        byPersistentID_.insert(row.persistentID, id);
        byPath_.insert(row.path, id);
        rows_.insert(id, std::move(row));
        order_.append(id);
    }
}

QList<qint64> LibraryStore::trackIds()
{
    QMutexLocker locker(&mutex_);
    return order_;
}

bool LibraryStore::hasTrack(qint64 id)
{
    QMutexLocker locker(&mutex_);
    return rows_.contains(id);
}

qint64 LibraryStore::trackIdForPersistentID(const QString &persistentID)
{
    QMutexLocker locker(&mutex_);
    return byPersistentID_.value(persistentID.toUpper(), 0);
}

qint64 LibraryStore::trackIdForPath(const QString &path)
{
    QMutexLocker locker(&mutex_);
    return byPath_.value(QFileInfo(path).absoluteFilePath(), 0);
}

LibraryStore::TrackRow &LibraryStore::row(qint64 id)
{
    auto found = rows_.find(id);
    if (found == rows_.end())
        noSuchObject(QStringLiteral("track"));
    return *found;
}

QVariant LibraryStore::trackValue(qint64 id, Prop property)
{
    QMutexLocker locker(&mutex_);
    const TrackRow &track = row(id);
    const auto column = [&](Prop p) { return track.values.at(trackColumnIndex(p)); };
    switch (property) {
    case Prop::persistentID: return track.persistentID;
    case Prop::databaseID: return id;
    case Prop::location: return QFileInfo(track.path).isFile() ? track.path : QString();
    case Prop::unplayed: return column(Prop::playedCount).toLongLong() == 0;
    case Prop::time: return formattedDuration(column(Prop::duration).toDouble());
    default: break;
    }
    const int index = trackColumnIndex(property);
    if (index < 0)
        throwBridgeFailure(kBridgeErrorUnsupported,
                           QStringLiteral("a track has no %1").arg(propertyName(property)));
    return track.values.at(index);
}

void LibraryStore::storeColumns(qint64 id, const QHash<Prop, QVariant> &values)
{
    writeColumns(id, values);
    cacheColumns(id, values);
}

void LibraryStore::writeColumns(qint64 id, const QHash<Prop, QVariant> &values,
                                qint64 fileModified)
{
    QStringList assignments;
    QVariantList bound;
    for (auto it = values.begin(); it != values.end(); ++it) {
        const int index = trackColumnIndex(it.key());
        assignments.append(QStringLiteral("\"%1\" = ?").arg(propertyName(it.key())));
        bound.append(columnValueToSql(trackColumns().at(index).type, it.value()));
    }
    if (fileModified >= 0) {
        assignments.append(QStringLiteral("fileModified = ?"));
        bound.append(fileModified);
    }
    if (assignments.isEmpty())
        return;
    bound.append(id);
    database_.run(QStringLiteral("UPDATE tracks SET %1 WHERE id = ?")
                      .arg(assignments.join(QLatin1String(", "))),
                  bound);
}

void LibraryStore::cacheColumns(qint64 id, const QHash<Prop, QVariant> &values)
{
    TrackRow &track = row(id);
    for (auto it = values.begin(); it != values.end(); ++it) {
        const int index = trackColumnIndex(it.key());
        track.values[index] = columnValueFromSql(trackColumns().at(index).type,
                                                 columnValueToSql(trackColumns().at(index).type,
                                                                  it.value()));
    }
    emit tracksChanged({id});
}

void LibraryStore::setTrackValue(qint64 id, Prop property, const QVariant &value)
{
    QMutexLocker locker(&mutex_);
    row(id);
    if (property == Prop::location) {
        relink(id, value.toString());
        return;
    }
    const int index = trackColumnIndex(property);
    if (index < 0 || !trackColumns().at(index).writable)
        throwBridgeFailure(kBridgeErrorUnsupported,
                           QStringLiteral("%1 of a track is read only").arg(propertyName(property)));
    const TrackColumn &column = trackColumns().at(index);
    if (column.storage != TrackStorage::File) {
        storeColumns(id, {{property, clampedValue(property, value)}});
        return;
    }
    saveOthersOfThisThread(id);
    const QVariant previous = row(id).values.at(index);
    // The database follows once the file holds the value (flush()).
    cacheColumns(id, {{property, value}});
    PendingSave &pending = pendingFor(id);
    if (!pending.originals.contains(property))
        pending.originals.insert(property, previous);
    pending.tags.insert(property, row(id).values.at(index));
}

LibraryStore::PendingSave &LibraryStore::pendingFor(qint64 id)
{
    PendingSave &pending = pending_[id];
    if (!pending.owner)
        pending.owner = QThread::currentThread();
    // Started on the store's own thread, whoever writes.
    QMetaObject::invokeMethod(this, [this] {
        if (!saveTimer_.isActive())
            saveTimer_.start();
    });
    return pending;
}

void LibraryStore::saveOthersOfThisThread(qint64 id)
{
    QList<qint64> others;
    for (auto it = pending_.begin(); it != pending_.end(); ++it)
        if (it.key() != id && it->owner == QThread::currentThread())
            others.append(it.key());
    for (qint64 other : others)
        flush(other);
}

void LibraryStore::saveTrack(qint64 id)
{
    QMutexLocker locker(&mutex_);
    if (pending_.contains(id))
        flush(id);
}

void LibraryStore::saveAll()
{
    QMutexLocker locker(&mutex_);
    std::optional<BridgeFailure> first;
    for (qint64 id : pending_.keys()) {
        try {
            flush(id);
        } catch (const BridgeFailure &failure) {
            if (!first)
                first = failure;
        }
    }
    syncSavedFiles();
    if (first)
        throw *first;
}

void LibraryStore::noteSaved(const QString &path)
{
    unsyncedFolders_.insert(QFileInfo(path).absolutePath());
    if (++unsyncedSaves_ >= kSavesPerCheckpoint)
        syncSavedFiles();
    else
        QMetaObject::invokeMethod(this, [this] { syncTimer_.start(); });
}

void LibraryStore::syncSavedFiles()
{
    QMutexLocker locker(&mutex_);
    // One syncfs per file system is enough; folders on the same one cost nothing more.
    QSet<dev_t> synced;
    for (const QString &folder : std::as_const(unsyncedFolders_)) {
        const int fd = ::open(QFile::encodeName(folder).constData(),
                              O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (fd < 0)
            continue;
        struct stat info {};
        if (::fstat(fd, &info) == 0 && !synced.contains(info.st_dev)) {
            ::syncfs(fd);
            synced.insert(info.st_dev);
        }
        ::close(fd);
    }
    unsyncedFolders_.clear();
    unsyncedSaves_ = 0;
}

QList<qint64> LibraryStore::refreshChangedTracks()
{
    QMutexLocker locker(&mutex_);
    QList<qint64> changed;
    const int sizeIndex = trackColumnIndex(Prop::size);
    // A save cut off before its rename leaves its hidden copy beside the file; the original is
    // whole, so the copy only takes room.
    QSet<QString> folders;
    for (const TrackRow &track : std::as_const(rows_))
        folders.insert(QFileInfo(track.path).absolutePath());
    for (const QString &folder : std::as_const(folders)) {
        QDir dir(folder);
        for (const QString &name : dir.entryList({QStringLiteral(".*.orvane-??????")},
                                                 QDir::Files | QDir::Hidden | QDir::System))
            dir.remove(name);
    }
    for (qint64 id : std::as_const(order_)) {
        const TrackRow &track = rows_.value(id);
        const QFileInfo info(track.path);
        if (pending_.contains(id) || !info.isFile())
            continue;
        if (info.size() == track.values.at(sizeIndex).toLongLong()
            && info.lastModified().toMSecsSinceEpoch() == track.fileModified)
            continue;
        AudioFile file(track.path);
        if (file.isAudio())
            changed.append(id);
    }
    if (changed.isEmpty())
        return changed;
    TransactionGuard transaction(database_);
    QHash<qint64, QHash<Prop, QVariant>> values;
    QHash<qint64, qint64> modified;
    for (qint64 id : std::as_const(changed)) {
        const QString path = rows_.value(id).path;
        AudioFile file(path);
        QHash<Prop, QVariant> read = file.tags();
        read.insert(factValues(file.facts()));
        modified.insert(id, fileModifiedTime(path));
        writeColumns(id, read, modified.value(id));
        values.insert(id, read);
    }
    transaction.commit();
    for (qint64 id : std::as_const(changed)) {
        cacheColumns(id, values.value(id));
        row(id).fileModified = modified.value(id);
    }
    return changed;
}

void LibraryStore::flushFromTimer()
{
    QMutexLocker locker(&mutex_);
    for (qint64 id : pending_.keys()) {
        const QString persistentID = rows_.value(id).persistentID;
        try {
            flush(id);
        } catch (const BridgeFailure &failure) {
            ExceptionSink::logException(failure);
            emit tagSaveFailed(persistentID, QString::fromUtf8(failure.what()));
        }
    }
}

void LibraryStore::flush(qint64 id)
{
    PendingSave pending = pending_.take(id);
    if (!rows_.contains(id))
        return;
    // A tag written back to what it was is no change: a file whose tags all end as they were
    // is not rewritten, so it keeps its modification time.
    for (auto it = pending.tags.begin(); it != pending.tags.end();) {
        if (pending.originals.value(it.key()) == it.value())
            it = pending.tags.erase(it);
        else
            ++it;
    }
    if (pending.tags.isEmpty() && !pending.pictures)
        return;
    const QString path = row(id).path;
    bool fileReplaced = false;
    QString problem; // of the file itself; it names the file
    try {
        // A link is saved through to its file, but never to one outside the music folder.
        if (const QFileInfo link(path); link.isSymLink()) {
            const QString target = link.canonicalFilePath();
            const QString folder = QFileInfo(musicFolder()).canonicalFilePath();
            if (target.isEmpty() || folder.isEmpty()
                || !target.startsWith(folder + QLatin1Char('/')))
                throwBridgeFailure(
                    kBridgeErrorWriteFailed,
                    problem = QStringLiteral("%1 is a symbolic link to %2, outside the music "
                                             "folder %3; the file was left as it was")
                                  .arg(path, target.isEmpty() ? link.symLinkTarget() : target,
                                       musicFolder()));
        }
        AudioFile file(path);
        if (!file.isAudio())
            throwBridgeFailure(kBridgeErrorWriteFailed,
                               problem = QStringLiteral("%1: %2").arg(path, file.problem()));
        // The row is written first but committed last: a database that refuses the write
        // stops here, before the file changes.
        TransactionGuard transaction(database_);
        writeColumns(id, pending.tags);
        file.setTags(pending.tags);
        if (pending.pictures)
            file.setPictures(*pending.pictures);
        if (!file.save(&problem))
            throwBridgeFailure(kBridgeErrorWriteFailed, problem);
        fileReplaced = true;
        noteSaved(path);
        QHash<Prop, QVariant> changed = factValues(file.facts());
        changed.insert(Prop::modificationDate, QDateTime::currentDateTimeUtc());
        const qint64 modified = fileModifiedTime(path);
        writeColumns(id, changed, modified);
        transaction.commit();
        cacheColumns(id, changed);
        row(id).fileModified = modified;
    } catch (const BridgeFailure &failure) {
        // A file already replaced keeps its new tags, and the cache with it; the database
        // catches up when the library next reads changed files.
        if (!fileReplaced && !pending.originals.isEmpty() && rows_.contains(id))
            cacheColumns(id, pending.originals);
        throwBridgeFailure(
            kBridgeErrorWriteFailed,
            fileReplaced ? QStringLiteral("the tags of %1 were saved, but the library could not "
                                          "record them: %2")
                               .arg(path, QString::fromUtf8(failure.what()))
            : !problem.isEmpty() ? QStringLiteral("cannot save the tags: %1").arg(problem)
                                 : QStringLiteral("cannot save the tags of %1: %2; the file was "
                                                  "left as it was")
                                       .arg(path, QString::fromUtf8(failure.what())));
    }
}

void LibraryStore::relink(qint64 id, const QString &path)
{
    const QString absolute = QFileInfo(path).absoluteFilePath();
    AudioFile file(absolute);
    if (!file.isAudio())
        throwBridgeFailure(kBridgeErrorWriteFailed,
                           QStringLiteral("cannot use %1: %2").arg(path, file.problem()));
    if (byPath_.value(absolute, id) != id)
        throwBridgeFailure(kBridgeErrorWriteFailed,
                           QStringLiteral("%1 is another track's file").arg(path));
    pending_.remove(id);
    TransactionGuard transaction(database_);
    database_.run(QStringLiteral("UPDATE tracks SET path = ? WHERE id = ?"), {absolute, id});
    QHash<Prop, QVariant> values = file.tags();
    values.insert(factValues(file.facts()));
    const qint64 modified = fileModifiedTime(absolute);
    writeColumns(id, values, modified);
    transaction.commit();
    cacheColumns(id, values);
    TrackRow &track = row(id);
    track.fileModified = modified;
    byPath_.remove(track.path);
    track.path = absolute;
    byPath_.insert(absolute, id);
}

void LibraryStore::removeTrack(qint64 id)
{
    QMutexLocker locker(&mutex_);
    const TrackRow track = row(id);
    TransactionGuard transaction(database_);
    changePlaylists(EntriesTable, QStringLiteral("DELETE FROM playlist_tracks WHERE track = ?"),
                    {id});
    database_.run(QStringLiteral("DELETE FROM tracks WHERE id = ?"), {id});
    transaction.commit();
    pending_.remove(id);
    rows_.remove(id);
    order_.removeOne(id);
    byPersistentID_.remove(track.persistentID);
    byPath_.remove(track.path);
    emit tracksChanged({id});
}

QVariantMap LibraryStore::storeMetadata(qint64 id)
{
    QMutexLocker locker(&mutex_);
    return AudioFile(row(id).path).storeMetadata();
}

QList<EmbeddedPicture> LibraryStore::embeddedPictures(qint64 id)
{
    auto found = pending_.constFind(id);
    if (found != pending_.constEnd() && found->pictures)
        return *found->pictures;
    return AudioFile(row(id).path).pictures();
}

QString LibraryStore::sidecarArtworkPath(qint64 id)
{
    const QDir folder = QFileInfo(row(id).path).dir();
    for (const QString &name : kSidecarArtworkNames)
        if (folder.exists(name))
            return folder.filePath(name);
    return {};
}

QList<LibraryStore::Artwork> LibraryStore::artworks(qint64 id)
{
    QMutexLocker locker(&mutex_);
    QList<Artwork> artworks;
    for (const EmbeddedPicture &picture : embeddedPictures(id))
        artworks.append({picture.data, picture.description, false});
    const QString sidecar = sidecarArtworkPath(id);
    QFile file(sidecar);
    if (!sidecar.isEmpty() && file.open(QIODevice::ReadOnly))
        artworks.append({file.readAll(), {}, true});
    return artworks;
}

void LibraryStore::setArtworkData(qint64 id, qsizetype index, const QByteArray &data)
{
    QMutexLocker locker(&mutex_);
    saveOthersOfThisThread(id);
    QList<EmbeddedPicture> pictures = embeddedPictures(id);
    if (index >= 0 && index < pictures.size())
        pictures[index].data = data;
    else
        pictures.append({data, {}});
    pendingFor(id).pictures = pictures;
}

void LibraryStore::setArtworkDescription(qint64 id, qsizetype index, const QString &description)
{
    QMutexLocker locker(&mutex_);
    QList<EmbeddedPicture> pictures = embeddedPictures(id);
    if (index < 0 || index >= pictures.size())
        noSuchObject(QStringLiteral("artwork"));
    saveOthersOfThisThread(id);
    pictures[index].description = description;
    pendingFor(id).pictures = pictures;
}

void LibraryStore::removeArtwork(qint64 id, qsizetype index)
{
    QMutexLocker locker(&mutex_);
    QList<EmbeddedPicture> pictures = embeddedPictures(id);
    const QString sidecar = sidecarArtworkPath(id);
    if (index == pictures.size() && !sidecar.isEmpty()) {
        QFile::remove(sidecar);
        return;
    }
    if (index < 0 || index >= pictures.size())
        noSuchObject(QStringLiteral("artwork"));
    saveOthersOfThisThread(id);
    pictures.removeAt(index);
    pendingFor(id).pictures = pictures;
}

QString LibraryStore::newPersistentID()
{
    for (;;) {
        const QString id = QStringLiteral("%1")
                               .arg(QRandomGenerator::global()->generate64(), 16, 16,
                                    QLatin1Char('0'))
                               .toUpper();
        if (!byPersistentID_.contains(id))
            return id;
    }
}

QStringList LibraryStore::importCandidates(const QString &path)
{
    return candidateFiles(path);
}

LibraryStore::ImportResult LibraryStore::importPaths(const QStringList &paths, qint64 playlistId)
{
    QMutexLocker locker(&mutex_);
    ImportResult result;
    struct NewTrack
    {
        QString path;
        QString persistentID;
        QHash<Prop, QVariant> values;
        qint64 fileModified = 0;
    };
    QList<NewTrack> made;
    QList<qint64> existing;
    QSet<QString> seen;
    for (const QString &path : paths) {
        if (!QFileInfo::exists(path)) {
            result.refused.append({path, QStringLiteral("no such file or folder")});
            continue;
        }
        for (const QString &file : candidateFiles(path)) {
            if (seen.contains(file))
                continue;
            seen.insert(file);
            if (const qint64 id = byPath_.value(file)) {
                existing.append(id);
                continue;
            }
            AudioFile audio(file);
            if (!audio.isAudio()) {
                result.refused.append({file, audio.problem()});
                continue;
            }
            NewTrack track{file, newPersistentID(), audio.tags()};
            track.values.insert(factValues(audio.facts()));
            track.values.insert(Prop::finish, track.values.value(Prop::duration));
            const QDateTime now = QDateTime::currentDateTimeUtc();
            track.values.insert(Prop::dateAdded, now);
            track.values.insert(Prop::modificationDate, QFileInfo(file).lastModified().toUTC());
            track.fileModified = fileModifiedTime(file);
            byPersistentID_.insert(track.persistentID, 0); // reserved until inserted
            made.append(std::move(track));
        }
    }

    QStringList names = {"persistentID", "path", "fileModified"};
    const QList<Prop> properties = made.isEmpty() ? QList<Prop>() : made.first().values.keys();
    for (Prop property : properties)
        names.append(propertyName(property));
    const QString insert = QStringLiteral("INSERT INTO tracks (%1) VALUES (%2)")
                               .arg(columnList(names),
                                    QStringList(names.size(), QStringLiteral("?")).join(','));
    QList<qint64> ids;
    try {
        TransactionGuard transaction(database_);
        for (const NewTrack &track : made) {
            QVariantList bound = {track.persistentID, track.path, track.fileModified};
            for (Prop property : properties)
                bound.append(columnValueToSql(trackColumns().at(trackColumnIndex(property)).type,
                                              track.values.value(property)));
            ids.append(database_.run(insert, bound).lastInsertId().toLongLong());
        }
        if (playlistId)
            appendToPlaylist(playlistId, ids + existing);
        transaction.commit();
    } catch (...) {
        for (const NewTrack &track : made)
            byPersistentID_.remove(track.persistentID);
        throw;
    }

    // Read back, so the cache holds the database's defaults too.
    if (!ids.isEmpty()) {
        loadTracks(ids.first());
        emit tracksChanged(ids);
    }
    result.added = ids;
    return result;
}

const LibraryStore::Playlists &LibraryStore::playlists()
{
    // Read inside a transaction that then rolled back, the copy may hold what never was.
    if (playlists_ && playlists_->rollbacks == database_.rollbackCount())
        return *playlists_;
    Playlists all;
    all.rollbacks = database_.rollbackCount();
    {
        QueryRun query = database_.run(
            QStringLiteral("SELECT id, persistentID, name, specialKind, parent, smart, shared "
                           "FROM playlists ORDER BY position, id"));
        while (query.next()) {
            const PlaylistRow row{query.value(0).toLongLong(),
                                  query.value(1).toString(),
                                  query.value(2).toString(),
                                  FourCharCode(query.value(3).toLongLong()),
                                  query.value(4).toLongLong(),
                                  query.value(5).toBool(),
                                  query.value(6).toBool()};
            if (row.specialKind == kSpL) {
                if (!all.libraryId)
                    all.libraryId = row.id;
            } else {
                all.userIds.append(row.id);
            }
            if (row.parent)
                all.children[row.parent].append(row.id);
            all.rows.insert(row.id, row);
        }
    }
    playlists_ = std::move(all);
    return *playlists_;
}

const QList<qint64> &LibraryStore::playlistEntries(qint64 playlistId)
{
    static const QList<qint64> none;
    if (!playlistEntries_ || playlistEntries_->rollbacks != database_.rollbackCount()) {
        PlaylistEntries all;
        all.rollbacks = database_.rollbackCount();
        QueryRun query = database_.run(QStringLiteral(
            "SELECT playlist, track FROM playlist_tracks ORDER BY playlist, position"));
        while (query.next())
            all.tracks[query.value(0).toLongLong()].append(query.value(1).toLongLong());
        playlistEntries_ = std::move(all);
    }
    const auto found = playlistEntries_->tracks.constFind(playlistId);
    return found == playlistEntries_->tracks.constEnd() ? none : *found;
}

QueryRun LibraryStore::changePlaylists(int tables, const QString &statement,
                                       const QVariantList &values)
{
    if (tables & PlaylistsTable)
        playlists_.reset();
    if (tables & EntriesTable)
        playlistEntries_.reset();
    return database_.run(statement, values);
}

qint64 LibraryStore::libraryPlaylistId()
{
    QMutexLocker locker(&mutex_);
    return playlists().libraryId;
}

QList<qint64> LibraryStore::userPlaylistIds()
{
    QMutexLocker locker(&mutex_);
    return playlists().userIds;
}

std::optional<LibraryStore::PlaylistRow> LibraryStore::playlist(qint64 id)
{
    QMutexLocker locker(&mutex_);
    const Playlists &all = playlists();
    const auto found = all.rows.constFind(id);
    if (found == all.rows.constEnd())
        return std::nullopt;
    return *found;
}

qint64 LibraryStore::playlistIdForPersistentID(const QString &persistentID)
{
    QMutexLocker locker(&mutex_);
    return database_
        .singleValue(QStringLiteral("SELECT id FROM playlists WHERE persistentID = ?"),
                     {persistentID.toUpper()})
        .toLongLong();
}

QList<qint64> LibraryStore::descendants(qint64 playlistId)
{
    QList<qint64> found;
    const QList<qint64> children = playlists().children.value(playlistId);
    for (qint64 child : children)
        found += QList<qint64>{child} + descendants(child);
    return found;
}

QList<qint64> LibraryStore::playlistTrackIds(qint64 id)
{
    QMutexLocker locker(&mutex_);
    const std::optional<PlaylistRow> list = playlist(id);
    if (!list)
        noSuchObject(QStringLiteral("playlist"));
    if (list->specialKind == kSpL)
        return order_;
    // A folder holds the tracks of the playlists inside it, each once.
    if (list->specialKind != kSpF)
        return playlistEntries(id);
    QList<qint64> ids;
    QSet<qint64> seen;
    for (qint64 source : descendants(id)) {
        for (qint64 track : playlistEntries(source)) {
            if (!seen.contains(track))
                ids.append(track);
            seen.insert(track);
        }
    }
    return ids;
}

qint64 LibraryStore::makePlaylist(const QString &name, bool folder, qsizetype index)
{
    QMutexLocker locker(&mutex_);
    const qsizetype count = userPlaylistIds().size();
    index = std::clamp<qsizetype>(index, 0, count);
    QString persistentID = newPersistentID();
    TransactionGuard transaction(database_);
    // Positions are kept dense and in order, so an index is a position.
    const QList<qint64> ids = userPlaylistIds();
    for (qsizetype i = index; i < ids.size(); ++i)
        changePlaylists(PlaylistsTable,
                        QStringLiteral("UPDATE playlists SET position = ? WHERE id = ?"),
                        {i + 1, ids.at(i)});
    const qint64 id = changePlaylists(PlaylistsTable,
                                      QStringLiteral("INSERT INTO playlists (persistentID, name, "
                                                     "specialKind, position) VALUES (?, ?, ?, ?)"),
                                      {persistentID, name, qint64(folder ? kSpF : kNon), index})
                          .lastInsertId()
                          .toLongLong();
    transaction.commit();
    return id;
}

void LibraryStore::renamePlaylist(qint64 id, const QString &name)
{
    QMutexLocker locker(&mutex_);
    changePlaylists(PlaylistsTable, QStringLiteral("UPDATE playlists SET name = ? WHERE id = ?"),
                    {name, id});
}

void LibraryStore::appendToPlaylist(qint64 playlistId, const QList<qint64> &trackIds)
{
    const std::optional<PlaylistRow> list = playlist(playlistId);
    if (!list)
        noSuchObject(QStringLiteral("playlist"));
    if (list->specialKind == kSpL || trackIds.isEmpty())
        return; // every track is in the library playlist
    if (list->specialKind == kSpF || list->smart)
        throwBridgeFailure(kBridgeErrorUnsupported,
                           QStringLiteral("tracks cannot be added to %1").arg(list->name));
    qint64 position =
        database_
            .singleValue(QStringLiteral("SELECT COALESCE(MAX(position), -1) FROM playlist_tracks "
                                        "WHERE playlist = ?"),
                         {playlistId})
            .toLongLong();
    for (qint64 track : trackIds)
        changePlaylists(EntriesTable,
                        QStringLiteral("INSERT INTO playlist_tracks (playlist, position, track) "
                                       "VALUES (?, ?, ?)"),
                        {playlistId, ++position, track});
}

void LibraryStore::addTracksToPlaylist(qint64 playlistId, const QList<qint64> &trackIds)
{
    QMutexLocker locker(&mutex_);
    TransactionGuard transaction(database_);
    appendToPlaylist(playlistId, trackIds);
    transaction.commit();
}

void LibraryStore::removeTrackFromPlaylist(qint64 playlistId, qint64 trackId)
{
    QMutexLocker locker(&mutex_);
    changePlaylists(EntriesTable,
                    QStringLiteral("DELETE FROM playlist_tracks WHERE playlist = ? AND track = ?"),
                    {playlistId, trackId});
}

qint64 LibraryStore::duplicatePlaylist(qint64 id, qint64 parent)
{
    QMutexLocker locker(&mutex_);
    const std::optional<PlaylistRow> original = playlist(id);
    if (!original || original->specialKind == kSpL)
        throwBridgeFailure(kBridgeErrorUnsupported, QStringLiteral("cannot duplicate this playlist"));
    const QList<qint64> children = descendants(id);
    const QList<qint64> tracks = original->specialKind == kSpF ? QList<qint64>()
                                                                : playlistTrackIds(id);
    const qint64 copy = makePlaylist(original->name, original->specialKind == kSpF,
                                     userPlaylistIds().size());
    TransactionGuard transaction(database_);
    changePlaylists(PlaylistsTable, QStringLiteral("UPDATE playlists SET parent = ? WHERE id = ?"),
                    {parent ? QVariant(parent) : QVariant(), copy});
    appendToPlaylist(copy, tracks);
    transaction.commit();
    for (qint64 child : children)
        if (playlist(child)->parent == id)
            duplicatePlaylist(child, copy);
    return copy;
}

void LibraryStore::movePlaylist(qint64 id, qint64 parent)
{
    QMutexLocker locker(&mutex_);
    if (parent && (parent == id || descendants(id).contains(parent)))
        throwBridgeFailure(kBridgeErrorUnsupported,
                           QStringLiteral("a folder cannot move into itself"));
    changePlaylists(PlaylistsTable, QStringLiteral("UPDATE playlists SET parent = ? WHERE id = ?"),
                    {parent ? QVariant(parent) : QVariant(), id});
}

void LibraryStore::deletePlaylist(qint64 id)
{
    QMutexLocker locker(&mutex_);
    const std::optional<PlaylistRow> list = playlist(id);
    if (!list)
        noSuchObject(QStringLiteral("playlist"));
    if (list->specialKind == kSpL)
        throwBridgeFailure(kBridgeErrorUnsupported,
                           QStringLiteral("the library playlist cannot be deleted"));
    QList<qint64> doomed = descendants(id);
    doomed.prepend(id);
    TransactionGuard transaction(database_);
    for (auto it = doomed.crbegin(); it != doomed.crend(); ++it) {
        changePlaylists(EntriesTable,
                        QStringLiteral("DELETE FROM playlist_tracks WHERE playlist = ?"), {*it});
        changePlaylists(PlaylistsTable, QStringLiteral("DELETE FROM playlists WHERE id = ?"),
                        {*it});
    }
    const QList<qint64> remaining = userPlaylistIds();
    for (qsizetype i = 0; i < remaining.size(); ++i)
        changePlaylists(PlaylistsTable,
                        QStringLiteral("UPDATE playlists SET position = ? WHERE id = ?"),
                        {i, remaining.at(i)});
    transaction.commit();
}

QVariant LibraryStore::setting(const QString &key)
{
    QMutexLocker locker(&mutex_);
    return database_.singleValue(QStringLiteral("SELECT value FROM settings WHERE key = ?"), {key});
}

void LibraryStore::setSetting(const QString &key, const QVariant &value)
{
    QMutexLocker locker(&mutex_);
    database_.run(QStringLiteral("INSERT OR REPLACE INTO settings (key, value) VALUES (?, ?)"),
                  {key, value});
}

QString LibraryStore::musicFolder()
{
    const QString folder = setting(QStringLiteral("musicFolder")).toString();
    return folder.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::MusicLocation)
                            : folder;
}

QString LibraryStore::sourcePersistentID()
{
    return setting(QStringLiteral("sourcePersistentID")).toString();
}

QStringList LibraryStore::selection() const
{
    QMutexLocker locker(&mutex_);
    return selection_;
}

void LibraryStore::setSelection(const QStringList &persistentIDs)
{
    QMutexLocker locker(&mutex_);
    selection_ = persistentIDs;
}

void LibraryStore::requestReveal(qint64 trackId)
{
    QString persistentID;
    {
        QMutexLocker locker(&mutex_);
        persistentID = row(trackId).persistentID;
    }
    emit revealRequested(persistentID);
}
