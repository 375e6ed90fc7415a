#include "services/currenttrackaction/currenttrackaction.h"

#include "additions/ovapplication.h"
#include "additions/propertylist.h"
#include "player/memoryplayer.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class CurrentTrackActionTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        workspace = QDir::home().filePath(QStringLiteral("workspace"));
        ASSERT_TRUE(QDir().mkpath(workspace));
        configurationPath = OVApplication::ov_applicationPreferencesURLForPlistCurrentTrackAction();
    }

    void configure(const QVariantMap &files, const QVariant &script = {}, const QString &path = {})
    {
        QVariantMap configuration{{QStringLiteral("workspace directory path"), path.isEmpty() ? workspace : path},
                                  {QStringLiteral("write info to json file"), files}};
        if (script.isValid())
            configuration.insert(QStringLiteral("run sh script"), script);
        ASSERT_TRUE(PropertyList::write(configurationPath, configuration));
    }

    // Runs a fresh action, as every player event does, recording the scripts it starts.
    bool run()
    {
        CurrentTrackAction action(player->application(), configurationPath, [this](const QString &path) {
            started.append(path);
            return true;
        });
        return action.runInWorkspace();
    }

    QString file(const QString &name) const { return QDir(workspace).filePath(name); }
    QJsonObject json(const QString &name) const
    {
        QFile in(file(name));
        EXPECT_TRUE(in.open(QIODevice::ReadOnly)) << qPrintable(name);
        return QJsonDocument::fromJson(in.readAll()).object();
    }
    void touch(const QString &name) const
    {
        QFile out(file(name));
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write("old");
    }
    QStringList workspaceFiles() const
    {
        return QDir(workspace).entryList(QDir::Files | QDir::NoDotAndDotDot, QDir::Name);
    }

    const QVariantMap allFiles{{"track", "track"},         {"player", "player"}, {"playlists", "playlists"},
                               {"airplay", "airplay"},     {"eq", "eq"},         {"artwork", "artwork"}};
    MemoryPlayerPtr player = MemoryPlayer::create();
    QString workspace;
    QString configurationPath;
    QStringList started;
};

TEST_F(CurrentTrackActionTest, WritesEveryFileWithItsKeysAndTypesThenStartsTheScript)
{
    configure(allFiles, "hook");
    touch("hook.sh");
    auto track = player->addFileTrack("Song", "/music/song.mp3",
                                      {{Prop::artist, "Artist"}, {Prop::year, 1999}, {Prop::rating, 60},
                                       {Prop::duration, 201.5}, {Prop::loved, true}, {Prop::trackNumber, 3}});
    QImage cover(40, 30, QImage::Format_RGB32);
    cover.fill(Qt::red);
    player->addArtwork(track, cover);
    auto folder = player->addFolderPlaylist("Folder");
    auto mix = player->addUserPlaylist("Mix", folder);
    player->addToPlaylist(track, mix);
    player->setCurrentTrack(track);
    player->setCurrentPlaylist(mix);
    player->setPlayerState(kPSP);
    player->setApplicationValue(Prop::soundVolume, 35);
    player->setApplicationValue(Prop::playerPosition, 12.25);
    player->addEQPreset("Rock", {{Prop::preamp, 1.5}, {Prop::band3, -2.0}});
    player->addAirPlayDevice("Kitchen", {{Prop::kind, FourCharCode(AirPlayDeviceKind::kAPX)}, {Prop::soundVolume, 70}});

    ASSERT_TRUE(run());

    EXPECT_EQ(workspaceFiles(), QStringList({"airplay.json", "artwork.jpg", "eq.json", "hook.sh", "player.json",
                                             "playlists.json", "track.json"}));
    const QJsonObject song = json("track.json");
    EXPECT_EQ(song.size(), 24); // every key, the text ones empty rather than missing
    EXPECT_EQ(song.value("album"), "");
    EXPECT_EQ(song.value("location"), "/music/song.mp3");
    EXPECT_EQ(song.value("year"), 1999);
    EXPECT_EQ(song.value("duration"), 201.5);
    EXPECT_EQ(song.value("loved"), true);
    EXPECT_EQ(song.value("playlist"), "Library/Folder/Mix");
    const QJsonObject state = json("player.json");
    EXPECT_EQ(state, (QJsonObject{{"state", "playing"}, {"sound volume", 35}, {"position", 12.25}, {"mute", false},
                                  {"airplay enabled", false}, {"eq enabled", false}}));

    const QJsonObject library = json("playlists.json");
    EXPECT_EQ(library.value("kind"), "library");
    QMap<QString, QJsonObject> playlists;
    for (const QJsonValue &playlist : library.value("playlists").toArray())
        playlists.insert(playlist["name"].toString(), playlist.toObject());
    ASSERT_EQ(playlists.keys(), QStringList({"Folder", "Library", "Mix"}));
    EXPECT_FALSE(playlists["Library"].contains("smart")); // not a user playlist
    EXPECT_EQ(playlists["Folder"].value("kind"), "folder");
    EXPECT_EQ(playlists["Mix"].value("path"), "Library/Folder/Mix");
    EXPECT_EQ(playlists["Mix"].value("tracks count"), 1);
    EXPECT_EQ(playlists["Mix"].value("repeat"), "off");
    const QJsonObject preset = json("eq.json").value("presets").toArray().at(0).toObject();
    EXPECT_EQ(preset.size(), 12);
    EXPECT_EQ(preset.value("band 3"), -2.0);
    const QJsonObject device = json("airplay.json").value("devices").toArray().at(0).toObject();
    EXPECT_EQ(device.value("kind"), "airport express");
    EXPECT_EQ(device.value("network address"), "");

    QFile artwork(file("artwork.jpg"));
    ASSERT_TRUE(artwork.open(QIODevice::ReadOnly));
    EXPECT_TRUE(artwork.peek(2) == "\xFF\xD8"); // re-encoded as a JPEG
    EXPECT_EQ(QImage(file("artwork.jpg")).size(), QSize(40, 30));
    EXPECT_EQ(started, QStringList({file("hook.sh")}));
}

