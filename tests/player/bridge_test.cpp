#include "playertestsupport.h"

namespace {

using BridgeTest = MemoryPlayerTest;

TEST_F(BridgeTest, NullHandlesYieldEmptyValues)
{
    const ITunesFileTrack track;
    track.setRating(40);
    EXPECT_EQ(track.name(), QString());
    EXPECT_EQ(track.rating(), 0);
    EXPECT_FALSE(track.loved());
    EXPECT_TRUE(track.get().isNull());
    EXPECT_TRUE(track.container().isNull());
    EXPECT_TRUE(track.artworks().isEmpty());
    const ITunesApplication app;
    EXPECT_FALSE(app.isRunning());
    EXPECT_EQ(app.playerState(), 0u);
    EXPECT_TRUE(app.currentTrack().isNull());
    EXPECT_TRUE(ITunesApplication::withBackend(nullptr).isNull());
}

TEST_F(BridgeTest, FailedCallsReachTheDelegateAndYieldEmpty)
{
    RecordingDelegate delegate;
    auto track = player->addFileTrack("Song", "/music/song.mp3", {{Prop::rating, 80}});
    const auto handle = player->handle<ITunesFileTrack>(track, &delegate);

    player->injectFailure(Prop::rating, MemoryPlayer::Access::Read, 2, track);
    EXPECT_EQ(handle.rating(), 0);
    EXPECT_EQ(handle.rating(), 0);
    EXPECT_EQ(handle.rating(), 80);
    player->injectFailure(Prop::loved, MemoryPlayer::Access::Write);
    handle.setLoved(true);
    EXPECT_FALSE(track->stored(Prop::loved).toBool());
    handle.location(); // a file track has one: no failure
    player->handle<ITunesTrack>(player->addURLTrack("R", "http://r.example/"), &delegate).lyrics();

    ASSERT_EQ(delegate.failures.size(), 3);
    EXPECT_EQ(delegate.failures[0].className, "ITunesFileTrack");
    EXPECT_EQ(delegate.failures[0].operation, "rating");
    EXPECT_EQ(delegate.failures[0].error.code, kBridgeErrorInjected);
    EXPECT_EQ(delegate.failures[2].operation, "setLoved");
    EXPECT_EQ(player->writeCount(Prop::loved), 0);

    // Not running: every call fails with the same report, and a delegate-less one is silent.
    player->setRunning(false);
    EXPECT_EQ(player->application(&delegate).playerState(), 0u);
    EXPECT_EQ(delegate.failures.last().className, "ITunesApplication");
    EXPECT_EQ(delegate.failures.last().error.code, kBridgeErrorNotRunning);
    EXPECT_EQ(player->application().soundVolume(), 0);
    EXPECT_EQ(delegate.failures.size(), 4);
}

TEST_F(BridgeTest, KindTestsHoldOnlyAfterGet)
{
    auto stream = player->addURLTrack("Radio", "http://radio.example/");
    player->setCurrentTrack(stream);
    const ITunesTrack specifier = player->application().currentTrack();

    EXPECT_FALSE(specifier.isKindOf<ITunesURLTrack>());
    EXPECT_TRUE(specifier.as<ITunesURLTrack>().isNull());
    const ITunesTrack resolved = specifier.get();
    EXPECT_TRUE(resolved.isKindOf<ITunesURLTrack>());
    EXPECT_TRUE(resolved.isKindOf<ITunesItem>());
    EXPECT_EQ(resolved.as<ITunesURLTrack>().address(), "http://radio.example/");
    EXPECT_TRUE(resolved.as<ITunesFileTrack>().isNull());
    EXPECT_TRUE(resolved.as<ITunesPlaylist>().isNull());
    EXPECT_TRUE(player->handle<ITunesItem>(player->addFolderPlaylist("F")).isKindOf<ITunesUserPlaylist>());

    // The specifier follows the player: a removed track leaves it resolving to nothing.
    EXPECT_EQ(specifier.name(), "Radio");
    player->remove(stream);
    EXPECT_TRUE(specifier.get().isNull());
    EXPECT_EQ(specifier.name(), QString());
}

} // namespace
