#include "additions/appcontext.h"
#include "playertestsupport.h"

#include "player/apptodo.h"
#include "player/runningapplication.h"

namespace {

using RunningStateTest = MemoryPlayerTest;

TEST_F(RunningStateTest, TheRadioStationIsAStreamTheConfiguredPatternKnows)
{
    const struct
    {
        ObjectClass trackClass;
        const char *name;
        bool expected;
    } rows[] = {
        {ObjectClass::URLTrack, "Beats 1", true},
        {ObjectClass::URLTrack, "BEATS 1", true},
        {ObjectClass::URLTrack, "Radio Paradise", false},
        {ObjectClass::FileTrack, "Beats 1", false},
        {ObjectClass::SharedTrack, "beats 1", false},
    };
    for (const auto &row : rows) {
        player->setCurrentTrack(player->addTrack(row.trackClass, {{Prop::name, row.name}}));
        EXPECT_EQ(RunningApplication::ov_iTunesIsPlayingBeats1(), row.expected) << row.name;
    }
    // The configured pattern decides, over the stream's address or its name.
    qputenv("ORVANE_RADIO_STREAM_PATTERN", "/radio/");
    player->setCurrentTrack(player->addURLTrack("Morning", "http://127.0.0.1:9/radio/prog.m3u8"));
    EXPECT_TRUE(RunningApplication::ov_iTunesIsPlayingBeats1());
    player->setCurrentTrack(player->addURLTrack("Beats 1", "http://127.0.0.1:9/other.m3u8"));
    EXPECT_FALSE(RunningApplication::ov_iTunesIsPlayingBeats1());
    qputenv("ORVANE_RADIO_STREAM_PATTERN", "(unclosed");
    EXPECT_FALSE(RunningApplication::isRadioStationStream("(unclosed", "(unclosed"));
    qunsetenv("ORVANE_RADIO_STREAM_PATTERN");
    player->setRunning(false);
    EXPECT_FALSE(RunningApplication::ov_iTunesIsPlayingBeats1());
}

TEST_F(RunningStateTest, RunningAndPlayingCountsPausedButNotAFailedRead)
{
    const struct
    {
        FourCharCode state;
        bool expected;
    } rows[] = {{kPSP, true}, {kPSp, true}, {kPSF, true}, {kPSS, false}, {0, false}};
    for (const auto &row : rows) {
        player->setPlayerState(row.state);
        EXPECT_EQ(RunningApplication::ov_iTunesIsRunningAndPlaying(), row.expected)
            << fourCharCodeText(row.state).toStdString();
    }
    player->setPlayerState(kPSp);
    player->injectFailure(Prop::playerState, MemoryPlayer::Access::Read);
    EXPECT_FALSE(RunningApplication::ov_iTunesIsRunningAndPlaying());
    EXPECT_TRUE(RunningApplication::ov_iTunesIsRunningAndPlaying());

    player->setRunning(false);
    EXPECT_FALSE(RunningApplication::ov_iTunesIsRunningAndPlaying());
}

TEST_F(RunningStateTest, RunningFollowsTheDefaultBackend)
{
    EXPECT_TRUE(AppToDo::isITunesRunning());
    EXPECT_EQ(AppToDo::runningApplicationForApplicationWithBundleIdentifier("com.apple.iTunes"),
              player);
    EXPECT_EQ(AppToDo::runningApplicationForApplicationWithBundleIdentifier(""), nullptr);
    EXPECT_EQ(AppToDo::runningApplicationForApplicationWithBundleIdentifier("org.example.other"),
              nullptr);

    player->setRunning(false);
    EXPECT_FALSE(AppToDo::isITunesRunning());
    EXPECT_EQ(RunningApplication::ov_iTunes(), nullptr);
    EXPECT_TRUE(AppToDo::openITunes());
    EXPECT_TRUE(AppToDo::isITunesRunning());
    EXPECT_EQ(player->launchCount(), 1);

    appContext()->setPlayerBackend(nullptr);
    EXPECT_FALSE(AppToDo::isITunesRunning());
    EXPECT_FALSE(AppToDo::openITunes());
}

} // namespace