TEST_F(CurrentTrackActionTest, AMissingWorkspaceOrConfigurationDoesNothing)
{
    // No configuration file at all.
    EXPECT_FALSE(run());
    const QString missing = QDir::home().filePath("missing");
    configure(allFiles, "hook", missing);
    player->setCurrentTrack(player->addFileTrack("Song", "/music/song.mp3"));
    EXPECT_FALSE(run());
    EXPECT_FALSE(QFileInfo::exists(missing)); // never created
    EXPECT_TRUE(started.isEmpty());
}

TEST_F(CurrentTrackActionTest, OnlyConfiguredTextValuesSelectFiles)
{
    configure({{"track", "now"}, {"player", 5}, {"eq", ""}, {"airplay", QVariantList{"a"}}});
    touch("now.sh");
    player->setCurrentTrack(player->addFileTrack("Song", "/music/song.mp3"));
    ASSERT_TRUE(run());
    EXPECT_EQ(workspaceFiles(), QStringList({"now.json", "now.sh"}));
    EXPECT_TRUE(started.isEmpty()); // no script configured
}

TEST_F(CurrentTrackActionTest, WithThePlayerGoneOldFilesGoNoneAreWrittenAndTheScriptStillRuns)
{
    configure(allFiles, "hook");
    touch("hook.sh");
    for (const QString name : {"track.json", "player.json", "playlists.json", "airplay.json", "eq.json", "artwork.jpg"})
        touch(name);
    touch("notes.txt");
    player->setRunning(false);
    ASSERT_TRUE(run());
    EXPECT_EQ(workspaceFiles(), QStringList({"hook.sh", "notes.txt"}));
    EXPECT_EQ(started.size(), 1);

    // Running again but with nothing playing: no track file, the rest is there.
    player->setRunning(true);
    ASSERT_TRUE(run());
    EXPECT_FALSE(QFileInfo::exists(file("track.json")));
    EXPECT_FALSE(QFileInfo::exists(file("artwork.jpg")));
    EXPECT_EQ(json("player.json").value("state"), "stopped");
    EXPECT_EQ(json("eq.json").value("presets"), QJsonArray());
    EXPECT_EQ(json("airplay.json").value("devices"), QJsonArray());
}

