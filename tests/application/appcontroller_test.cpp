#include "additions/appcontext.h"
#include "additions/ovapplication.h"
#include "additions/propertylist.h"
#include "application/appcontroller.h"
#include "application/applicationui.h"
#include "application/apppreferences.h"
#include "player/memoryplayer.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>

#include <gtest/gtest.h>

void PrintTo(const QStringList &list, std::ostream *os)
{
    *os << list.join(", ").toStdString();
}

namespace {

using Log = QStringList;

// Every fake writes "<who>.<operation>" into one shared log, so tests can check order.
struct Recorder
{
    Recorder(Log &log, QString who) : log_(log), who_(std::move(who)) {}
    void note(const QString &operation) const { log_ << who_ + QLatin1Char('.') + operation; }
    Log &log_;
    QString who_;
};

struct FakeTune : TuneController, Recorder
{
    using Recorder::Recorder;
    bool visible = true, shouldHide = false, lyricsHidden = false;
    int lastAction = 0;
    bool yourControllerIsVissible() const override { return visible; }
    void setYourControllerIsVissible(bool v) override { visible = v; }
    int yourControllerLastAction() const override { return lastAction; }
    void setYourControllerLastAction(int a) override { lastAction = a; }
    bool yourLyricsWindowWasHiddenByController() const override { return lyricsHidden; }
    void setYourLyricsWindowWasHiddenByController(bool h) override { lyricsHidden = h; }
    bool checkIfTheControllerShouldBeHide(bool) override { return shouldHide; }
    void showControlls(bool force, bool fade) override
    {
        visible = true;
        note(QStringLiteral("show(%1,%2)").arg(force).arg(fade));
    }
    void hideControlls(bool hide, bool fade) override
    {
        visible = false;
        note(QStringLiteral("hide(%1,%2)").arg(hide).arg(fade));
    }
    void switchPlayButtonStatusTo(int s) override { note(QStringLiteral("button(%1)").arg(s)); }
    void updateControllerRating() override { note("updateRating"); }
    void emptyControllerRating() override { note("emptyRating"); }
    void fadeTuneControllerOut() override { note("fadeOut"); }
    QPoint currentPosition() const override { return {}; }
};

struct FakeScrobbler : LastFMScrobbler, Recorder
{
    using Recorder::Recorder;
    void scrobbleTrack() override { note("track"); }
    void scrobbleSubmission() override { note("submission"); }
    void scrobbleClean() override { note("clean"); }
    void scrobbleTrackNow() override { note("now"); }
    bool isSessionKeyValid() const override { return true; }
    QString prefUserName() const override { return {}; }
    int yourScrobbleState() const override { return 1; }
    void loveCurrentTrack() override {}
    void unloveCurrentTrack() override {}
};

struct FakeRating : RatingNotifierController, Recorder
{
    using Recorder::Recorder;
    void ratingNotifierTimerFire() override { note("fire"); }
    void ratingNotifierTimerCancel() override { note("cancel"); }
};

struct FakeAction : OVCurrentTrackAction, Recorder
{
    using Recorder::Recorder;
    void run() override { note("run"); }
    void cleanup() override { note("cleanup"); }
};

// One fake for every window kind: each operation is recorded by name.
struct FakeWindow : TrackInfoWindowController, TrackLyricsWindowController, FunctionPoolWindowController,
                    TuneControllerNavigatonWindowController, AppPreferencesWindowController,
                    AppLicenseWindowController, Recorder
{
    using Recorder::Recorder;
    void showWindow() override { note("show"); }
    void makeKeyAndOrderFront() override { note("makeKey"); }
    void orderFrontRegardless() override { note("orderFront"); }
    bool isWindowVisible() const override { return true; }
    void closeWindow() override { note("close"); }
    void updateTrackInformations(int) override { note("update"); }
    void updateTrackInformations() override { note("update"); }
    void emptyTrackInformations() override { note("empty"); }
    void closeTrackInfoWindow() override { note("close"); }
    void closeTrackLyricsWindow() override { note("close"); }
    void openTrackLyricsWindow() override { note("open"); }
    void updateWindowPosition() override { note("position"); }
    void setPrefDisplayTime(double) override {}
    void setPrefFadeTimeOut(double) override {}
    void openFunctionPoolMainWindow() override { note("open"); }
    void closeFunctionPoolMainWindow() override { note("close"); }
    void openNavigationWindow() override { note("open"); }
    void closeNavigationWindow() override { note("close"); }
    void openPreferencesWindow() override { note("open"); }
    void closePreferencesWindow() override { note("close"); }
    void switchToView(int) override { note("switchToView"); }
    void showNeedsAuthoForLastFMMessage() override { note("needsAuth"); }
};

struct FakeFactory : ServiceFactory
{
    explicit FakeFactory(Log &log) : log(log) {}
    Log &log;
    std::shared_ptr<FakeTune> tune;
    bool tuneVisible = true;
    int scrobblersMade = 0;

