#pragma once

#include <QPoint>
#include <QString>

#include <functional>
#include <memory>

// The services and windows the application controller owns and calls, as far as it calls them.
// Each is created through ServiceFactory; a null object means "absent", and the controller
// skips every call on it.

// The player controller in the status strip.
class TuneController
{
public:
    virtual ~TuneController() = default;

    virtual bool yourControllerIsVissible() const = 0;
    virtual void setYourControllerIsVissible(bool visible) = 0;
    // 0 nothing, 1 the user just set a rating in the controller.
    virtual int yourControllerLastAction() const = 0;
    virtual void setYourControllerLastAction(int action) = 0;
    virtual bool yourLyricsWindowWasHiddenByController() const = 0;
    virtual void setYourLyricsWindowWasHiddenByController(bool hidden) = 0;

    // True when the controller must not be shown for what plays now.
    virtual bool checkIfTheControllerShouldBeHide(bool updateObservers) = 0;
    virtual void showControlls(bool force, bool fadeIn) = 0;
    virtual void hideControlls(bool hide, bool fadeOut) = 0;
    // 1 shows play, 2 shows pause, 3 shows stop.
    virtual void switchPlayButtonStatusTo(int state) = 0;
    virtual void updateControllerRating() = 0;
    virtual void emptyControllerRating() = 0;
    virtual void fadeTuneControllerOut() = 0;
    // The screen point from which dependent windows hang.
    virtual QPoint currentPosition() const = 0;
};

class LastFMScrobbler
{
public:
    virtual ~LastFMScrobbler() = default;

    virtual void scrobbleTrack() = 0;
    virtual void scrobbleSubmission() = 0;
    virtual void scrobbleClean() = 0;
    virtual void scrobbleTrackNow() = 0;
    virtual bool isSessionKeyValid() const = 0;
    // prefUserName of the scrobbler's own preferences.
    virtual QString prefUserName() const = 0;
    // What loving a track from the controller or a hotkey needs (1 means ready).
    virtual int yourScrobbleState() const = 0;
    virtual void loveCurrentTrack() = 0;
    virtual void unloveCurrentTrack() = 0;
};

class RatingNotifierController
{
public:
    virtual ~RatingNotifierController() = default;
    virtual void ratingNotifierTimerFire() = 0;
    virtual void ratingNotifierTimerCancel() = 0;
};

class HotkeyListener
{
public:
    virtual ~HotkeyListener() = default;
    virtual void startListener() = 0;
    // No hotkey acts until the next start (while the preferences window records one).
    virtual void stopListener() {}
};

// Made fresh for every player notification and for each clean-up.
class OVCurrentTrackAction
{
public:
    virtual ~OVCurrentTrackAction() = default;
    virtual void run() = 0;
    virtual void cleanup() = 0;
};

// What every window controller answers. A window controller calls killTargetWindow() of the
// application controller when its window closes.
class WindowController
{
public:
    virtual ~WindowController() = default;
    virtual void showWindow() = 0;
    virtual void makeKeyAndOrderFront() = 0;
    // Shows the window without taking the focus.
    virtual void orderFrontRegardless() = 0;
    virtual bool isWindowVisible() const = 0;
    virtual void closeWindow() = 0;
};

class TrackInfoWindowController : public WindowController
{
public:
    virtual void updateTrackInformations(int option) = 0;
    virtual void closeTrackInfoWindow() = 0;
    virtual void updateWindowPosition() = 0;
    // Settings of the window's own preferences object.
    virtual void setPrefDisplayTime(double seconds) = 0;
    virtual void setPrefFadeTimeOut(double seconds) = 0;
    // The ratings shown are read again (the controller just rated or loved the track).
    virtual void updateRatings() {}
};

class TrackLyricsWindowController : public WindowController
{
public:
    virtual void updateTrackInformations() = 0;
    virtual void emptyTrackInformations() = 0;
    virtual void closeTrackLyricsWindow() = 0;
    virtual void openTrackLyricsWindow() = 0;
};

