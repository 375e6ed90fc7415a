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

} // namespace
