#include "playertestsupport.h"

#include <QFile>
#include <QTemporaryDir>

namespace {

using MemoryPlayerBehaviourTest = MemoryPlayerTest;

TEST_F(MemoryPlayerBehaviourTest, TransportCommandsChangeState)
{
    auto a = player->addFileTrack("A", "/music/a.mp3");
    auto b = player->addFileTrack("B", "/music/b.mp3");
    const ITunesApplication app = player->application();

    app.playpause();
    EXPECT_EQ(app.playerState(), kPSP);
    EXPECT_EQ(player->currentTrackObject(), a);
    app.playpause();
    EXPECT_EQ(app.playerState(), kPSp);
    app.nextTrack();
    EXPECT_EQ(player->currentTrackObject(), b);
    app.nextTrack();
    EXPECT_EQ(player->currentTrackObject(), a);
    app.backTrack();
    EXPECT_EQ(player->currentTrackObject(), b);
    app.fastForward();
    EXPECT_EQ(app.playerState(), kPSF);
    app.resume();
    EXPECT_EQ(app.playerState(), kPSP);
    app.activate();
    EXPECT_TRUE(app.frontmost());
    app.setSoundVolume(35);
    EXPECT_EQ(app.soundVolume(), 35);
    EXPECT_EQ(player->writeCount(Prop::soundVolume), 1);
}

TEST_F(MemoryPlayerBehaviourTest, ReadOnlyPropertiesAreSetThroughTheTestApiOnly)
{
    RecordingDelegate delegate;
    auto track = player->addFileTrack("A", "/music/a.mp3", {{Prop::rating, 100}});
    const auto handle = player->handle<ITunesTrack>(track, &delegate);
    track->setStored(Prop::ratingKind, kRtC);
    EXPECT_EQ(handle.ratingKind(), kRtC);
    handle.setRating(40); // the user's rating from now on
    EXPECT_EQ(handle.ratingKind(), kRtU);
    EXPECT_TRUE(delegate.failures.isEmpty());

    track->setStored(Prop::playedCount, 3);
    player->handle<ITunesFileTrack>(track, &delegate).setLocation("/music/moved.mp3");
    EXPECT_EQ(track->stored(Prop::location).toString(), "/music/moved.mp3");
}

} // namespace

