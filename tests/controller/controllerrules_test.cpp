#include "additions/propertylist.h"
#include "controller/controllerrules.h"
#include "controller/tunecontrollerpreferences.h"
#include "player/memoryplayer.h"

#include <QFile>

#include <gtest/gtest.h>

using Actions = QList<ControllerAction>;

void PrintTo(const Actions &actions, std::ostream *os)
{
    for (ControllerAction action : actions)
        *os << int(action) << " ";
}

namespace {

class ControllerRulesTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        player->makeDefault();
        song = player->addFileTrack(QStringLiteral("Song"), QStringLiteral("/music/song.mp3"));
        player->setCurrentTrack(song);
        player->setPlayerState(kPSP);
    }
    bool hides() { return controllerShouldHideForPlayingTrack(player->application(), preferences); }

    MemoryPlayerPtr player = MemoryPlayer::create();
    MemoryObjectPtr song;
    TuneControllerPreferences preferences;
};

} // namespace

TEST_F(ControllerRulesTest, SettingsFileKeysAndDefaults)
{
    EXPECT_TRUE(preferences.prefShowTrackInfoWindowOnControllerMouseOver());
    EXPECT_DOUBLE_EQ(preferences.prefShowTrackInfoWindowOnControllerMouseOverTime(), 1.0);
    EXPECT_TRUE(preferences.prefShowControllerNavigation());
    EXPECT_FALSE(preferences.prefShowControllerRating());
    EXPECT_TRUE(preferences.prefShowControllerLove());
    EXPECT_FALSE(preferences.prefHideControllerWhenYourTunesIsClosed());

    // A hover time stored as an integer reads as seconds; the file keeps the historic keys.
    preferences.setPrefHideControllerWhenPlayingVideos(true);
    preferences.setPrefShowControllerRating(true);
    preferences.saveUserPreferences();
    QVariantMap file = PropertyList::readMap(preferences.preferencesLocation());
    EXPECT_TRUE(preferences.preferencesLocation().endsWith(QStringLiteral("Status Item.plist")));
    EXPECT_EQ(file.value(QStringLiteral("HideControllerWhenPlayingVideos")), QVariant(true));
    EXPECT_EQ(file.value(QStringLiteral("DesignRating")), QVariant(true));
    EXPECT_EQ(file.value(QStringLiteral("DesignYourTunesController")), QVariant(true));
    EXPECT_EQ(file.size(), 10);
    file.insert(QStringLiteral("ShowTrackInfoWindowOnControllerMouseoverTime"), 3);
    file.insert(QStringLiteral("DesignLove"), false);
    ASSERT_TRUE(PropertyList::write(preferences.preferencesLocation(), file));
    TuneControllerPreferences reread;
    EXPECT_DOUBLE_EQ(reread.prefShowTrackInfoWindowOnControllerMouseOverTime(), 3.0);
    EXPECT_FALSE(reread.prefShowControllerLove());
    EXPECT_TRUE(reread.prefHideControllerWhenPlayingVideos());
}

TEST_F(ControllerRulesTest, HidingRulesByWhatPlays)
{
    EXPECT_FALSE(hides()); // nothing switched on

    song->setStored(Prop::videoKind, kVdM);
    EXPECT_FALSE(hides()) << "video with the setting off";
    preferences.setPrefHideControllerWhenPlayingVideos(true);
    EXPECT_TRUE(hides());
    // A stopped player never hides the controller, whatever the track.
    player->setPlayerState(kPSS);
    EXPECT_FALSE(hides());
    player->setPlayerState(kPSp);
    EXPECT_TRUE(hides()) << "paused still counts";
    song->setStored(Prop::videoKind, kNon);
    EXPECT_FALSE(hides());

    song->setStored(Prop::mediaKind, kMdP);
    preferences.setPrefHideControllerWhenPlayingPodcasts(true);
    EXPECT_TRUE(hides());
    song->setStored(Prop::mediaKind, kMdS);
    EXPECT_FALSE(hides());

    // Streams: the radio station keeps the controller, another stream hides it.
    preferences.setPrefHideControllerWhenPlayingStreams(true);
    const MemoryObjectPtr radio =
        player->addURLTrack(QStringLiteral("Beats 1"), QStringLiteral("https://radio.example/beats1"));
    const MemoryObjectPtr stream =
        player->addURLTrack(QStringLiteral("Jazz FM"), QStringLiteral("https://radio.example/jazz"));
    player->setCurrentTrack(radio);
    EXPECT_FALSE(hides());
    player->setCurrentTrack(stream);
    EXPECT_TRUE(hides());
    preferences.setPrefHideControllerWhenPlayingStreams(false);
    EXPECT_FALSE(hides());

    const MemoryObjectPtr shared = player->addTrack(ObjectClass::SharedTrack, {{Prop::name, QStringLiteral("Shared")}});
    player->setCurrentTrack(shared);
    EXPECT_FALSE(hides());
    preferences.setPrefHideControllerWhenPlayingSharedTracks(true);
    EXPECT_TRUE(hides());
    // The station answers before the shared-track rule is reached.
    preferences.setPrefHideControllerWhenPlayingStreams(true);
    player->setCurrentTrack(radio);
    EXPECT_FALSE(hides());
}

TEST(ControllerButtonGesture, ClicksAndHolds)
{
    // A click on next: nextTrack, then resume.
    ControllerButtonGesture next(ControllerButtonType::Next);
    next.mouseDown();
    EXPECT_EQ(next.mouseUp(1), (Actions{ControllerAction::NextTrack, ControllerAction::Resume}));
    // A hold: fast forward at the second, resume on release, never nextTrack.
    next.mouseDown();
    EXPECT_EQ(next.holdTimerFired(), Actions{ControllerAction::FastForward});
    EXPECT_EQ(next.mouseUp(1), Actions{ControllerAction::Resume});
    // The next gesture starts afresh: a click after a hold is a click again.
    next.mouseDown();
    EXPECT_EQ(next.mouseUp(2), (Actions{ControllerAction::NextTrack, ControllerAction::Resume}));

    ControllerButtonGesture previous(ControllerButtonType::Previous);
    previous.mouseDown();
    EXPECT_EQ(previous.holdTimerFired(), Actions{ControllerAction::Rewind});
    EXPECT_EQ(previous.mouseUp(1), Actions{ControllerAction::Resume});

    // A hold on play reveals the track and does not toggle playback.
    ControllerButtonGesture play(ControllerButtonType::Play);
    play.mouseDown();
    EXPECT_EQ(play.holdTimerFired(), Actions{ControllerAction::RevealCurrentTrack});
    EXPECT_EQ(play.mouseUp(1), Actions{ControllerAction::Resume});
    play.mouseDown();
    EXPECT_EQ(play.mouseUp(1), (Actions{ControllerAction::PlayPause, ControllerAction::Resume}));

    // A menu click sends no resume; a hold on the menu button does.
    ControllerButtonGesture menu(ControllerButtonType::Menu);
    menu.mouseDown();
    EXPECT_EQ(menu.mouseUp(1), Actions{ControllerAction::ClickNavigationMenu});
    menu.mouseDown();
    EXPECT_EQ(menu.holdTimerFired(), Actions{ControllerAction::RevealCurrentTrackInfo});
    EXPECT_EQ(menu.mouseUp(1), Actions{ControllerAction::Resume});

    // A release with no click runs no click action, and resume still goes out.
    next.mouseDown();
    EXPECT_EQ(next.mouseUp(0), Actions{ControllerAction::Resume});
    menu.mouseDown();
    EXPECT_EQ(menu.mouseUp(0), Actions{ControllerAction::Resume});
}
