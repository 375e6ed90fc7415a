// What the library keeps when things go wrong: a full disk, a database it may not write, a
// damaged or newer database, threads that end, and tags with several values.
#include "audiofixtures.h"

#include "player/itunes.h"
#include "player/library/librarybackend.h"
#include "player/library/librarydatabase.h"

#include <QDirIterator>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <csignal>
#include <sys/mount.h>
#include <sys/resource.h>
#include <thread>

namespace {

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList mutagenValues(const QString &path, const QString &key)
{
    QProcess python;
    python.start(QStringLiteral("/usr/bin/python3"),
                 {"-c", "import sys, json, mutagen; f = mutagen.File(sys.argv[1], easy=True); "
                        "print(json.dumps((f.tags or {}).get(sys.argv[2], [])))",
                  path, key});
    EXPECT_TRUE(python.waitForFinished(30000) && python.exitCode() == 0);
    QStringList values;
    for (const QJsonValue &value : QJsonDocument::fromJson(python.readAllStandardOutput()).array())
        values.append(value.toString());
    return values;
}

void setMutagenValues(const QString &path, const QString &key, const QStringList &values)
{
    QStringList arguments = {"-c", "import sys, mutagen; f = mutagen.File(sys.argv[1], easy=True); "
                                   "f.add_tags() if f.tags is None else None; "
                                   "f[sys.argv[2]] = sys.argv[3:]; f.save()",
                             path, key};
    QProcess python;
    python.start(QStringLiteral("/usr/bin/python3"), arguments + values);
    ASSERT_TRUE(python.waitForFinished(30000) && python.exitCode() == 0)
        << python.readAllStandardError().toStdString();
}

QStringList leftovers(const QString &folder)
{
    QStringList found;
    QDirIterator it(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext())
        if (const QString file = it.next(); file.contains(".orvane-"))
            found.append(file);
    return found;
}

// A disk with no room left: a small tmpfs filled up where the machine lets us mount one,
// otherwise a file size limit, under which the kernel refuses every write past it.
class FullDisk
{
public:
    explicit FullDisk(const QString &folder) : folder_(folder)
    {
        mounted_ = ::mount("tmpfs", QFile::encodeName(folder).constData(), "tmpfs", 0,
                           "size=2m") == 0;
    }
    ~FullDisk()
    {
        if (limited_) {
            ::setrlimit(RLIMIT_FSIZE, &previous_);
            std::signal(SIGXFSZ, SIG_DFL);
        }
        if (mounted_)
            ::umount2(QFile::encodeName(folder_).constData(), MNT_DETACH);
    }
    bool mounted() const { return mounted_; }
    void fill()
    {
        if (mounted_) {
            QFile filler(folder_ + "/filler");
            filler.open(QIODevice::WriteOnly);
            const QByteArray block(4096, 'x');
            while (filler.write(block) == block.size() && filler.flush()) {
            }
            return;
        }
        std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &previous_);
        rlimit limit = previous_;
        limit.rlim_cur = 1024;
        limited_ = ::setrlimit(RLIMIT_FSIZE, &limit) == 0;
    }

private:
    QString folder_;
    bool mounted_ = false;
    bool limited_ = false;
    rlimit previous_{};
};

class LibrarySafetyTest : public ::testing::Test
{
protected:
    QString databasePath() const { return dir.filePath("db/Library.sqlite"); }
    QList<ITunesFileTrack> addAll(const QStringList &paths)
    {
        QList<ITunesFileTrack> tracks;
        for (const ITunesTrack &track : app.add(paths))
            tracks.append(track.as<ITunesFileTrack>());
        EXPECT_EQ(tracks.size(), paths.size());
        return tracks;
    }
    QString storedName(const QString &persistentID)
    {
        return backend->store()
            ->database()
            .singleValue("SELECT name FROM tracks WHERE persistentID = ?", {persistentID})
            .toString();
    }

