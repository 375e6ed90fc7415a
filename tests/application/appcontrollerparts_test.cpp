// The parts the application controller delegates to, each on its own: the window registry's
// bookkeeping and the player-event router's fan-out to the live services.
#include "additions/appcontext.h"
#include "application/apppreferences.h"
#include "application/applicationui.h"
#include "application/exceptionlog.h"
#include "application/playereventrouter.h"
#include "application/windowregistry.h"
#include "silentapplicationui.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

namespace {

using Log = QStringList;

struct FakeLyrics : TrackLyricsWindowController
{
    FakeLyrics(Log &log, bool visible) : log(log), visible(visible) {}
    Log &log;
    bool visible;
    void showWindow() override { log << "show"; }
    void makeKeyAndOrderFront() override { log << "front"; }
    void orderFrontRegardless() override { log << "frontRegardless"; }
    bool isWindowVisible() const override { return visible; }
    void closeWindow() override { log << "close"; }
    void updateTrackInformations() override { log << "lyrics.update"; }
    void emptyTrackInformations() override { log << "lyrics.empty"; }
    void closeTrackLyricsWindow() override { log << "close"; }
    void openTrackLyricsWindow() override { log << "open"; }
};

struct FakeScrobbler : LastFMScrobbler
{
    explicit FakeScrobbler(Log &log) : log(log) {}
    Log &log;
    void scrobbleTrack() override { log << "lastfm.track"; }
    void scrobbleSubmission() override { log << "lastfm.submission"; }
    void scrobbleClean() override { log << "lastfm.clean"; }
    void scrobbleTrackNow() override { log << "lastfm.now"; }
    bool isSessionKeyValid() const override { return true; }
    QString prefUserName() const override { return {}; }
    int yourScrobbleState() const override { return 1; }
    void loveCurrentTrack() override {}
    void unloveCurrentTrack() override {}
};

struct FakeRating : RatingNotifierController
{
    explicit FakeRating(Log &log) : log(log) {}
    Log &log;
    void ratingNotifierTimerFire() override { log << "rating.fire"; }
    void ratingNotifierTimerCancel() override { log << "rating.cancel"; }
};

// Makes lyrics windows and scrobblers only; every other service is absent.
struct Factory : ServiceFactory
{
    explicit Factory(Log &log) : log(log) {}
    Log &log;
    bool lyricsVisible = false;
    int lyricsMade = 0;
    std::shared_ptr<TuneController> createTuneController() override { return nullptr; }
    std::shared_ptr<LastFMScrobbler> createLastFMScrobbler() override { return std::make_shared<FakeScrobbler>(log); }
    QString lastFMPreferencesUserName() override { return {}; }
    std::shared_ptr<RatingNotifierController> createRatingNotifierController() override { return nullptr; }
    std::shared_ptr<HotkeyListener> createHotkeyListener() override { return nullptr; }
    std::shared_ptr<OVCurrentTrackAction> createCurrentTrackAction() override { return nullptr; }
    std::shared_ptr<TrackInfoWindowController> createTrackInfoWindowController() override { return nullptr; }
    std::shared_ptr<TrackLyricsWindowController> createTrackLyricsWindowController() override
    {
        ++lyricsMade;
        return std::make_shared<FakeLyrics>(log, lyricsVisible);
    }
    std::shared_ptr<FunctionPoolWindowController> createFunctionPoolWindowController() override { return nullptr; }
    std::shared_ptr<TuneControllerNavigatonWindowController> createNavigationWindowController() override
    {
        return nullptr;
    }
    std::shared_ptr<AppPreferencesWindowController> createPreferencesWindowController() override { return nullptr; }
    std::shared_ptr<AppLicenseWindowController> createLicenseWindowController() override { return nullptr; }
    std::shared_ptr<AppLinks> createAppLinks() override { return nullptr; }
};

} // namespace

TEST(WindowRegistry, NumbersMapToWindowsAndNothingElse)
{
    for (int number = 1; number <= 6; ++number) {
        ASSERT_TRUE(appWindowFromNumber(number).has_value()) << number;
        EXPECT_EQ(int(*appWindowFromNumber(number)), number);
    }
    EXPECT_EQ(appWindowFromNumber(2), AppWindow::FunctionPool);
    EXPECT_EQ(appWindowFromNumber(6), AppWindow::Lyrics);
    for (int number : {0, 7, -1})
        EXPECT_FALSE(appWindowFromNumber(number).has_value()) << number;
}

