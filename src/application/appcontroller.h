#pragma once

#include "additions/ovexception.h"
#include "application/services.h"
#include "player/itunes.h"

#include <QObject>
#include <QVariantMap>

#include <atomic>

class ApplicationUi;
class QThread;

// The program's one main object: it starts the program in its mode, owns the services and
// windows in nullable fields (a non-null window field means the window exists), fans the player
// notification out to them, answers the menus and runs the orderly shutdown. Other parts reach
// the services through it. Lives on the main thread; only doLaunchJobs() runs on a thread of
// its own, and it calls back here waiting for the main thread.
class AppController : public QObject, public ScriptingBridgeDelegate
{
    Q_OBJECT

public:
    AppController(ApplicationUi &ui, ServiceFactory &factory, QObject *parent = nullptr);
    ~AppController() override;

    // The whole start-up: migration, general settings, launch thread, mode and launch.
    void awakeFromNib();

    // 1 default mode, 2 organize mode.
    qint64 yourAppMode() const { return yourAppMode_; }
    const ITunesApplication &yourTunes() const { return yourTunes_; }
    TuneController *yourTuneController() const { return yourTuneController_.get(); }
    LastFMScrobbler *yourLastFMScrobbler() const { return yourLastFMScrobbler_.get(); }
    RatingNotifierController *yourRatingNotifierController() const { return yourRatingNotifierController_.get(); }
    HotkeyListener *yourHotkeyListener() const { return yourHotkeyListener_.get(); }
    TuneControllerNavigatonWindowController *yourMainNavigationWindowController() const
    {
        return yourMainNavigationWindowController_.get();
    }
    AppLicenseWindowController *yourAppLicenseWindowController() const { return yourAppLicenseWindowController_.get(); }
    FunctionPoolWindowController *yourFunctionPoolWindowController() const
    {
        return yourFunctionPoolWindowController_.get();
    }
    TrackInfoWindowController *yourTrackInfoWindowController() const { return yourTrackInfoWindowController_.get(); }
    TrackLyricsWindowController *yourTrackLyricsWindowController() const
    {
        return yourTrackLyricsWindowController_.get();
    }
    AppPreferencesWindowController *yourAppPreferencesWindowController() const
    {
        return yourAppPreferencesWindowController_.get();
    }
    AppLinks *yourAppLinks() const { return yourAppLinks_.get(); }

    bool isOptionKeyPressed() const;

    // Launch.
    void doLaunchJobs();
    void doLaunchErrorMessage();
    void doLaunchCheck();
    void doSystemCheck();
    // "distribution release" as QSysInfo names them, "debian 12".
    static QString operatingSystemVersionString();
    void launchInDefaultMode();
    void launchInOrganizeMode();
    bool transformProcessWorkaroundA();
    bool tuneControllerCreate();
    QPoint tuneControllerPosition() const;

    // The player notification and what it sets off.
    void observeYourTunesPlayerState(const QVariantMap &userInfo);
    void currentTrackIsChanging();
    // 1 a new current track, 2 submit, 3 submit and clean.
    void scrobbleCurrentTrack(int option);
    void lastFMScrobblerCreate();
    // 1 track change or hotkey, 2 mouse-over, 3 rating reminder, 4 as 2.
    void showTrackInfoWindow(int option);
    void showTrackInfoWindowByMouseOver();
    void showTrackLyricsWindow();
    void currentTrackActionRun();
    void currentTrackActionCleanup();

    // Menus.
    void clickNavigationMenu();
    void clickNavigationMenuFunctionPool();
    void clickNavigationMenuShowLyrics();
    void clickNavigationMenuEnableDisableLastFM();
    void clickNavigationMenuVisitLastFM();
    void chooseOptionPreferences();
    void openPreferencesWindowWithTargetView(int view);
    void chooseOptionHelp();
    void chooseOptionSupportProject();
    void chooseOptionFeedback();
    void chooseOptionTwitter();
    void chooseOptionUpdate();
    void chooseOptionAboutInfos();
    void chooseOptionLicense();
    // The status strip moved or changed its size: dependent windows follow.
    void controllerWindowDidMove();

    // 1 track info, 2 function pool, 3 licence, 4 preferences, 5 navigation, 6 lyrics.
    void killTargetWindow(int option);
    void chooseOptionTerminate();
    void terminateApp();
    void applicationWillTerminate();

    void logException(const OVException &exception);
    void eventDidFail(const QString &className, const QString &operation, const BridgeError &withError) override;

private:
    template <class Body>
    void guarded(Body body);
    template <class Window, class Create, class Open>
    void bringUpWindow(std::shared_ptr<Window> &field, Create create, Open open);
    void releaseLater(std::shared_ptr<void> object);
    void installHooks();
    void removeHooks();
    void stopLaunchThread();
    // Runs a call of the launch thread on the main thread and waits for it.
    template <class Call>
    void onMainThreadWaiting(Call call);

    ApplicationUi &ui_;
    ServiceFactory &factory_;

    qint64 yourAppMode_ = 1;
    ITunesApplication yourTunes_;
    std::shared_ptr<TuneControllerNavigatonWindowController> yourMainNavigationWindowController_;
    std::shared_ptr<AppLicenseWindowController> yourAppLicenseWindowController_;
    std::shared_ptr<FunctionPoolWindowController> yourFunctionPoolWindowController_;
    std::shared_ptr<TrackInfoWindowController> yourTrackInfoWindowController_;
    std::shared_ptr<TrackLyricsWindowController> yourTrackLyricsWindowController_;
    std::shared_ptr<AppPreferencesWindowController> yourAppPreferencesWindowController_;
    std::shared_ptr<TuneController> yourTuneController_;
    std::shared_ptr<LastFMScrobbler> yourLastFMScrobbler_;
    std::shared_ptr<RatingNotifierController> yourRatingNotifierController_;
    std::shared_ptr<HotkeyListener> yourHotkeyListener_;
    std::shared_ptr<AppLinks> yourAppLinks_;

    QThread *launchThread_ = nullptr;
    std::atomic<bool> stopping_{false};
    bool terminating_ = false;
    QMetaObject::Connection playerInfoConnection_;
};