    QTemporaryDir dir;
    std::shared_ptr<LibraryBackend> backend = std::make_shared<LibraryBackend>(databasePath());
    ITunesApplication app = ITunesApplication::withBackend(backend);
};

TEST_F(LibrarySafetyTest, AFullDiskLeavesEveryFileAsItWasAndEveryTrackInError)
{
    const QString music = dir.filePath("music");
    QDir().mkpath(music);
    FullDisk disk(music);
    QStringList paths;
    for (const QString name : {"a.mp3", "b.m4a", "c.flac", "d.ogg"})
        paths.append(makeAudio(music, name));
    QList<QByteArray> before;
    for (const QString &path : paths)
        before.append(contents(path));
    const QList<ITunesFileTrack> tracks = addAll(paths);
    disk.fill();

    for (const ITunesFileTrack &track : tracks) {
        SCOPED_TRACE(track.location().toStdString());
        const QString oldName = track.name();
        // Long enough that no format keeps it in its padding.
        track.setName(QString(5000, QLatin1Char('n')));
        try {
            backend->saveTrack(track.persistentID());
            ADD_FAILURE() << "the save did not fail";
        } catch (const BridgeFailure &failure) {
            const QString message = QString::fromUtf8(failure.what());
            if (disk.mounted()) {
                EXPECT_TRUE(message.contains("No space left on device")) << message.toStdString();
            }
            EXPECT_TRUE(message.contains("the file was left as it was")) << message.toStdString();
        }
        EXPECT_EQ(track.name(), oldName);
        EXPECT_EQ(storedName(track.persistentID()), oldName);
    }
    for (qsizetype i = 0; i < paths.size(); ++i)
        EXPECT_EQ(contents(paths.at(i)), before.at(i)) << paths.at(i).toStdString();
    EXPECT_EQ(leftovers(music), QStringList());
}

TEST_F(LibrarySafetyTest, ADatabaseThatRefusesWritesStopsTheSaveBeforeTheFileChanges)
{
    const QString path = makeAudio(dir.filePath("music"), "a.flac");
    const QByteArray before = contents(path);
    const ITunesFileTrack track = addAll({path}).value(0);
    // What SQLite does with a read-only Library.sqlite, on this thread's connection.
    QSqlQuery(backend->store()->database().connection()).exec("PRAGMA query_only = 1");
    track.setName("new");
    try {
        backend->saveTrack(track.persistentID());
        ADD_FAILURE() << "the save did not fail";
    } catch (const BridgeFailure &failure) {
        EXPECT_TRUE(QString::fromUtf8(failure.what()).contains("make it and its folder writable"))
            << failure.what();
    }
    EXPECT_EQ(contents(path), before);
    EXPECT_NE(track.name(), "new");

    QSqlQuery(backend->store()->database().connection()).exec("PRAGMA query_only = 0");
    track.setName("new");
    backend->saveTrack(track.persistentID());
    EXPECT_EQ(mutagenTag(path, "title"), "new");
    EXPECT_EQ(storedName(track.persistentID()), "new");
}

TEST_F(LibrarySafetyTest, FilesChangedBehindTheLibrarysBackAreReadAgain)
{
    const QString path = makeAudio(dir.filePath("music"), "a.mp3");
    const ITunesFileTrack track = addAll({path}).value(0);
    track.setName("saved by the library");
    backend->saveTrack(track.persistentID());
    EXPECT_EQ(backend->refreshChangedTracks(), 0);

    // As if a crash had come between the file's rename and the database's commit.
    setMutagenValues(path, "title", {"only in the file"});
    EXPECT_EQ(backend->refreshChangedTracks(), 1);
    EXPECT_EQ(track.name(), "only in the file");
    EXPECT_EQ(storedName(track.persistentID()), "only in the file");
    EXPECT_EQ(backend->refreshChangedTracks(), 0);

    // The hidden copy a killed save leaves behind goes with the next refresh.
    QFile stale(dir.filePath("music/.a.mp3.orvane-Ab12Cd"));
    ASSERT_TRUE(stale.open(QIODevice::WriteOnly));
    stale.close();
    backend->refreshChangedTracks();
    EXPECT_FALSE(stale.exists());
}