class FunctionPoolWindowController : public WindowController
{
public:
    virtual void openFunctionPoolMainWindow() = 0;
    virtual void closeFunctionPoolMainWindow() = 0;
};

class TuneControllerNavigatonWindowController : public WindowController
{
public:
    virtual void openNavigationWindow() = 0;
    virtual void closeNavigationWindow() = 0;
    virtual void updateWindowPosition() = 0;
};

class AppPreferencesWindowController : public WindowController
{
public:
    virtual void openPreferencesWindow() = 0;
    virtual void closePreferencesWindow() = 0;
    virtual void switchToView(int view) = 0;
    virtual void showNeedsAuthoForLastFMMessage() = 0;
};

class AppLicenseWindowController : public WindowController
{
};

// The outcome of fetching the server document; orvane-cli prints the numbers.
enum class ServerDownload {
    Failed = -1, // unreachable, no answer, or it could not be cached
    Refused = 0, // the server answered, but not "OK"
    Cached = 1,
};
// Whether this version may run, by the cached document.
enum class ServerLaunch {
    Unreadable = -1, // the document is damaged (and gone); the program runs
    Stop = 0,        // this version must not run; the document's alert was shown
    Run = 1,
};
// Whether the cached document announces a newer version.
enum class ServerUpdate {
    Unreadable = -1,
    None = 0,
    Announced = 1, // the document's alert was shown
};

// The pages of the server's link address, by the number it is sent with.
enum class WebsiteOption {
    None = 0, // the link address without a page (or the address given)
    Support = 1, // support the project
    Feedback = 2,
    Help = 3,
    LastFmUser = 4, // a Last.fm user page
    UnsupportedSystem = 5,
    SocialProfile = 6,
};
// Why the store's affiliate link is followed, by the number it is sent with.
enum class AffiliateOption {
    PlayerStartedInDefaultMode = 1,
    PlayerAlreadyRunning = 2,
    PlayerStartedInOrganizeMode = 3,
};

// The program's server and links: the cached server document and the web addresses it names.
class AppLinks
{
public:
    virtual ~AppLinks() = default;
    virtual ServerDownload checkRequestDownload() = 0;
    virtual ServerLaunch checkApplicationLaunch() = 0;
    virtual ServerUpdate checkApplicationUpdate() = 0;
    // A null address takes the one the option names.
    virtual void openWebsite(const QString &address, WebsiteOption option) = 0;
    virtual void openAffLinkWithOption(AffiliateOption option) = 0;
};

// Creates the controller's services and windows. Whatever is not built yet comes back null.
class ServiceFactory
{
public:
    virtual ~ServiceFactory() = default;

    virtual std::shared_ptr<TuneController> createTuneController() = 0;
    virtual std::shared_ptr<LastFMScrobbler> createLastFMScrobbler() = 0;
    // prefUserName of a fresh Last.fm preferences object, for when no scrobbler exists.
    virtual QString lastFMPreferencesUserName() = 0;
    virtual std::shared_ptr<RatingNotifierController> createRatingNotifierController() = 0;
    virtual std::shared_ptr<HotkeyListener> createHotkeyListener() = 0;
    virtual std::shared_ptr<OVCurrentTrackAction> createCurrentTrackAction() = 0;
    virtual std::shared_ptr<TrackInfoWindowController> createTrackInfoWindowController() = 0;
    virtual std::shared_ptr<TrackLyricsWindowController> createTrackLyricsWindowController() = 0;
    virtual std::shared_ptr<FunctionPoolWindowController> createFunctionPoolWindowController() = 0;
    virtual std::shared_ptr<TuneControllerNavigatonWindowController> createNavigationWindowController() = 0;
    virtual std::shared_ptr<AppPreferencesWindowController> createPreferencesWindowController() = 0;
    virtual std::shared_ptr<AppLicenseWindowController> createLicenseWindowController() = 0;
    virtual std::shared_ptr<AppLinks> createAppLinks() = 0;
};