    template <class T>
    std::shared_ptr<T> make(const char *who) { return std::make_shared<T>(log, QString::fromLatin1(who)); }

    std::shared_ptr<TuneController> createTuneController() override
    {
        tune = make<FakeTune>("tune");
        tune->visible = tuneVisible;
        return tune;
    }
    std::shared_ptr<LastFMScrobbler> createLastFMScrobbler() override { ++scrobblersMade; return make<FakeScrobbler>("lastfm"); }
    QString lastFMPreferencesUserName() override { return {}; }
    std::shared_ptr<RatingNotifierController> createRatingNotifierController() override { return make<FakeRating>("rating"); }
    std::shared_ptr<HotkeyListener> createHotkeyListener() override { return nullptr; }
    std::shared_ptr<OVCurrentTrackAction> createCurrentTrackAction() override { return make<FakeAction>("action"); }
    std::shared_ptr<TrackInfoWindowController> createTrackInfoWindowController() override { return make<FakeWindow>("info"); }
    std::shared_ptr<TrackLyricsWindowController> createTrackLyricsWindowController() override { return make<FakeWindow>("lyrics"); }
    std::shared_ptr<FunctionPoolWindowController> createFunctionPoolWindowController() override { return make<FakeWindow>("pool"); }
    std::shared_ptr<TuneControllerNavigatonWindowController> createNavigationWindowController() override { return make<FakeWindow>("nav"); }
    std::shared_ptr<AppPreferencesWindowController> createPreferencesWindowController() override { return make<FakeWindow>("prefs"); }
    std::shared_ptr<AppLicenseWindowController> createLicenseWindowController() override { return make<FakeWindow>("licence"); }
    std::shared_ptr<AppLinks> createAppLinks() override { return nullptr; }
};

// Delays are recorded, not waited for; runTimers() fires them in order.
struct FakeUi : ApplicationUi, Recorder
{
    explicit FakeUi(Log &log) : Recorder(log, QStringLiteral("ui")) {}
    bool modalOpen = false, altHeld = false, suppressTicked = false;
    QList<QPair<double, std::function<void()>>> timers;

    void beep() override { note("beep"); }
    void showStandardAlert(const QString &key) override { note("alert " + key); }
    void showAlert(const QString &, const QString &, const QString &key) override { note("alert " + key); }
    bool showExceptionDialog(const QString &) override { note("exceptionDialog"); return suppressTicked; }
    void showAboutPanel() override {}
    bool isModalWindowOpen() const override { return modalOpen; }
    bool isOptionKeyPressed() const override { return altHeld; }
    void activateApplication() override {}
    void bringToForeground() override {}
    void openLocation(const QString &) override {}
    void quit() override { note("quit"); }
    void afterDelay(double seconds, std::function<void()> call) override { timers.append({seconds, std::move(call)}); }
    void runTimers()
    {
        while (!timers.isEmpty())
            timers.takeFirst().second();
    }
};

class AppControllerTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        player->makeDefault();
        prefs().readUserPreferences();
    }
    AppPreferences &prefs() { return preferences; }
    void startDefaultMode()
    {
        controller.launchInDefaultMode();
        ui.runTimers();
        log.clear();
    }
    AppPreferences preferences;
    Log log;
    FakeUi ui{log};
    FakeFactory factory{log};
    MemoryPlayerPtr player = MemoryPlayer::create();
    AppController controller{*appContext(), ui, factory, prefs()};
};

TEST_F(AppControllerTest, RatingEchoOnlyRestartsTheReminder)
{
    prefs().setPrefUseRatingNotifier(true);
    startDefaultMode();
    factory.tune->lastAction = 1;
    player->postPlayerState("Playing");
    EXPECT_EQ(log, Log({"action.run", "rating.fire"}));
    EXPECT_EQ(factory.tune->lastAction, 0);
}

TEST_F(AppControllerTest, PlayingAStreamClosesTheInfoWindowAndEmptiesTheLyrics)
{
    player->setCurrentTrack(player->addURLTrack("Radio", "http://127.0.0.1/stream"));
    startDefaultMode();
    controller.showTrackInfoWindow(2);
    controller.clickNavigationMenuShowLyrics();
    log.clear();
    player->postPlayerState("Playing");
    EXPECT_EQ(log, Log({"action.run", "tune.button(2)", "tune.updateRating", "info.close", "lyrics.empty"}));
}

