#include "controller/gui/controllerlovebutton.h"
#include "controller/gui/oxtunecontrollerbutton.h"
#include "controller/gui/oxtunecontrollerview.h"
#include "controller/gui/statusstripwindow.h"
#include "controller/gui/tunecontroller.h"
#include "player/memoryplayer.h"
#include "silentapplicationui.h"
#include "additions/appcontext.h"
#include "application/appcontroller.h"
#include "application/apppreferences.h"
#include "widgets/oxlevelindicatorstarrating.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QTest>

#include <gtest/gtest.h>

namespace {

// Runs the event loop until the condition holds; the deadline only guards a hang.
template <class Condition>
bool waitFor(Condition condition, int guardMs = 10000)
{
    QDeadlineTimer deadline(guardMs);
    while (!condition() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 50);
    return condition();
}

struct FakeInfo : TrackInfoWindowController
{
    QStringList calls;
    void showWindow() override {}
    void makeKeyAndOrderFront() override {}
    void orderFrontRegardless() override {}
    bool isWindowVisible() const override { return true; }
    void closeWindow() override {}
    void updateTrackInformations(int) override {}
    void closeTrackInfoWindow() override { calls << QStringLiteral("close"); }
    void updateWindowPosition() override {}
    void setPrefDisplayTime(double) override {}
    void setPrefFadeTimeOut(double seconds) override { calls << QStringLiteral("fade %1").arg(seconds); }
    void updateRatings() override { calls << QStringLiteral("ratings"); }
};

struct FakeLyrics : TrackLyricsWindowController
{
    bool closed = false;
    void showWindow() override {}
    void makeKeyAndOrderFront() override {}
    void orderFrontRegardless() override {}
    bool isWindowVisible() const override { return !closed; }
    void closeWindow() override {}
    void updateTrackInformations() override {}
    void emptyTrackInformations() override {}
    void closeTrackLyricsWindow() override { closed = true; }
    void openTrackLyricsWindow() override { closed = false; }
};

class TuneControllerTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        player->makeDefault();
        first = player->addFileTrack(QStringLiteral("First"), QStringLiteral("/music/1.mp3"),
                                     {{Prop::rating, 40}, {Prop::ratingKind, kRtU}, {Prop::album, QStringLiteral("A")}});
        second = player->addFileTrack(QStringLiteral("Second"), QStringLiteral("/music/2.mp3"));
        player->addToPlaylist(first, player->libraryPlaylist());
        player->addToPlaylist(second, player->libraryPlaylist());
        player->setCurrentPlaylist(player->libraryPlaylist());
        player->setCurrentTrack(first);
        player->setPlayerState(kPSP);
    }

    // Design and hiding settings are written first, as the preferences window saves them.
    std::unique_ptr<DesktopTuneController> make(bool navigation = true, bool rating = false, bool love = true,
                                                const std::function<void(TuneControllerPreferences &)> &more = {})
    {
        TuneControllerPreferences settings;
        settings.setPrefShowControllerNavigation(navigation);
        settings.setPrefShowControllerRating(rating);
        settings.setPrefShowControllerLove(love);
        if (more)
            more(settings);
        settings.saveUserPreferences();
        TuneControllerHooks hooks;
        hooks.trackInfoWindow = [this] { return infoOpen ? &info : nullptr; };
        hooks.lyricsWindow = [this] { return lyricsOpen ? &lyrics : nullptr; };
        hooks.showTrackInfoWindowByMouseOver = [this] { ++hoverOpened; };
        hooks.clickNavigationMenu = [this] { ++menuClicks; };
        return std::make_unique<DesktopTuneController>(hooks);
    }

    template <class Button>
    static QList<Button *> parts(DesktopTuneController &controller)
    {
        return controller.yourTuneControllerView()->findChildren<Button *>(Qt::FindDirectChildrenOnly);
    }
    static OXTuneControllerButton *button(DesktopTuneController &controller, ControllerButtonType type)
    {
        for (OXTuneControllerButton *candidate : parts<OXTuneControllerButton>(controller))
            if (candidate->controllerTyp() == type)
                return candidate;
        return nullptr;
    }

    MemoryPlayerPtr player = MemoryPlayer::create();
    MemoryObjectPtr first, second;
    FakeInfo info;
    FakeLyrics lyrics;
    bool infoOpen = false, lyricsOpen = false;
    int hoverOpened = 0, menuClicks = 0;
};

} // namespace