namespace {

TEST_F(MemoryPlayerBehaviourTest, PlaylistsAreMadeMovedAndDeleted)
{
    const ITunesApplication app = player->application();
    auto existing = player->addUserPlaylist("Existing");
    const ITunesSource source = app.sources().value(0);
    const ITunesUserPlaylist folder =
        source.makeUserPlaylist({{"name", "Folder"}}, ObjectClass::FolderPlaylist, 0);
    const ITunesUserPlaylist made = source.makeUserPlaylist({{"name", "Made"}}, ObjectClass::UserPlaylist, 1);
    ASSERT_FALSE(made.isNull());
    QStringList names;
    for (const ITunesUserPlaylist &playlist : source.userPlaylists())
        names.append(playlist.name());
    EXPECT_EQ(names, QStringList({"Folder", "Made", "Existing"}));
    EXPECT_TRUE(folder.isKindOf<ITunesFolderPlaylist>());
    EXPECT_EQ(folder.specialKind(), kSpF);
    EXPECT_NE(folder.persistentID(), made.persistentID());

    made.moveTo(folder);
    EXPECT_EQ(made.ov_path(), "Library/Folder/Made");
    auto track = player->addFileTrack("A", "/music/a.mp3");
    player->handle<ITunesTrack>(track).duplicateTo(made);
    EXPECT_EQ(folder.ov_tracksCount(), 1);

    folder.deleteItem(); // takes the playlists inside with it
    EXPECT_EQ(source.userPlaylists().size(), 1);
    EXPECT_TRUE(made.get().isNull());
    EXPECT_EQ(player->tracks().size(), 1);
    player->handle<ITunesTrack>(track).deleteItem();
    EXPECT_TRUE(player->tracks().isEmpty());
    EXPECT_EQ(existing->isDeleted(), false);
}

TEST_F(MemoryPlayerBehaviourTest, ArtworkSlotPastTheEndAppends)
{
    auto track = player->addFileTrack("A", "/music/a.mp3");
    QImage red(4, 3, QImage::Format_RGB32);
    red.fill(Qt::red);
    player->addArtwork(track, red);
    const auto handle = player->handle<ITunesTrack>(track);

    const ITunesArtwork slot = handle.artworkAt(5);
    EXPECT_EQ(handle.artworks().size(), 1);
    QImage blue(2, 2, QImage::Format_RGB32);
    blue.fill(Qt::blue);
    slot.setData(blue);
    ASSERT_EQ(handle.artworks().size(), 2);
    EXPECT_EQ(handle.artworks().at(1).data().size(), QSize(2, 2));
    EXPECT_EQ(handle.artworks().at(0).format(), fourCharCode("PNGf"));
    EXPECT_EQ(handle.artworkAt(0).data().pixelColor(0, 0), QColor(Qt::red));
}

TEST_F(MemoryPlayerBehaviourTest, AddMakesFileTracksOfExistingFiles)
{
    QTemporaryDir dir;
    for (const char *name : {"one.mp3", "sub/two.m4a"}) {
        QDir(dir.path()).mkpath(QFileInfo(dir.filePath(name)).path());
        QFile file(dir.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    auto playlist = player->addUserPlaylist("Imports");
    const ITunesApplication app = player->application();
    const QList<ITunesTrack> added = app.add({dir.path(), dir.filePath("missing.mp3")},
                                             player->handle<ITunesPlaylist>(playlist));
    ASSERT_EQ(added.size(), 2);
    EXPECT_EQ(added.at(0).get().as<ITunesFileTrack>().location(), dir.filePath("one.mp3"));
    EXPECT_EQ(added.at(1).name(), "two");
    EXPECT_EQ(player->handle<ITunesPlaylist>(playlist).ov_tracksCount(), 2);
}

TEST_F(MemoryPlayerBehaviourTest, NotifierSignalsAreEmittedOnRequest)
{
    QList<QVariantMap> info;
    int launched = 0;
    QObject::connect(player->notifier(), &PlayerNotifier::playerInfo,
                     [&](const QVariantMap &userInfo) { info.append(userInfo); });
    QObject::connect(player->notifier(), &PlayerNotifier::playerLaunched, [&] { ++launched; });
    player->setCurrentTrack(player->addFileTrack("A", "/music/a.mp3"));
    player->postPlayerState("Paused");
    ASSERT_EQ(info.size(), 1);
    const QVariantMap userInfo = info.at(0);
    EXPECT_EQ(userInfo.value("Player State").toString(), "Paused");
    EXPECT_EQ(userInfo.value("Name").toString(), "A");

    player->setRunning(false);
    EXPECT_TRUE(player->launch());
    EXPECT_EQ(launched, 1);
    player->setLaunchable(false);
    EXPECT_FALSE(player->launch());
}

TEST_F(MemoryPlayerBehaviourTest, AlwaysFailingUntilCleared)
{
    auto a = player->addFileTrack("A", "/music/a.mp3", {{Prop::genre, "Jazz"}});
    auto b = player->addFileTrack("B", "/music/b.mp3", {{Prop::genre, "Rock"}});
    player->injectFailure(Prop::genre, MemoryPlayer::Access::Read, MemoryPlayer::kAlways, a);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(player->handle<ITunesTrack>(a).genre(), QString());
    EXPECT_EQ(player->handle<ITunesTrack>(b).genre(), "Rock");
    player->clearFailures();
    EXPECT_EQ(player->handle<ITunesTrack>(a).genre(), "Jazz");
}

} // namespace