TEST_F(LibrarySafetyTest, ALinkIsSavedThroughOnlyToAFileInsideTheMusicFolder)
{
    const QString music = dir.filePath("music");
    const QString inside = makeAudio(music + "/real", "in.mp3");
    const QString outside = makeAudio(dir.filePath("elsewhere"), "out.mp3");
    backend->setMusicFolder(music);
    ASSERT_TRUE(QFile::link(inside, music + "/in-link.mp3"));
    ASSERT_TRUE(QFile::link(outside, music + "/out-link.mp3"));
    const QByteArray before = contents(outside);
    const QList<ITunesFileTrack> tracks = addAll({music + "/in-link.mp3", music + "/out-link.mp3"});
    for (const ITunesFileTrack &track : tracks)
        track.setName("through the link");

    backend->saveTrack(tracks.at(0).persistentID());
    EXPECT_EQ(mutagenTag(inside, "title"), "through the link");
    EXPECT_TRUE(QFileInfo(music + "/in-link.mp3").isSymLink());
    try {
        backend->saveTrack(tracks.at(1).persistentID());
        ADD_FAILURE() << "the save went through the link";
    } catch (const BridgeFailure &failure) {
        EXPECT_TRUE(QString::fromUtf8(failure.what()).contains("outside the music folder"))
            << failure.what();
    }
    EXPECT_EQ(contents(outside), before);
}

TEST_F(LibrarySafetyTest, EveryValueOfATagWithSeveralIsKept)
{
    for (const QString name : {"two.mp3", "two.m4a", "two.flac"}) {
        SCOPED_TRACE(name.toStdString());
        const QString path = makeAudio(dir.filePath("music"), name);
        setMutagenValues(path, "artist", {"Anna", "Bo"});
        setMutagenValues(path, "genre", {"Jazz", "Soul"});
        const ITunesFileTrack track = addAll({path}).value(0);
        track.setName("edited");
        track.setGenre("Blues");
        backend->saveTrack(track.persistentID());
        EXPECT_EQ(mutagenValues(path, "title"), QStringList{"edited"});
        EXPECT_EQ(mutagenValues(path, "artist"), (QStringList{"Anna", "Bo"}));
        EXPECT_EQ(mutagenValues(path, "genre"), (QStringList{"Blues", "Soul"}));
    }
}

TEST_F(LibrarySafetyTest, ALibraryOfANewerVersionIsRefusedAndLeftUntouched)
{
    const QString path = dir.filePath("newer/Library.sqlite");
    QDir().mkpath(dir.filePath("newer"));
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "newer");
        db.setDatabaseName(path);
        ASSERT_TRUE(db.open());
        QSqlQuery(db).exec(QString("PRAGMA user_version = %1")
                               .arg(LibraryDatabase::latestSchemaVersion() + 1));
        QSqlQuery(db).exec("PRAGMA journal_mode = DELETE");
        db.close();
    }
    QSqlDatabase::removeDatabase("newer");
    const QByteArray before = contents(path);
    ASSERT_FALSE(before.isEmpty());

    LibraryBackend newer(path);
    EXPECT_FALSE(newer.isRunning());
    EXPECT_TRUE(newer.openError().contains("newer version")) << newer.openError().toStdString();
    EXPECT_EQ(contents(path), before);
    EXPECT_EQ(QDir(dir.filePath("newer")).entryList(QDir::Files), QStringList{"Library.sqlite"});
}

TEST_F(LibrarySafetyTest, ThreadsThatEndTakeTheirConnectionsWithThem)
{
    const QStringList before = QSqlDatabase::connectionNames();
    for (int i = 0; i < 3; ++i) {
        std::thread worker([this] { backend->store()->setting("musicFolder"); });
        worker.join();
    }
    EXPECT_EQ(QSqlDatabase::connectionNames(), before);
}

} // namespace
