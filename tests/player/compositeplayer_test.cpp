#include "player/compositeplayer.h"
#include "player/itunes.h"
#include "player/memoryplayer.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

// Two in-memory players stand in for the library and the media player, so every answer shows
// which side it came from.
class CompositePlayerTest : public ::testing::Test
{
protected:
    MemoryPlayerPtr library = MemoryPlayer::create();
    MemoryPlayerPtr player = MemoryPlayer::create();
    ITunesApplication app =
        ITunesApplication::withBackend(std::make_shared<CompositePlayer>(library, player));
};

TEST_F(CompositePlayerTest, TracksComeFromTheLibraryAndPlayingFromThePlayer)
{
    const auto inLibrary = library->addFileTrack("In library", "/music/a.mp3");
    const auto playing = player->addFileTrack("Playing", "/music/b.mp3");
    library->setSelection({inLibrary});
    player->setCurrentTrack(playing);
    player->setPlayerState(kPSP);
    player->setApplicationValue(Prop::soundVolume, 40);

    ASSERT_EQ(app.selection().size(), 1);
    EXPECT_EQ(app.selection().first().name(), "In library");
    EXPECT_EQ(app.sources().first().libraryPlaylists().first().tracks().size(), 1);
    EXPECT_EQ(app.currentTrack().get().name(), "Playing");
    EXPECT_EQ(app.playerState(), kPSP);
    EXPECT_EQ(app.soundVolume(), 40);

    app.setSoundVolume(70);
    EXPECT_EQ(player->applicationValue(Prop::soundVolume).toInt(), 70);
    EXPECT_EQ(library->applicationValue(Prop::soundVolume).toInt(), 100);
}

TEST_F(CompositePlayerTest, CommandsGoToThePlayerAndAddToTheLibrary)
{
    player->setCurrentTrack(player->addFileTrack("Playing", "/music/b.mp3"));
    player->setPlayerState(kPSp);
    app.playpause();
    EXPECT_EQ(player->applicationValue(Prop::playerState).toUInt(), kPSP);
    EXPECT_NE(library->applicationValue(Prop::playerState).toUInt(), kPSP);

    QTemporaryDir dir;
    QFile file(dir.filePath("new.mp3"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    app.add({file.fileName()});
    EXPECT_EQ(player->tracks().size(), 1);
    EXPECT_EQ(library->tracks().size(), 1);
}

TEST_F(CompositePlayerTest, RunningAndNotificationsAreThePlayers)
{
    EXPECT_TRUE(app.isRunning());
    player->setRunning(false);
    EXPECT_FALSE(app.isRunning());
    EXPECT_EQ(app.notifier(), player->notifier());
}

TEST(CompositePlayer, AMissingPlayerYieldsEmptyValuesNotACrash)
{
    auto library = MemoryPlayer::create();
    library->addFileTrack("Only", "/music/a.mp3");
    const ITunesApplication app =
        ITunesApplication::withBackend(std::make_shared<CompositePlayer>(library, nullptr));
    EXPECT_FALSE(app.isRunning());
    EXPECT_TRUE(app.currentTrack().get().isNull());
    EXPECT_EQ(app.playerState(), 0u);
    EXPECT_EQ(app.sources().size(), 1);
}