TEST_F(AppControllerTest, PlayingAFileTrackUpdatesTheWindows)
{
    player->setCurrentTrack(player->addFileTrack("Song", "/music/song.mp3"));
    startDefaultMode();
    controller.showTrackInfoWindow(2);
    controller.clickNavigationMenuShowLyrics();
    factory.tune->visible = false;
    log.clear();
    player->postPlayerState("Playing");
    EXPECT_EQ(log, Log({"action.run", "tune.show(0,1)", "tune.button(2)", "tune.updateRating", "info.update",
                        "lyrics.update"}));
}

TEST_F(AppControllerTest, StoppedForcesTheControllerBackAndClearsTheWindows)
{
    prefs().setPrefUseLastFM(true);
    startDefaultMode(); // the first scrobble made the scrobbler
    controller.showTrackInfoWindow(2);
    controller.clickNavigationMenuShowLyrics();
    factory.tune->visible = false;
    log.clear();
    player->postPlayerState("Stopped");
    EXPECT_EQ(log, Log({"action.run", "tune.button(1)", "tune.show(1,1)", "tune.emptyRating", "info.close",
                        "lyrics.empty", "lastfm.submission", "lastfm.clean"}));
}

TEST_F(AppControllerTest, FirstNotificationAfterLastFMIsSwitchedOnOnlyMakesTheScrobbler)
{
    startDefaultMode();
    prefs().setPrefUseLastFM(true);
    player->postPlayerState("Paused");
    EXPECT_EQ(factory.scrobblersMade, 1);
    EXPECT_FALSE(log.contains("lastfm.submission"));
    player->postPlayerState("Paused");
    EXPECT_EQ(log.mid(log.size() - 2), Log({"lastfm.submission", "lastfm.clean"}));
}

TEST_F(AppControllerTest, ATrackThatMayNotShowHidesTheController)
{
    prefs().setPrefUseRatingNotifier(true);
    startDefaultMode();
    controller.clickNavigationMenuShowLyrics();
    factory.tune->shouldHide = true;
    log.clear();
    player->postPlayerState("Playing");
    EXPECT_EQ(log, Log({"action.run", "tune.hide(1,0)", "rating.cancel"}));
}

TEST_F(AppControllerTest, InvisibleControllerAtLaunchSkipsWindowsAndFirstScrobble)
{
    for (bool visible : {true, false}) {
        Log runLog;
        FakeUi runUi(runLog);
        FakeFactory runFactory(runLog);
        runFactory.tuneVisible = visible;
        prefs().setPrefUseRatingNotifier(true);
        prefs().setPrefLaunchLyricsWindow(true);
        prefs().setPrefLaunchFunctionPool(true);
        AppController launched(*appContext(), runUi, runFactory, prefs());
        launched.launchInDefaultMode();
        EXPECT_EQ(launched.yourTrackLyricsWindowController() != nullptr, visible);
        EXPECT_EQ(launched.yourFunctionPoolWindowController() != nullptr, visible);
        EXPECT_EQ(runLog.contains("rating.fire"), visible);
        ASSERT_EQ(runUi.timers.size(), visible ? 1 : 0);
        if (visible) {
            EXPECT_DOUBLE_EQ(runUi.timers.first().first, 0.66);
        }
    }
}

TEST_F(AppControllerTest, ModeComesFromTheStoredValueOrTheAltKey)
{
    struct Row { int stored; bool alt; qint64 mode; };
    for (const Row row : {Row{0, false, 1}, Row{1, false, 1}, Row{3, false, 1}, Row{2, false, 2}, Row{1, true, 2}}) {
        QVariantMap general = PropertyList::readMap(AppPreferences::locationToPreferences(PreferenceLocation::General));
        general["LaunchMode"] = row.stored;
        ASSERT_TRUE(PropertyList::write(AppPreferences::locationToPreferences(PreferenceLocation::General), general));
        Log runLog;
        FakeUi runUi(runLog);
        FakeFactory runFactory(runLog);
        runUi.altHeld = row.alt;
        {
            AppController launched(*appContext(), runUi, runFactory, prefs());
            launched.awakeFromNib();
            EXPECT_EQ(launched.yourAppMode() == 2, row.mode == 2) << row.stored << row.alt;
            EXPECT_EQ(launched.yourTunes().isNull(), row.mode == 2);
            EXPECT_EQ(launched.yourFunctionPoolWindowController() != nullptr, row.mode == 2);
        }
        EXPECT_EQ(PropertyList::readMap(AppPreferences::locationToPreferences(PreferenceLocation::General)).value("LaunchMode").toInt(), row.stored);
    }
}

