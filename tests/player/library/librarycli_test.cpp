#include "audiofixtures.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

namespace {

struct CliRun
{
    int status;
    QString out;
    QString err;
};

CliRun runCli(const QString &dataHome, const QStringList &arguments)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_DATA_HOME", dataHome);
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(ORVANE_CLI_PATH), arguments);
    EXPECT_TRUE(process.waitForFinished(60000));
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

QList<QJsonObject> jsonLines(const QString &text)
{
    QList<QJsonObject> objects;
    for (const QString &line : text.split('\n', Qt::SkipEmptyParts))
        objects.append(QJsonDocument::fromJson(line.toUtf8()).object());
    return objects;
}

TEST(LibraryCli, AddListShowAndPlaylists)
{
    QTemporaryDir dir;
    const QString data = dir.filePath("data");
    const QString good = makeAudio(dir.filePath("in"), "good.mp3");
    makeAudio(dir.filePath("in"), "other.flac");
    QFile bad(dir.filePath("bad.mp3"));
    ASSERT_TRUE(bad.open(QIODevice::WriteOnly));
    bad.write("not audio at all");
    bad.close();

    CliRun run = runCli(data, {"library", "add", dir.filePath("in"), bad.fileName()});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.err.contains(bad.fileName())) << run.err.toStdString();
    EXPECT_TRUE(QFile::exists(data + "/Orvane Library/Library.sqlite"));

    run = runCli(data, {"library", "list", "--json"});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    QList<QJsonObject> tracks = jsonLines(run.out);
    ASSERT_EQ(tracks.size(), 2);
    EXPECT_EQ(tracks.first().value("location").toString(), good);
    EXPECT_EQ(tracks.first().value("persistentID").toString().size(), 16);

    EXPECT_EQ(runCli(data, {"library", "add", good}).status, 0);
    QFile::remove(good);
    tracks = jsonLines(runCli(data, {"library", "list", "--json"}).out);
    ASSERT_EQ(tracks.size(), 2);
    EXPECT_TRUE(tracks.first().value("location").isNull());

    run = runCli(data, {"library", "show", tracks.last().value("persistentID").toString()});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(run.out.contains("other.flac"));

    const QList<QJsonObject> playlists = jsonLines(runCli(data, {"library", "playlists", "--json"}).out);
    ASSERT_EQ(playlists.size(), 1);
    EXPECT_EQ(playlists.first().value("specialKind").toString(), "kSpL");
    EXPECT_EQ(playlists.first().value("tracks").toArray().size(), 2);
    EXPECT_TRUE(playlists.first().value("parent").isNull());

    for (const QStringList &bad : {QStringList{"library"}, QStringList{"library", "list", "-x"},
                                   QStringList{"nothing"}, QStringList{"library", "show"}})
        EXPECT_NE(runCli(data, bad).status, 0) << bad.join(' ').toStdString();
}

// A library that cannot be used ends the command with a message and status 1, never a crash;
// `library update` reads again what changed behind the library's back.
TEST(LibraryCli, ALibraryThatCannotBeOpenedGivesAMessageAndStatus1)
{
    QTemporaryDir dir;
    const QString data = dir.filePath("data");
    const QString song = makeAudio(dir.filePath("in"), "song.mp3");
    ASSERT_EQ(runCli(data, {"library", "add", song}).status, 0);
    CliRun run = runCli(data, {"library", "update"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "0 read again\n");
    QFile touched(song);
    ASSERT_TRUE(touched.open(QIODevice::Append));
    touched.write(QByteArray(100, '\0'));
    touched.close();
    EXPECT_EQ(runCli(data, {"library", "update"}).out, "1 read again\n");

    const QString database = data + "/Orvane Library/Library.sqlite";
    QFile::remove(database + "-wal");
    QFile::remove(database + "-shm");
    QFile damaged(database);
    ASSERT_TRUE(damaged.open(QIODevice::WriteOnly | QIODevice::Truncate));
    damaged.write(QByteArray("this was a library once").repeated(300));
    damaged.close();
    const QStringList organize = {"organize", "1", "--all", "--set", "yourSearchText=a",
                                  "--set", "yourReplaceText=b"};
    for (const QStringList &arguments : {QStringList{"library", "list"}, organize}) {
        run = runCli(data, arguments);
        EXPECT_EQ(run.status, 1) << arguments.join(' ').toStdString();
        EXPECT_TRUE(run.err.contains("cannot open the library " + database))
            << run.err.toStdString();
        EXPECT_TRUE(run.err.contains("move it away")) << run.err.toStdString();
    }
}

// An organizer run works on what the files hold: a tag changed behind the library's back is
// read again before the run looks at it, so the run changes it instead of calling it unchanged.
TEST(LibraryCli, OrganizeReadsFilesChangedBehindTheLibraryFirst)
{
    QTemporaryDir dir;
    const QString data = dir.filePath("data");
    const QString song = makeAudio(dir.filePath("in"), "song.mp3");
    ASSERT_EQ(runCli(data, {"library", "add", song}).status, 0);
    QProcess python;
    python.start(QStringLiteral("/usr/bin/python3"),
                 {"-c", "import sys, mutagen; f = mutagen.File(sys.argv[1], easy=True); "
                        "f.add_tags() if f.tags is None else None; f['artist'] = 'Band ft. Guest'; f.save()",
                  song});
    ASSERT_TRUE(python.waitForFinished(30000) && python.exitCode() == 0);

    const CliRun run = runCli(data, {"organize", "1", "--all"});
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_EQ(mutagenTag(song, "artist"), "Band feat. Guest");
    const QList<QJsonObject> tracks = jsonLines(runCli(data, {"library", "list", "--json"}).out);
    ASSERT_EQ(tracks.size(), 1);
    EXPECT_EQ(tracks.first().value("artist").toString(), "Band feat. Guest");
}

} // namespace
