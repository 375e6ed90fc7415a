#include "services/ratingnotifier/ratingnotifier.h"

#include "player/memoryplayer.h"
#include "pool/displayflash.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

struct CountingFlash : DisplayFlash
{
    void flashDisplays() override { ++count; }
    int count = 0;
};

class RatingNotifierTest : public ::testing::Test
{
protected:
    RatingNotifierTest()
    {
        hooks.controllerIsHidden = [this] { return controllerHidden; };
        hooks.showTrackInfoWindow = [this] { ++infoWindows; };
        hooks.beep = [this] { ++beeps; };
        hooks.displayFlash = &flash;
    }

    // A track of `finish` seconds playing at `position`, rated by the user.
    MemoryObjectPtr play(double finish, double position, qint64 rating = 0)
    {
        auto track = player->addFileTrack("Song", "/music/song.mp3",
                                          {{Prop::finish, finish}, {Prop::duration, finish}, {Prop::rating, rating}});
        player->setCurrentTrack(track);
        player->setPlayerState(kPSP);
        player->setApplicationValue(Prop::playerPosition, position);
        return track;
    }
    std::unique_ptr<RatingNotifier> makeNotifier()
    {
        return std::make_unique<RatingNotifier>(hooks, player->application());
    }

    MemoryPlayerPtr player = MemoryPlayer::create();
    bool controllerHidden = false;
    CountingFlash flash;
    int infoWindows = 0;
    int beeps = 0;
    RatingNotifierHooks hooks;
};

TEST_F(RatingNotifierTest, ArmsTheNotifyTimeBeforeTheFinishForTracksAtOrBelowTheLimit)
{
    auto notifier = makeNotifier();
    EXPECT_EQ(notifier->yourPreferences().prefIgnoreTrackRatingValue(), 10);
    EXPECT_EQ(notifier->yourPreferences().prefNotifyTimeBeforeTrackEnds(), 30);

    auto track = play(200.9, 20.5, 10);
    notifier->ratingNotifierTimerFire();
    EXPECT_EQ(notifier->armedDelay(), 149); // 200 - 20.5 cut to 179, less 30

    track->setStored(Prop::rating, 20);
    notifier->ratingNotifierTimerFire();
    EXPECT_FALSE(notifier->isArmed());

    // A computed rating is no rating of the user's, however high.
    track->setStored(Prop::rating, 80);
    track->setStored(Prop::ratingKind, kRtC);
    notifier->ratingNotifierTimerFire();
    EXPECT_TRUE(notifier->isArmed());

    player->setPlayerState(kPSp);
    notifier->ratingNotifierTimerFire();
    EXPECT_FALSE(notifier->isArmed());
    player->setPlayerState(kPSP);
    notifier->ratingNotifierTimerFire();
    notifier->ratingNotifierTimerCancel();
    EXPECT_FALSE(notifier->isArmed());
    player->setRunning(false);
    notifier->ratingNotifierTimerFire();
    EXPECT_FALSE(notifier->isArmed());
}

TEST_F(RatingNotifierTest, TooLateAStreamOrAHiddenControllerArmNothing)
{
    auto notifier = makeNotifier();
    play(25, 0);
    notifier->ratingNotifierTimerFire();
    EXPECT_FALSE(notifier->isArmed());

    player->setCurrentTrack(player->addURLTrack("Radio", "http://127.0.0.1:1/stream"));
    notifier->ratingNotifierTimerFire();
    EXPECT_LE(notifier->remainingTime(), 0);
    EXPECT_FALSE(notifier->isArmed());

    play(300, 0);
    controllerHidden = true;
    notifier->ratingNotifierTimerFire();
    EXPECT_FALSE(notifier->isArmed());
    controllerHidden = false;
    notifier->ratingNotifierTimerFire();
    EXPECT_TRUE(notifier->isArmed());
}

TEST_F(RatingNotifierTest, JumpingBackReArmsWhileJumpingForwardKeepsTheOldTime)
{
    auto notifier = makeNotifier();
    QSignalSpy reminded(notifier.get(), &RatingNotifier::reminded);
    play(200, 100);
    notifier->ratingNotifierTimerFire();
    ASSERT_EQ(notifier->armedDelay(), 70);

    // At the fire time the user had gone back 60 seconds: armed anew, nothing shown.
    player->setApplicationValue(Prop::playerPosition, 110.0);
    notifier->alertCurrentTrack();
    EXPECT_EQ(reminded.size(), 0);
    EXPECT_EQ(notifier->armedDelay(), 60);

    // Forward: the timer stays as it was and the reminder comes when it fires.
    player->setApplicationValue(Prop::playerPosition, 185.0);
    EXPECT_EQ(notifier->armedDelay(), 60);
    notifier->alertCurrentTrack();
    EXPECT_EQ(reminded.size(), 1);
    EXPECT_EQ(flash.count, 1);
    // Once reminded it is too late to arm again for this track.
    notifier->ratingNotifierTimerFire();
    EXPECT_FALSE(notifier->isArmed());
}

TEST_F(RatingNotifierTest, RemindsOnlyInTheWaysSwitchedOn)
{
    auto notifier = makeNotifier();
    QSignalSpy reminded(notifier.get(), &RatingNotifier::reminded);
    RatingNotifierPreferences &preferences = notifier->yourPreferences();
    play(200, 175);

    preferences.setPrefNotifyWithDisplayFlash(false);
    notifier->alertCurrentTrack();
    EXPECT_EQ(reminded.size(), 1); // fired, and nothing seen
    EXPECT_EQ(flash.count + beeps + infoWindows, 0);

    preferences.setPrefNotifyWithTrackInfoWindow(true);
    player->perform(Command::activate); // the player in front
    notifier->alertCurrentTrack();
    EXPECT_EQ(infoWindows, 0);

    player->setApplicationValue(Prop::frontmost, false);
    preferences.setPrefNotifyWithSound(true);
    preferences.setPrefNotifyWithDisplayFlash(true);
    notifier->alertCurrentTrack();
    EXPECT_EQ(infoWindows, 1);
    EXPECT_EQ(beeps, 1);
    EXPECT_EQ(flash.count, 1);

    // The settings are the file's: a new reminder reads what was saved.
    preferences.saveUserPreferences();
    EXPECT_TRUE(makeNotifier()->yourPreferences().prefNotifyWithSound());
}

TEST_F(RatingNotifierTest, TheArmedTimerRemindsOnItsOwn)
{
    auto notifier = makeNotifier();
    QSignalSpy reminded(notifier.get(), &RatingNotifier::reminded);
    play(100, 69); // one second before the notify time
    notifier->ratingNotifierTimerFire();
    ASSERT_EQ(notifier->armedDelay(), 1);
    player->setApplicationValue(Prop::playerPosition, 70.0); // where the player is by then
    EXPECT_TRUE(reminded.wait(60000));
    EXPECT_EQ(flash.count, 1);
}

} // namespace