// What the organizer window calls outside itself. Unset hooks are skipped.
struct FunctionPoolWindowHooks
{
    std::function<void(int option)> killTargetWindow; // AppController::killTargetWindow
    std::function<void()> openLibraryWindow;
};

// The factory of the program as far as it is built: what the program sets a maker for, and
// everything else absent. Main thread; made and filled in by the program's main.
class ProgramServiceFactory : public ServiceFactory
{
public:
    // The organizer window is made with widgets, which this module cannot see: the program
    // sets the maker.
    using FunctionPoolWindowMaker =
        std::function<std::shared_ptr<FunctionPoolWindowController>(const FunctionPoolWindowHooks &hooks)>;
    FunctionPoolWindowMaker functionPoolWindowMaker;

    // Set by the program once the application controller exists.
    FunctionPoolWindowHooks functionPoolWindowHooks;
    // The server and its links live in a module above this one; the program sets the maker.
    std::function<std::shared_ptr<AppLinks>()> appLinksMaker;
    // The live services live in modules above this one as well.
    std::function<std::shared_ptr<OVCurrentTrackAction>()> currentTrackActionMaker;
    std::function<std::shared_ptr<RatingNotifierController>()> ratingNotifierMaker;
    std::function<std::shared_ptr<HotkeyListener>()> hotkeyListenerMaker;
    std::function<std::shared_ptr<TrackInfoWindowController>()> trackInfoWindowMaker;
    // The status strip and its navigation panel are widgets too; without a maker the controller
    // is a placeholder that shows nothing, and there is no panel.
    std::function<std::shared_ptr<TuneController>()> tuneControllerMaker;
    std::function<std::shared_ptr<TuneControllerNavigatonWindowController>()> navigationWindowMaker;

    // And the Last.fm scrobbler, with its preferences' user name for when none exists.
    std::function<std::shared_ptr<LastFMScrobbler>()> lastFMScrobblerMaker;
    std::function<QString()> lastFMUserNameReader;

    std::shared_ptr<TuneController> createTuneController() override;
    std::shared_ptr<LastFMScrobbler> createLastFMScrobbler() override
    {
        return lastFMScrobblerMaker ? lastFMScrobblerMaker() : nullptr;
    }
    QString lastFMPreferencesUserName() override { return lastFMUserNameReader ? lastFMUserNameReader() : QString(); }
    std::shared_ptr<RatingNotifierController> createRatingNotifierController() override
    {
        return ratingNotifierMaker ? ratingNotifierMaker() : nullptr;
    }
    std::shared_ptr<HotkeyListener> createHotkeyListener() override
    {
        return hotkeyListenerMaker ? hotkeyListenerMaker() : nullptr;
    }
    std::shared_ptr<OVCurrentTrackAction> createCurrentTrackAction() override
    {
        return currentTrackActionMaker ? currentTrackActionMaker() : nullptr;
    }
    std::shared_ptr<TrackInfoWindowController> createTrackInfoWindowController() override
    {
        return trackInfoWindowMaker ? trackInfoWindowMaker() : nullptr;
    }
    std::shared_ptr<TrackLyricsWindowController> createTrackLyricsWindowController() override { return nullptr; }
    std::shared_ptr<FunctionPoolWindowController> createFunctionPoolWindowController() override;
    std::shared_ptr<TuneControllerNavigatonWindowController> createNavigationWindowController() override
    {
        return navigationWindowMaker ? navigationWindowMaker() : nullptr;
    }
    std::shared_ptr<AppPreferencesWindowController> createPreferencesWindowController() override
    {
        return nullptr;
    }
    std::shared_ptr<AppLicenseWindowController> createLicenseWindowController() override { return nullptr; }
    std::shared_ptr<AppLinks> createAppLinks() override { return appLinksMaker ? appLinksMaker() : nullptr; }
};