TEST_F(AppControllerTest, TerminateRefusesUnderAModalWindow)
{
    const QString general = AppPreferences::locationToPreferences(PreferenceLocation::General);
    QFile::remove(general);
    controller.clickNavigationMenuFunctionPool();
    log.clear();
    ui.modalOpen = true;
    controller.chooseOptionTerminate();
    EXPECT_EQ(log, Log({"ui.beep"}));
    EXPECT_FALSE(QFile::exists(general));
    EXPECT_TRUE(ui.timers.isEmpty());
}

TEST_F(AppControllerTest, TerminateSavesClosesInOrderAndQuitsAfterTheFade)
{
    startDefaultMode();
    controller.chooseOptionLicense();
    controller.showTrackInfoWindow(2);
    controller.clickNavigationMenu();
    controller.clickNavigationMenuShowLyrics();
    controller.chooseOptionPreferences();
    controller.clickNavigationMenuFunctionPool();
    const QString general = AppPreferences::locationToPreferences(PreferenceLocation::General);
    QFile::remove(general);
    log.clear();
    controller.chooseOptionTerminate();
    EXPECT_TRUE(QFile::exists(general));
    EXPECT_EQ(log, Log({"pool.close", "prefs.close", "info.close", "lyrics.close", "licence.close", "nav.close",
                        "tune.fadeOut"}));
    ASSERT_EQ(ui.timers.size(), 1);
    EXPECT_DOUBLE_EQ(ui.timers.first().first, 1.2);
    ui.runTimers();
    EXPECT_EQ(log.mid(log.size() - 2), Log({"action.cleanup", "ui.quit"}));
}

TEST_F(AppControllerTest, ClosingTheOrganizerEndsOrganizeMode)
{
    ui.altHeld = true;
    controller.awakeFromNib();
    controller.killTargetWindow(AppWindow::FunctionPool);
    EXPECT_EQ(controller.yourFunctionPoolWindowController(), nullptr);
    ASSERT_EQ(ui.timers.size(), 2); // the next foreground step, then the quit
    ui.runTimers();
    EXPECT_TRUE(log.contains("ui.quit"));
}

TEST_F(AppControllerTest, ExceptionLogFollowsItsSwitches)
{
    const QString logFile = OVApplication::ov_applicationInfoURLForFileLog();
    startDefaultMode();
    player->injectFailure(Prop::playerState, MemoryPlayer::Access::Read, MemoryPlayer::kAlways);
    controller.yourTunes().playerState();
    EXPECT_FALSE(QFile::exists(logFile));

    prefs().setPrefDevErrorWriteLogFile(true);
    controller.yourTunes().playerState();
    controller.logException(OVException("SecondFailure", "why"));
    QFile file(logFile);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    EXPECT_TRUE(text.contains("ITunesApplication | playerState")) << text.toStdString();
    EXPECT_TRUE(text.contains("\n\nSecondFailure\nwhy\n"));
    EXPECT_EQ(text.count("***"), 4);
    EXPECT_FALSE(log.contains("ui.exceptionDialog"));

    prefs().setPrefDevErrorShowDialog(true);
    ui.suppressTicked = true;
    controller.logException(OVException("Third", "why"));
    EXPECT_TRUE(log.contains("ui.exceptionDialog"));
    EXPECT_FALSE(prefs().prefDevErrorShowDialog());
}

TEST_F(AppControllerTest, SystemCheckWarnsOnSystemsNotConfigured)
{
    const QString system = AppController::operatingSystemVersionString();
    struct Row { QByteArray environment; QString file; bool warns; };
    for (const Row &row : {Row{system.toUtf8(), "plan9 4", false}, Row{"plan9 4;beos 5", system, true},
                           Row{{}, system + ".1", true}, Row{{}, system.section('.', 0, 0), false}}) {
        if (row.environment.isNull())
            qunsetenv("ORVANE_SUPPORTED_SYSTEMS");
        else
            qputenv("ORVANE_SUPPORTED_SYSTEMS", row.environment);
        PropertyList::write(OVApplication::ov_applicationSupportDirectoryURLForApp() + "/Configuration.plist",
                            QVariantMap{{"SupportedSystems", QStringList{row.file}}});
        log.clear();
        controller.doSystemCheck();
        EXPECT_EQ(log.contains("ui.alert 0003.0032"), row.warns) << row.file.toStdString();
    }
}

} // namespace
