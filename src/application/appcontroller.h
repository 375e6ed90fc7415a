#pragma once

#include "additions/ovexception.h"
#include "application/exceptionlog.h"
#include "application/launchsequence.h"
#include "application/playereventrouter.h"
#include "application/services.h"
#include "application/windowregistry.h"
#include "player/itunes.h"

#include <QObject>
#include <QVariantMap>

class AppContext;
class AppPreferences;
class ApplicationUi;

// The program's main object: it answers the menus, the windows' closing and the orderly
// shutdown, and owns the parts that do the rest: the window registry, the player-event router
// with the live services, the launch sequence and the exception log. The operations the rest
// of the program calls keep their names here and delegate. Main thread; owned by the
// composition root (the program's main), which hands it the context, the desktop, the services
// and the general settings.
class AppController : public QObject, public ScriptingBridgeDelegate
{
    Q_OBJECT

public:
    // While it lives, the context's exception handler, auto-love source and loved-track scrobbler
    // are this controller's.
    AppController(AppContext &context, ApplicationUi &ui, ServiceFactory &factory, AppPreferences &preferences,
                  QObject *parent = nullptr);
    ~AppController() override;

    // The whole start-up: migration, general settings, launch thread, mode and launch.
    void awakeFromNib();

    // 1 default mode, 2 organize mode.
    qint64 yourAppMode() const { return yourAppMode_; }
    const ITunesApplication &yourTunes() const { return router_.yourTunes(); }
    AppPreferences &preferences() const { return preferences_; }
    TuneController *yourTuneController() const { return services_.tuneController.get(); }
    LastFMScrobbler *yourLastFMScrobbler() const { return services_.lastFMScrobbler.get(); }
    RatingNotifierController *yourRatingNotifierController() const { return services_.ratingNotifier.get(); }
    HotkeyListener *yourHotkeyListener() const { return services_.hotkeyListener.get(); }
    TuneControllerNavigatonWindowController *yourMainNavigationWindowController() const
    {
        return windows_.get<AppWindow::Navigation>().get();
    }
    AppLicenseWindowController *yourAppLicenseWindowController() const
    {
        return windows_.get<AppWindow::License>().get();
    }
    FunctionPoolWindowController *yourFunctionPoolWindowController() const
    {
        return windows_.get<AppWindow::FunctionPool>().get();
    }
    TrackInfoWindowController *yourTrackInfoWindowController() const
    {
        return windows_.get<AppWindow::TrackInfo>().get();
    }
    TrackLyricsWindowController *yourTrackLyricsWindowController() const
    {
        return windows_.get<AppWindow::Lyrics>().get();
    }
    AppPreferencesWindowController *yourAppPreferencesWindowController() const
    {
        return windows_.get<AppWindow::Preferences>().get();
    }
    AppLinks *yourAppLinks() const { return yourAppLinks_.get(); }

    bool isOptionKeyPressed() const;

    // Launch (LaunchSequence).
    void doLaunchJobs() { launch_.doLaunchJobs(); }
    void doLaunchErrorMessage() { launch_.doLaunchErrorMessage(); }
    void doLaunchCheck() { launch_.doLaunchCheck(); }
    void doSystemCheck() { launch_.doSystemCheck(); }
    static QString operatingSystemVersionString() { return ::operatingSystemNameAndRelease(); }
    void launchInDefaultMode() { launch_.launchInDefaultMode(); }
    void launchInOrganizeMode() { launch_.launchInOrganizeMode(); }
    bool transformProcessWorkaroundA() { return launch_.transformProcessWorkaroundA(); }
    bool tuneControllerCreate();
    QPoint tuneControllerPosition() const;

    // The player notification and what it sets off (PlayerEventRouter).
    void observeYourTunesPlayerState(const QVariantMap &userInfo) { router_.observeYourTunesPlayerState(userInfo); }
    void currentTrackIsChanging() { router_.currentTrackIsChanging(); }
    void scrobbleCurrentTrack(int option) { router_.scrobbleCurrentTrack(option); }
    void lastFMScrobblerCreate() { router_.lastFMScrobblerCreate(); }
    void showTrackInfoWindow(int option) { router_.showTrackInfoWindow(option); }
    void showTrackInfoWindowByMouseOver() { router_.showTrackInfoWindowByMouseOver(); }
    void showTrackLyricsWindow() { router_.showTrackLyricsWindow(); }
    void currentTrackActionRun() { router_.currentTrackActionRun(); }
    void currentTrackActionCleanup() { router_.currentTrackActionCleanup(); }

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

    // The window closed: the controller lets it go; closing the organizer ends organize mode.
    void killTargetWindow(AppWindow window);
    void chooseOptionTerminate();
    void terminateApp();
    void applicationWillTerminate();

    // Failures (ExceptionLog).
    void logException(const OVException &exception) { exceptionLog_.logException(exception); }
    void eventDidFail(const QString &className, const QString &operation, const BridgeError &withError) override
    {
        exceptionLog_.eventDidFail(className, operation, withError);
    }

private:
    friend class LaunchSequence;

    void installHooks();
    void removeHooks();

    AppContext &context_;
    ApplicationUi &ui_;
    ServiceFactory &factory_;
    AppPreferences &preferences_;

    qint64 yourAppMode_ = 1;
    bool terminating_ = false;
    std::shared_ptr<AppLinks> yourAppLinks_;
    LiveServices services_;
    WindowRegistry windows_;
    ExceptionLog exceptionLog_;
    PlayerEventRouter router_;
    // Last: its destructor ends the launch thread, which calls into the parts above.
    LaunchSequence launch_;
};
