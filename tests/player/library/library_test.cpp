#include "additions/ovexception.h"
#include "audiofixtures.h"

#include "player/itunes.h"
#include "player/library/librarybackend.h"
#include "player/library/audiofile.h"
#include "player/library/librarydatabase.h"
#include "player/library/trackcolumns.h"

#include <QBuffer>
#include <QDateTime>
#include <QFileInfo>
#include <QCoreApplication>
#include <QImage>
#include <QSqlQuery>
#include <QDeadlineTimer>
#include <QTemporaryDir>
#include <QThread>

#include <thread>

namespace {

class LibraryTest : public ::testing::Test
{
protected:
    QString databasePath() const { return dir.filePath("db/Library.sqlite"); }
    QString music() const { return dir.filePath("music"); }

    ITunesFileTrack addOne(const QString &fileName)
    {
        const QList<ITunesTrack> added = app.add({makeAudio(music(), fileName)});
        EXPECT_EQ(added.size(), 1);
        return added.value(0).as<ITunesFileTrack>();
    }

    QTemporaryDir dir;
    std::shared_ptr<LibraryBackend> backend = std::make_shared<LibraryBackend>(databasePath());
    ITunesApplication app = ITunesApplication::withBackend(backend);
};

// Collects what the bridge reports, so a test sees failures raised at the writer.
struct FailureLog : ScriptingBridgeDelegate
{
    void eventDidFail(const QString &, const QString &operation, const BridgeError &error) override
    {
        failures.append({operation, error.code});
    }
    QList<QPair<QString, int>> failures;
};

TEST_F(LibraryTest, TagWritesReachTheFileInEveryFormat)
{
    for (const QString fileName : {"t.mp3", "t.m4a", "t.flac", "t.ogg", "t.opus"}) {
        SCOPED_TRACE(fileName.toStdString());
        const ITunesFileTrack track = addOne(fileName);
        track.setName(QStringLiteral("Überschrift"));
        track.setArtist(QStringLiteral("Ärtist"));
        track.setTrackNumber(3);
        track.setTrackCount(12);
        track.setRating(80);
        backend->saveTrack(track.persistentID());
        EXPECT_EQ(mutagenTag(track.location(), "title"), QStringLiteral("Überschrift"));
        EXPECT_EQ(mutagenTag(track.location(), "artist"), QStringLiteral("Ärtist"));
        EXPECT_EQ(mutagenTag(track.location(), "tracknumber").section('/', 0, 0), "3");
        EXPECT_EQ(track.kind().isEmpty(), false);
        EXPECT_GT(track.duration(), 0.5);

        // A fresh library reads the file's tags back on import, the rating from the database.
        LibraryBackend other(dir.filePath("other.sqlite"));
        const auto reread = ITunesApplication::withBackend(
            std::shared_ptr<LibraryBackend>(&other, [](LibraryBackend *) {}))
                                .add({track.location()});
        ASSERT_EQ(reread.size(), 1);
        EXPECT_EQ(reread.first().name(), QStringLiteral("Überschrift"));
        EXPECT_EQ(reread.first().trackCount(), 12);
        EXPECT_EQ(reread.first().rating(), 0);
        EXPECT_EQ(track.rating(), 80);
        QFile::remove(dir.filePath("other.sqlite"));
    }
}

// Every property kept in files survives a save and a fresh import, in every format.
TEST_F(LibraryTest, EveryFileTagRoundTrips)
{
    for (const QString fileName : {"all.mp3", "all.m4a", "all.flac", "all.ogg", "all.opus"}) {
        SCOPED_TRACE(fileName.toStdString());
        const ITunesFileTrack track = addOne(fileName);
        QHash<Prop, QVariant> written;
        qint64 number = 2;
        for (const TrackColumn &column : trackColumns()) {
            if (column.storage != TrackStorage::File || !column.writable)
                continue;
            const QVariant value = column.type == ColumnType::Text
                                       ? QVariant(propertyName(column.property) + " é")
                                       : QVariant(number++);
            track.remoteObject()->write(column.property, value);
            written.insert(column.property, value);
        }
        backend->saveTrack(track.persistentID());

        LibraryStore fresh(dir.filePath(fileName + ".sqlite"));
        const qint64 id = fresh.importPaths({track.location()}).added.value(0);
        for (auto it = written.cbegin(); it != written.cend(); ++it)
            EXPECT_EQ(fresh.trackValue(id, it.key()).toString(), it.value().toString())
                << propertyName(it.key()).toStdString();
    }
}

TEST_F(LibraryTest, FailedSaveRollsTheTrackBackAndRaisesAtTheWriter)
{
    FailureLog log;
    app.setDelegate(&log);
    const ITunesFileTrack track = addOne("r.mp3");
    track.setName(QStringLiteral("Before"));
    backend->saveTrack(track.persistentID());
    const QString path = track.location();

    // Root can write anything, so the file is made unwritable by replacing it with a folder.
    track.setName(QStringLiteral("After"));
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(QDir().mkdir(path));
    EXPECT_THROW(track.saveTags(), OVException);
    EXPECT_EQ(track.name(), QStringLiteral("Before"));

    // The same through a write to another track from the same writer.
    ASSERT_TRUE(QDir().rmdir(path));
    makeAudio(music(), "r.mp3");
    const ITunesFileTrack other = addOne("s.mp3");
    track.setGenre(QStringLiteral("Jazz"));
    QFile::remove(path);
    other.setGenre(QStringLiteral("Rock"));
    ASSERT_EQ(log.failures.size(), 1);
    EXPECT_EQ(log.failures.first().second, int(kBridgeErrorWriteFailed));
    EXPECT_EQ(track.genre(), QString());
    app.setDelegate(nullptr);
}

TEST_F(LibraryTest, MovedFileLeavesTheTrackWithoutLocation)
{
    const ITunesFileTrack track = addOne("m.flac");
    const QString path = track.location();
    ASSERT_FALSE(path.isEmpty());
    ASSERT_TRUE(QFile::rename(path, path + ".moved"));
    EXPECT_EQ(track.location(), QString());
    track.setLocation(path + ".moved");
    EXPECT_EQ(track.location(), path + ".moved");
}

TEST_F(LibraryTest, FolderImportSkipsNonAudioAndNeverAddsTwice)
{
    makeAudio(music() + "/a", "1.mp3");
    makeAudio(music() + "/b", "2.m4a");
    QFile fake(music() + "/a/fake.mp3");
    ASSERT_TRUE(fake.open(QIODevice::WriteOnly));
    fake.write(QByteArray(4096, 'x'));
    fake.close();

    LibraryStore::ImportResult result = backend->importPaths({music()});
    EXPECT_EQ(result.added.size(), 2);
    ASSERT_EQ(result.refused.size(), 1);
    EXPECT_TRUE(result.refused.first().first.endsWith("fake.mp3"));
    EXPECT_FALSE(result.refused.first().second.isEmpty());

    result = backend->importPaths({music() + "/a/1.mp3"});
    EXPECT_TRUE(result.added.isEmpty());
    EXPECT_EQ(backend->tracks().size(), 2);
}

TEST_F(LibraryTest, PlaylistsAreMadeMovedDuplicatedAndDeleted)
{
    const ITunesFileTrack one = addOne("1.mp3");
    const ITunesFileTrack two = addOne("2.mp3");
    const ITunesSource source = app.sources().value(0);
    ASSERT_EQ(source.kind(), SourceKind::kLib);
    ASSERT_EQ(source.libraryPlaylists().value(0).specialKind(), kSpL);

    const ITunesUserPlaylist mix = source.makeUserPlaylist({{"name", "Mix"}}, ObjectClass::UserPlaylist);
    const ITunesUserPlaylist folder =
        source.makeUserPlaylist({{"name", "Folder"}}, ObjectClass::FolderPlaylist);
    ASSERT_EQ(source.userPlaylists().value(0).name(), QStringLiteral("Folder"));
    two.duplicateTo(mix);
    one.duplicateTo(mix);
    EXPECT_EQ(mix.tracks().value(0).persistentID(), two.persistentID());

    mix.moveTo(folder);
    EXPECT_TRUE(mix.parent().get().isSameObject(folder));
    EXPECT_EQ(folder.ov_tracksCount(), 2);
    EXPECT_TRUE(folder.moveTo(mix).isNull()); // not into a plain playlist

    const ITunesItem copy = folder.duplicateTo(source);
    EXPECT_EQ(source.userPlaylists().size(), 4);
    EXPECT_EQ(copy.as<ITunesFolderPlaylist>().ov_tracksCount(), 2);

    mix.tracks().value(0).deleteItem(); // from the playlist only
    EXPECT_EQ(mix.ov_tracksCount(), 1);
    EXPECT_EQ(app.sources().value(0).libraryPlaylists().value(0).ov_tracksCount(), 2);
    folder.deleteItem();
    EXPECT_EQ(source.userPlaylists().size(), 2);
    EXPECT_TRUE(mix.name().isEmpty());
}

TEST_F(LibraryTest, ArtworksAppendPastTheEndAndCountFromZero)
{
    const ITunesFileTrack track = addOne("art.m4a");
    EXPECT_TRUE(track.artworks().isEmpty());
    QImage red(8, 8, QImage::Format_ARGB32);
    red.fill(Qt::red);
    track.artworkAt(0).setData(red);
    QImage blue(4, 4, QImage::Format_ARGB32);
    blue.fill(Qt::blue);
    track.artworkAt(5).setData(blue);
    backend->saveTrack(track.persistentID());

    const QList<ITunesArtwork> artworks = track.artworks();
    ASSERT_EQ(artworks.size(), 2);
    EXPECT_EQ(artworks.at(1).data().size(), QSize(4, 4));
    EXPECT_EQ(artworks.at(0).format(), fourCharCode("PNGf"));
    EXPECT_FALSE(artworks.at(0).downloaded());

    // A picture beside the file comes last and counts as downloaded.
    ASSERT_TRUE(red.save(music() + "/cover.png"));
    EXPECT_TRUE(track.artworks().value(2).downloaded());
}

TEST_F(LibraryTest, UpgradedDatabaseEqualsAFreshOne)
{
    const QString oldPath = dir.filePath("old.sqlite");
    {
        LibraryDatabase old(oldPath, 1);
        ASSERT_EQ(old.schemaVersion(), 1);
        old.run("INSERT INTO tracks (persistentID, path, name) VALUES ('00000000000000AA', '/x.mp3', 'Kept')");
    }
    const auto schema = [](const QString &path) {
        LibraryDatabase database(path);
        QStringList tables;
        QSqlQuery query(database.connection());
        query.exec("SELECT name FROM sqlite_master WHERE type IN ('table', 'index') ORDER BY name");
        while (query.next())
            tables.append(query.value(0).toString());
        for (const QString &table : QStringList{"tracks", "playlists", "playlist_tracks", "settings"}) {
            QSqlQuery columns(database.connection());
            columns.exec(QStringLiteral("PRAGMA table_info(%1)").arg(table));
            while (columns.next())
                tables.append(table + "." + columns.value(1).toString() + " "
                              + columns.value(2).toString() + " " + columns.value(4).toString());
        }
        return QPair<int, QStringList>(database.schemaVersion(), tables);
    };
    EXPECT_EQ(schema(oldPath), schema(dir.filePath("fresh.sqlite")));
    LibraryBackend upgraded(oldPath);
    EXPECT_EQ(upgraded.trackWithPersistentID("00000000000000AA")->read(Prop::name).toString(), "Kept");
}

// A read stopped after its first row must not leave this thread's connection inside a read:
// it would go on seeing the rows as they were and could no longer write ("database is locked").
TEST_F(LibraryTest, ReadStoppedEarlyLeavesTheConnectionCurrent)
{
    LibraryDatabase database(dir.filePath("reads.sqlite"));
    database.run("INSERT INTO settings (key, value) VALUES ('a', '1')");
    database.run("INSERT INTO settings (key, value) VALUES ('b', '1')");
    {
        QueryRun keys = database.run("SELECT key FROM settings ORDER BY key");
        ASSERT_TRUE(keys.next());
        EXPECT_EQ(keys.value(0).toString(), "a");
    }
    ASSERT_TRUE(database.singleRow("SELECT key FROM settings ORDER BY key"));

    // Another thread, so another connection, writes.
    std::thread writer([&database] { database.run("UPDATE settings SET value = '2'"); });
    writer.join();
    const QString value = "SELECT value FROM settings WHERE key = ?";
    EXPECT_EQ(database.singleValue(value, {"b"}).toString(), "2");
    EXPECT_NO_THROW(database.run("UPDATE settings SET value = '3' WHERE key = 'a'"));
    EXPECT_EQ(database.singleValue(value, {"a"}).toString(), "3");
}

TEST_F(LibraryTest, SelectionAndStoreValues)
{
    const ITunesFileTrack track = addOne("s.m4a");
    addOne("t.mp3");
    backend->setSelection({track.persistentID(), "FFFFFFFFFFFFFFFF"});
    ASSERT_EQ(app.selection().size(), 1);
    EXPECT_TRUE(app.selection().first().isSameObject(track));
    EXPECT_TRUE(track.storeMetadata().isEmpty());

    QProcess python;
    python.start("/usr/bin/python3", {"-c", "import sys, mutagen.mp4 as m; f = m.MP4(sys.argv[1]); "
                                            "f['apID'] = ['me@example.org']; f['rtng'] = [4]; f.save()",
                                      track.location()});
    ASSERT_TRUE(python.waitForFinished(30000) && python.exitCode() == 0);
    track.setName(QStringLiteral("Tagged after the store values")); // must keep them
    backend->saveTrack(track.persistentID());
    const QVariantMap store = track.storeMetadata();
    EXPECT_EQ(store.value("itsk/apID").toString(), "me@example.org");
    EXPECT_EQ(store.value("itsk/rtng").toLongLong(), 4);
    EXPECT_FALSE(store.contains("itsk/ownr"));
    EXPECT_EQ(track.persistentID().size(), 16);
    EXPECT_GT(track.databaseID(), 0);
}

TEST_F(LibraryTest, WorkerSavesPerTrackAndOtherWritersWithinASecond)
{
    const ITunesFileTrack mainTrack = addOne("main.ogg");
    const ITunesFileTrack workerTrack = addOne("worker.mp3");
    const auto fileName = [](const ITunesFileTrack &track) {
        return AudioFile(track.location()).tags().value(Prop::name).toString();
    };

    QThread *worker = QThread::create([&] {
        workerTrack.setName(QStringLiteral("From the worker"));
        backend->saveTrack(workerTrack.persistentID());
    });
    worker->start();
    ASSERT_TRUE(worker->wait(QDeadlineTimer(30000)));
    delete worker;
    EXPECT_EQ(fileName(workerTrack), QStringLiteral("From the worker"));

    mainTrack.setName(QStringLiteral("From the main thread"));
    EXPECT_EQ(fileName(mainTrack), QString()); // gathered, not yet saved
    QDeadlineTimer deadline(5000);
    while (fileName(mainTrack).isEmpty() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    EXPECT_EQ(fileName(mainTrack), QStringLiteral("From the main thread"));
}

} // namespace

TEST_F(LibraryTest, TagsWrittenBackToWhatTheyWereLeaveTheFileUntouched)
{
    const ITunesFileTrack track = addOne("same.mp3");
    track.setName(QStringLiteral("Kept"));
    track.saveTags();
    const QString path = track.location();
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    const QDateTime backdated = QFileInfo(path).lastModified().addSecs(-60);
    ASSERT_TRUE(file.setFileTime(backdated, QFileDevice::FileModificationTime));
    file.close();

    track.setName(QStringLiteral("Kept"));
    track.setArtist(QStringLiteral("Passing"));
    track.setArtist(QString());
    track.saveTags();
    EXPECT_EQ(QFileInfo(path).lastModified(), backdated);

    track.setName(QStringLiteral("Changed"));
    track.saveTags();
    EXPECT_NE(QFileInfo(path).lastModified(), backdated);
    EXPECT_EQ(mutagenTag(path, "title"), QStringLiteral("Changed"));
}