TEST(WindowRegistry, BringUpMakesShowsFrontsOrOpensAndReleaseLetsGoOnTheNextTurn)
{
    Log log;
    Factory factory(log);
    WindowRegistry windows(factory);
    const auto open = &TrackLyricsWindowController::openTrackLyricsWindow;

    windows.bringUp<AppWindow::Lyrics>(open); // missing: made and shown
    ASSERT_TRUE(windows.has(AppWindow::Lyrics));
    EXPECT_FALSE(windows.has(AppWindow::TrackInfo));
    windows.bringUp<AppWindow::Lyrics>(open); // hidden: opened, not made again
    static_cast<FakeLyrics &>(*windows.get<AppWindow::Lyrics>()).visible = true;
    windows.bringUp<AppWindow::Lyrics>(open); // visible: to the front
    EXPECT_EQ(log, Log({"show", "open", "front"}));
    EXPECT_EQ(factory.lyricsMade, 1);

    // A window whose factory has none stays absent.
    windows.bringUp<AppWindow::FunctionPool>(&FunctionPoolWindowController::openFunctionPoolMainWindow);
    EXPECT_FALSE(windows.has(AppWindow::FunctionPool));

    // Released from inside its own close handling: gone from the registry at once, alive
    // until the event loop turns.
    const std::weak_ptr<TrackLyricsWindowController> released = windows.get<AppWindow::Lyrics>();
    windows.release(AppWindow::Lyrics);
    EXPECT_FALSE(windows.has(AppWindow::Lyrics));
    EXPECT_FALSE(released.expired());
    QCoreApplication::sendPostedEvents(&windows, QEvent::MetaCall);
    EXPECT_TRUE(released.expired());

    // The next bring-up makes a new one; reset lets go at once.
    windows.bringUp<AppWindow::Lyrics>(open);
    EXPECT_EQ(factory.lyricsMade, 2);
    const std::weak_ptr<TrackLyricsWindowController> reset = windows.get<AppWindow::Lyrics>();
    windows.reset(AppWindow::Lyrics);
    EXPECT_TRUE(reset.expired());
}

namespace {

using QuietUi = SilentApplicationUi;

class PlayerEventRouterTest : public ::testing::Test
{
protected:
    Log log;
    Factory factory{log};
    AppPreferences preferences;
    QuietUi ui;
    WindowRegistry windows{factory};
    LiveServices services;
    ExceptionLog exceptionLog{preferences, ui};
    int lyricsShown = 0;
    PlayerEventRouter router{{factory, preferences, windows, services, exceptionLog, [this] { ++lyricsShown; }}};
};

} // namespace

TEST_F(PlayerEventRouterTest, FansOutToTheServicesThereAreWithoutAController)
{
    // Nothing live: a notification reaches nothing and fails nowhere.
    router.observeYourTunesPlayerState({{"Player State", "Stopped"}});
    EXPECT_TRUE(log.isEmpty());

    // Services given after the router was made are the ones it reaches.
    preferences.setPrefUseLastFM(true);
    services.ratingNotifier = std::make_shared<FakeRating>(log);
    services.lastFMScrobbler = std::make_shared<FakeScrobbler>(log);
    windows.bringUp<AppWindow::Lyrics>(&TrackLyricsWindowController::openTrackLyricsWindow);
    log.clear();
    router.observeYourTunesPlayerState({{"Player State", "Stopped"}});
    EXPECT_EQ(log, Log({"rating.cancel", "lyrics.empty", "lastfm.submission", "lastfm.clean"}));

    log.clear();
    router.observeYourTunesPlayerState({{"Player State", "Paused"}});
    EXPECT_EQ(log, Log({"rating.cancel", "lastfm.submission", "lastfm.clean"}));

    // Playing with no controller: the reminder restarts, the track changes, the lyrics update.
    log.clear();
    router.observeYourTunesPlayerState({{"Player State", "Playing"}});
    EXPECT_EQ(log, Log({"rating.fire", "lastfm.track", "lyrics.update"}));
    EXPECT_EQ(lyricsShown, 0);
}

TEST_F(PlayerEventRouterTest, ScrobblerIsMadeOnFirstUseAndDroppedWhenLastFMIsOff)
{
    router.scrobbleCurrentTrack(1);
    EXPECT_EQ(services.lastFMScrobbler, nullptr); // Last.fm is off

    preferences.setPrefUseLastFM(true);
    router.scrobbleCurrentTrack(2); // only makes it
    ASSERT_NE(services.lastFMScrobbler, nullptr);
    EXPECT_TRUE(log.isEmpty());
    router.scrobbleCurrentTrack(2);
    EXPECT_EQ(log, Log({"lastfm.submission"}));

    preferences.setPrefUseLastFM(false);
    router.lastFMScrobblerCreate();
    EXPECT_EQ(services.lastFMScrobbler, nullptr);
}