TEST_F(CurrentTrackActionTest, AStreamHasNoLocationNoArtworkAndAnUnknownStateIsLeftOut)
{
    configure(allFiles);
    player->setCurrentTrack(player->addURLTrack("Radio", "http://127.0.0.1:1/stream"));
    player->setPlayerState(fourCharCode("kPSx"));
    ASSERT_TRUE(run());
    const QJsonObject radio = json("track.json");
    EXPECT_EQ(radio.value("name"), "Radio");
    EXPECT_EQ(radio.value("location"), "");
    EXPECT_FALSE(radio.contains("playlist"));
    EXPECT_FALSE(QFileInfo::exists(file("artwork.jpg")));
    EXPECT_EQ(json("player.json").keys(), QStringList({"airplay enabled", "eq enabled", "mute", "position", "sound volume"}));
}

TEST_F(CurrentTrackActionTest, NamesAreJoinedAsTheyStandUnderATildeWorkspace)
{
    ASSERT_TRUE(QDir(workspace).mkpath("out"));
    configure({{"track", "out/now"}, {"player", "../above"}}, "out/hook", "~/workspace/");
    touch("out/hook.sh");
    player->setCurrentTrack(player->addFileTrack("Song", "/music/song.mp3"));
    ASSERT_TRUE(run());
    EXPECT_TRUE(QFileInfo::exists(file("out/now.json")));
    EXPECT_TRUE(QFileInfo::exists(QDir::home().filePath("above.json")));
    EXPECT_EQ(started, QStringList({file("out/hook.sh")}));
}

TEST_F(CurrentTrackActionTest, AFailedElementIsAnEmptyObjectAndAFailedTrackNoFile)
{
    configure({{"track", "track"}, {"playlists", "playlists"}});
    auto track = player->addFileTrack("Song", "/music/song.mp3");
    auto broken = player->addUserPlaylist("Broken");
    player->addUserPlaylist("Fine");
    player->setCurrentTrack(track);
    player->injectFailure(Prop::size, MemoryPlayer::Access::Read, MemoryPlayer::kAlways, broken);
    player->injectFailure(Prop::genre, MemoryPlayer::Access::Read, MemoryPlayer::kAlways, track);
    ASSERT_TRUE(run());
    const QJsonArray playlists = json("playlists.json").value("playlists").toArray();
    ASSERT_EQ(playlists.size(), 3);
    EXPECT_EQ(playlists.at(0)["name"], "Library");
    EXPECT_EQ(playlists.at(1), QJsonObject());
    EXPECT_EQ(playlists.at(2)["name"], "Fine");
    EXPECT_FALSE(QFileInfo::exists(file("track.json")));
}

// The real launch: a script that waits for the test must not hold up the run.
TEST_F(CurrentTrackActionTest, TheScriptRunsDetachedWithItsOwnPath)
{
    configure({}, "hook");
    const QString gate = file("gate");
    ASSERT_EQ(mkfifo(QFile::encodeName(gate).constData(), 0600), 0);
    QFile script(file("hook.sh"));
    ASSERT_TRUE(script.open(QIODevice::WriteOnly));
    script.write("read line < \"$(dirname \"$0\")/gate\"\necho \"$0 $line\" >> \"$(dirname \"$0\")/ran.txt\"\n");
    script.close();

    CurrentTrackAction action(player->application(), configurationPath);
    ASSERT_TRUE(action.runInWorkspace()); // returns while the script waits on the gate

    // The gate opens for writing once the script reads it; a script that never started fails
    // at the deadline instead of hanging the test.
    const QDeadlineTimer deadline(60000);
    int writer = -1;
    while (writer < 0 && !deadline.hasExpired()) {
        writer = ::open(QFile::encodeName(gate).constData(), O_WRONLY | O_NONBLOCK);
        if (writer < 0)
            QTest::qWait(10); // nothing to wait on: the script's opening of the gate has no event
    }
    ASSERT_GE(writer, 0) << "the script never read its gate";
    ASSERT_EQ(::write(writer, "go\n", 3), 3);
    ::close(writer);
    QByteArray ran;
    while (!ran.endsWith('\n') && !deadline.hasExpired()) {
        QTest::qWait(10);
        QFile out(file("ran.txt"));
        if (out.open(QIODevice::ReadOnly))
            ran = out.readAll();
    }
    EXPECT_EQ(ran, QFile::encodeName(file("hook.sh")) + " go\n");
}

} // namespace