TEST_F(TuneControllerTest, BuildsTheStripForEachDesign)
{
    auto controller = make();
    ASSERT_TRUE(controller->yourControllerIsVissible());
    StatusStripWindow *strip = controller->statusStrip();
    EXPECT_TRUE(strip->isVisible());
    EXPECT_EQ(strip->width(), 89);
    EXPECT_EQ(strip->height(), TuneControllerLayout::kThickness);
    EXPECT_TRUE(strip->windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
    EXPECT_EQ(parts<OXTuneControllerButton>(*controller).size(), 4);
    ASSERT_TRUE(controller->yourControllerPlayButton());
    // Playing at creation: the play button shows pause.
    EXPECT_TRUE(controller->yourControllerPlayButton()->imageNormal().endsWith(QStringLiteral("pause.svg")));
    EXPECT_EQ(button(*controller, ControllerButtonType::Next)->geometry(), QRect(34, 6, 19, 11));
    ASSERT_TRUE(controller->yourControllerLove());
    EXPECT_EQ(controller->yourControllerLove()->geometry(), QRect(70, 5, 19, 12));
    EXPECT_EQ(controller->yourControllerRating(), nullptr);

    // New design settings take effect on the next showing, which replaces the view.
    controller->yourPreferences().setPrefShowControllerNavigation(false);
    controller->yourPreferences().setPrefShowControllerRating(true);
    controller->showControlls(false, true);
    EXPECT_EQ(strip->width(), 104);
    EXPECT_EQ(controller->yourControllerPlayButton(), nullptr);
    ASSERT_EQ(parts<OXTuneControllerButton>(*controller).size(), 1);
    EXPECT_EQ(button(*controller, ControllerButtonType::Menu)->geometry(), QRect(0, 4, 17, 14));
    ASSERT_TRUE(controller->yourControllerRating());
    EXPECT_EQ(controller->yourControllerRating()->geometry(), QRect(20, 3, 65, 14));
    EXPECT_EQ(controller->yourControllerRating()->value(), 40);
    EXPECT_EQ(controller->yourControllerLove()->x(), 85);

    controller->yourPreferences().setPrefShowControllerRating(false);
    controller->yourPreferences().setPrefShowControllerLove(false);
    controller->showControlls(false, true);
    EXPECT_EQ(strip->width(), 17);
    EXPECT_EQ(button(*controller, ControllerButtonType::Menu)->geometry(), QRect(0, 3, 17, 15));
    EXPECT_EQ(controller->yourControllerLove(), nullptr);

    // Hanging point: 22 left of the strip without navigation, at its bottom edge.
    EXPECT_EQ(controller->currentPosition(), QPoint(strip->x() - 22, strip->geometry().bottom() + 1));
}

// The application controller with the strip as its controller and two track windows that only
// record; the player's notifications take their real path through it.
struct StripFactory : ProgramServiceFactory
{
    std::shared_ptr<FakeInfo> info = std::make_shared<FakeInfo>();
    std::shared_ptr<FakeLyrics> lyrics = std::make_shared<FakeLyrics>();
    std::shared_ptr<TrackInfoWindowController> createTrackInfoWindowController() override { return info; }
    std::shared_ptr<TrackLyricsWindowController> createTrackLyricsWindowController() override { return lyrics; }
};

TEST_F(TuneControllerTest, VideoHidesItAndStoppedBringsItBackByForce)
{
    make(true, false, true, [](TuneControllerPreferences &settings) {
        settings.setPrefHideControllerWhenPlayingVideos(true);
    });
    AppPreferences preferences;
    SilentApplicationUi ui;
    StripFactory factory;
    AppController app(*appContext(), ui, factory, preferences);
    factory.tuneControllerMaker = [&app] {
        TuneControllerHooks hooks;
        hooks.trackInfoWindow = [&app] { return app.yourTrackInfoWindowController(); };
        hooks.lyricsWindow = [&app] { return app.yourTrackLyricsWindowController(); };
        return std::make_shared<DesktopTuneController>(hooks);
    };
    app.launchInDefaultMode();
    auto *strip = dynamic_cast<DesktopTuneController *>(app.yourTuneController());
    ASSERT_TRUE(strip && strip->yourControllerIsVissible());
    app.showTrackInfoWindow(2);
    app.clickNavigationMenuShowLyrics();
    ASSERT_TRUE(app.yourTrackInfoWindowController() && app.yourTrackLyricsWindowController());

    // A video starts: the strip goes, and the info and lyrics windows close at once.
    player->setCurrentTrack(second);
    second->setStored(Prop::videoKind, kVdM);
    player->postPlayerState(QStringLiteral("Playing"));
    EXPECT_FALSE(strip->yourControllerIsVissible());
    EXPECT_FALSE(strip->statusStrip()->isVisible());
    EXPECT_EQ(factory.info->calls, (QStringList{QStringLiteral("fade 0"), QStringLiteral("close")}));
    EXPECT_TRUE(factory.lyrics->closed);
    EXPECT_TRUE(strip->yourLyricsWindowWasHiddenByController());

    // The next allowed track brings it back, and the lyrics window with it.
    player->setCurrentTrack(first);
    player->postPlayerState(QStringLiteral("Playing"));
    EXPECT_TRUE(strip->yourControllerIsVissible());
    EXPECT_FALSE(factory.lyrics->closed);
    EXPECT_FALSE(strip->yourLyricsWindowWasHiddenByController());

    // The video again, then playback ends: back by force, though the track is still the video.
    player->setCurrentTrack(second);
    player->postPlayerState(QStringLiteral("Playing"));
    ASSERT_FALSE(strip->yourControllerIsVissible());
    player->setPlayerState(kPSS);
    player->postPlayerState(QStringLiteral("Stopped"));
    EXPECT_TRUE(strip->yourControllerIsVissible());
    EXPECT_TRUE(strip->statusStrip()->isVisible());
    EXPECT_TRUE(strip->yourControllerPlayButton()->imageNormal().endsWith(QStringLiteral("play.svg")));
}

TEST_F(TuneControllerTest, ClosedPlayerHidesItUntilThePlayerStarts)
{
    player->setRunning(false);
    auto controller = make(true, false, true, [](TuneControllerPreferences &settings) {
        settings.setPrefHideControllerWhenYourTunesIsClosed(true);
    });
    EXPECT_FALSE(controller->yourControllerIsVissible());
    EXPECT_EQ(controller->observedPlayerEvent(), DesktopTuneController::Observed::Launch);

    player->setRunning(true);
    player->postLaunched();
    EXPECT_TRUE(controller->yourControllerIsVissible());
    EXPECT_EQ(controller->observedPlayerEvent(), DesktopTuneController::Observed::Terminate);

    player->setRunning(false);
    player->postTerminated();
    EXPECT_FALSE(controller->yourControllerIsVissible());
    EXPECT_EQ(controller->observedPlayerEvent(), DesktopTuneController::Observed::Launch);

    // With the setting off, nothing of the player's life is followed and it stays.
    controller->yourPreferences().setPrefHideControllerWhenYourTunesIsClosed(false);
    controller->showControlls(false, true);
    EXPECT_TRUE(controller->yourControllerIsVissible());
    EXPECT_EQ(controller->observedPlayerEvent(), DesktopTuneController::Observed::None);
}

TEST_F(TuneControllerTest, StarsRateTheTrackOrWithAltTheAlbum)
{
    infoOpen = true;
    auto controller = make(true, true, true);
    OXLevelIndicatorStarRating *stars = controller->yourControllerRating();
    ASSERT_TRUE(stars);
    ASSERT_EQ(stars->value(), 40);
    const int starWidth = (stars->width() - 3) / 5;

    // The fourth star: the track is rated 80 and the echo of that is marked.
    QTest::mouseClick(stars, Qt::LeftButton, {}, QPoint(3 + 3 * starWidth + starWidth / 2, 7));
    EXPECT_EQ(first->stored(Prop::rating).toInt(), 80);
    EXPECT_EQ(stars->value(), 80);
    EXPECT_EQ(controller->yourControllerLastAction(), 1);
    EXPECT_TRUE(info.calls.contains(QStringLiteral("ratings")));

    // Alt with the second star rates the album; the stars show the track's rating again.
    controller->setYourControllerLastAction(0);
    QTest::mouseClick(stars, Qt::LeftButton, Qt::AltModifier, QPoint(3 + starWidth + starWidth / 2, 7));
    EXPECT_EQ(first->stored(Prop::albumRating).toInt(), 40);
    EXPECT_EQ(first->stored(Prop::rating).toInt(), 80);
    EXPECT_EQ(stars->value(), 80);
    EXPECT_EQ(controller->yourControllerLastAction(), 1);

    // While stopped, a rating snaps back to 0 and reaches no track.
    controller->setYourControllerLastAction(0);
    player->setPlayerState(kPSS);
    QTest::mouseClick(stars, Qt::LeftButton, {}, QPoint(stars->width() - 2, 7));
    EXPECT_EQ(stars->value(), 0);
    EXPECT_EQ(first->stored(Prop::rating).toInt(), 80);
    EXPECT_EQ(controller->yourControllerLastAction(), 0);

    // A computed rating shows as such; the love button follows the track.
    player->setPlayerState(kPSP);
    player->setCurrentTrack(second);
    second->setStored({{Prop::rating, 60}, {Prop::ratingKind, kRtC}, {Prop::loved, true}});
    controller->updateControllerRating();
    EXPECT_EQ(stars->value(), 60);
    EXPECT_EQ(stars->yourRatingTyp(), 2);
    EXPECT_TRUE(controller->yourControllerLove()->isLovedImage());
    QTest::mouseClick(controller->yourControllerLove(), Qt::LeftButton);
    EXPECT_FALSE(second->stored(Prop::loved).toBool());
    EXPECT_FALSE(controller->yourControllerLove()->isLovedImage());
    controller->emptyControllerRating();
    EXPECT_EQ(stars->value(), 0);
}

TEST_F(TuneControllerTest, ButtonsClickAndHold)
{
    auto controller = make();
    OXTuneControllerButton *next = button(*controller, ControllerButtonType::Next);
    ASSERT_TRUE(next);
    // A click on next moves the player on.
    QTest::mouseClick(next, Qt::LeftButton);
    EXPECT_TRUE(player->currentTrackObject() == second);
    EXPECT_FALSE(next->isHoldTimerRunning());

    // A hold fast-forwards after a second and resumes on release, without changing track.
    QTest::mousePress(next, Qt::LeftButton);
    ASSERT_TRUE(waitFor([&] { return player->applicationValue(Prop::playerState).toUInt() == kPSF; }));
    EXPECT_TRUE(player->currentTrackObject() == second);
    QTest::mouseRelease(next, Qt::LeftButton);
    EXPECT_EQ(player->applicationValue(Prop::playerState).toUInt(), kPSP);
    EXPECT_TRUE(player->currentTrackObject() == second);

    // A hold on play reveals the track and leaves playback as it was.
    OXTuneControllerButton *play = controller->yourControllerPlayButton();
    QTest::mousePress(play, Qt::LeftButton);
    ASSERT_TRUE(waitFor([&] { return player->lastRevealed() != nullptr; }));
    QTest::mouseRelease(play, Qt::LeftButton);
    EXPECT_TRUE(player->lastRevealed() == second);
    EXPECT_EQ(player->applicationValue(Prop::playerState).toUInt(), kPSP);
    QTest::mouseClick(play, Qt::LeftButton);
    EXPECT_EQ(player->applicationValue(Prop::playerState).toUInt(), kPSp);

    // The menu button opens the panel through the application controller.
    QTest::mouseClick(button(*controller, ControllerButtonType::Menu), Qt::LeftButton);
    EXPECT_EQ(menuClicks, 1);
}

TEST(OXTuneControllerButton, AFailingClickStillResumes)
{
    QList<ControllerAction> sent;
    QWidget parent;
    OXTuneControllerButton next(QRect(0, 0, 19, 11), ControllerButtonType::Next,
                                [&](ControllerAction action) {
                                    sent << action;
                                    if (action == ControllerAction::NextTrack)
                                        throw std::runtime_error("the player went away");
                                },
                                &parent);
    QTest::mouseClick(&next, Qt::LeftButton);
    EXPECT_EQ(sent, (QList<ControllerAction>{ControllerAction::NextTrack, ControllerAction::Resume}));
    // Released outside the button: no click, resume only.
    sent.clear();
    QTest::mousePress(&next, Qt::LeftButton);
    QTest::mouseRelease(&next, Qt::LeftButton, {}, QPoint(40, 40));
    EXPECT_EQ(sent, QList<ControllerAction>{ControllerAction::Resume});
}

TEST_F(TuneControllerTest, HoverOpensTheInfoWindowAfterItsTime)
{
    auto controller = make(true, false, true, [](TuneControllerPreferences &settings) {
        settings.setPrefShowTrackInfoWindowOnControllerMouseOverTime(0);
    });
    OXTuneControllerView *view = controller->yourTuneControllerView();
    view->mouseEntered();
    EXPECT_EQ(hoverOpened, 1);

    // Leaving within the time cancels it.
    controller->yourPreferences().setPrefShowTrackInfoWindowOnControllerMouseOverTime(0.05);
    view->mouseEntered();
    EXPECT_TRUE(view->isHoverTimerRunning());
    view->mouseExited();
    EXPECT_FALSE(view->isHoverTimerRunning());
    view->mouseEntered();
    ASSERT_TRUE(waitFor([&] { return hoverOpened == 2; }));
    EXPECT_FALSE(view->isHoverTimerRunning());

    controller->yourPreferences().setPrefShowTrackInfoWindowOnControllerMouseOver(false);
    view->mouseEntered();
    EXPECT_FALSE(view->isHoverTimerRunning());
    EXPECT_EQ(hoverOpened, 2);
}
