#include "application/appcontroller.h"

#include "additions/configuration.h"
#include "additions/exceptionsink.h"
#include "additions/filewriting.h"
#include "additions/ovapplication.h"
#include "application/applicationui.h"
#include "application/apppreferences.h"
#include "player/apptodo.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QEvent>
#include <QFile>
#include <QLoggingCategory>
#include <QSysInfo>
#include <QThread>
#include <QUrl>

Q_LOGGING_CATEGORY(lcApplication, "orvane.application")

namespace {

constexpr double kWorkaroundStepSeconds = 0.2;
constexpr double kLastFMMessageDelaySeconds = 0.5;

AppPreferences &preferences()
{
    return *AppPreferences::sharedPreferences();
}

} // namespace

AppController::AppController(ApplicationUi &ui, ServiceFactory &factory, QObject *parent)
    : QObject(parent), ui_(ui), factory_(factory)
{
}

AppController::~AppController()
{
    stopLaunchThread();
    removeHooks();
    QObject::disconnect(playerInfoConnection_);
    yourTunes_.setDelegate(nullptr);
}

template <class Body>
void AppController::guarded(Body body)
{
    try {
        body();
    } catch (const OVException &exception) {
        logException(exception);
    } catch (const std::exception &exception) {
        logException(OVException(QStringLiteral("std::exception"), QString::fromUtf8(exception.what())));
    }
}

// A window controller may clear its own field from inside its close handling, so the object
// must outlive that call: it is released on the next turn of the event loop.
void AppController::releaseLater(std::shared_ptr<void> object)
{
    if (object)
        QMetaObject::invokeMethod(this, [held = std::move(object)]() mutable { held.reset(); }, Qt::QueuedConnection);
}

void AppController::installHooks()
{
    ExceptionSink::setHandler([this](const OVException &exception) {
        if (QThread::currentThread() == thread())
            logException(exception);
        else
            QMetaObject::invokeMethod(this, [this, exception] { logException(exception); }, Qt::QueuedConnection);
    });
    AppToDo::setAutoLoveSource({[] { return preferences().prefUseAutoLove(); },
                                [] { return qint64(preferences().prefUseAutoLoveValue()); }});
    AppToDo::setLovedScrobbler({[this] { return yourLastFMScrobbler_ && yourLastFMScrobbler_->yourScrobbleState() == 1; },
                                [this](bool loved) {
                                    if (!yourLastFMScrobbler_)
                                        return;
                                    if (loved)
                                        yourLastFMScrobbler_->loveCurrentTrack();
                                    else
                                        yourLastFMScrobbler_->unloveCurrentTrack();
                                }});
}

void AppController::removeHooks()
{
    ExceptionSink::setHandler({});
    AppToDo::setAutoLoveSource({});
    AppToDo::setLovedScrobbler({});
}

// --- Start-up.

void AppController::awakeFromNib()
{
    installHooks();
    preferences().deprecatedPreferencsConvert();
    preferences().readUserPreferences();

    yourAppLinks_ = factory_.createAppLinks();
    launchThread_ = QThread::create([this] { doLaunchJobs(); });
    launchThread_->start();

    // Alt held at launch chooses organize mode for this launch only; the stored mode stays.
    yourAppMode_ = isOptionKeyPressed() ? 2 : preferences().prefLaunchAppMode();
    qCInfo(lcApplication, "launching in %s mode", yourAppMode_ == 2 ? "organize" : "default");
    if (yourAppMode_ == 2)
        launchInOrganizeMode();
    else
        launchInDefaultMode();
    ui_.activateApplication();
}

bool AppController::isOptionKeyPressed() const
{
    return ui_.isOptionKeyPressed();
}

template <class Call>
void AppController::onMainThreadWaiting(Call call)
{
    if (stopping_)
        return;
    QMetaObject::invokeMethod(this, [this, call] { if (!stopping_) call(); }, Qt::BlockingQueuedConnection);
}

// Runs on the launch thread: network only, everything else on the main thread.
void AppController::doLaunchJobs()
{
    // Without the server links (not part of every build) the launch goes straight on to the
    // system check.
    const std::shared_ptr<AppLinks> links = yourAppLinks_;
    if (links) {
        const int result = links->checkRequestDownload();
        if (result == 0)
            onMainThreadWaiting([this] { doLaunchErrorMessage(); });
        else
            onMainThreadWaiting([this] { doLaunchCheck(); });
    }
    onMainThreadWaiting([this] { doSystemCheck(); });
}

void AppController::stopLaunchThread()
{
    if (!launchThread_)
        return;
    stopping_ = true;
    // The thread may be waiting for a call on this thread: dropping the queued call frees it.
    while (!launchThread_->wait(20))
        QCoreApplication::removePostedEvents(this, QEvent::MetaCall);
    delete launchThread_;
    launchThread_ = nullptr;
}

void AppController::doLaunchErrorMessage()
{
    ui_.showStandardAlert(QStringLiteral("0003.0025"));
}

void AppController::doLaunchCheck()
{
    if (!yourAppLinks_)
        return;
    if (yourAppLinks_->checkApplicationLaunch() == 0)
        chooseOptionTerminate();
    else
        yourAppLinks_->checkApplicationUpdate();
}

QString AppController::operatingSystemVersionString()
{
    return QSysInfo::productType() + QLatin1Char(' ') + QSysInfo::productVersion();
}

void AppController::doSystemCheck()
{
    const QString system = operatingSystemVersionString();
    for (const QString &supported : Configuration::list(QStringLiteral("SupportedSystems")))
        if (system == supported || system.startsWith(supported + QLatin1Char('.')))
            return;
    ui_.showStandardAlert(QStringLiteral("0003.0032"));
    if (yourAppLinks_)
        yourAppLinks_->openWebsite({}, 5);
}

void AppController::launchInDefaultMode()
{
    yourTunes_ = ITunesApplication::initWithBundleIdentifier(AppToDo::iTunesBundleIdentifier());
    yourTunes_.setDelegate(this);

    if (PlayerNotifier *notifier = yourTunes_.notifier())
        playerInfoConnection_ = connect(notifier, &PlayerNotifier::playerInfo, this,
                                        &AppController::observeYourTunesPlayerState);

    if (AppToDo::isITunesRunning()) {
        if (yourAppLinks_)
            yourAppLinks_->openAffLinkWithOption(2);
        currentTrackActionRun();
    } else if (preferences().prefLaunchYourTunes()) {
        AppToDo::openITunes();
        if (yourAppLinks_)
            yourAppLinks_->openAffLinkWithOption(1);
    }

    if (preferences().prefUseRatingNotifier())
        yourRatingNotifierController_ = factory_.createRatingNotifierController();
    if (preferences().prefUseHotkeyListener()) {
        yourHotkeyListener_ = factory_.createHotkeyListener();
        if (yourHotkeyListener_)
            yourHotkeyListener_->startListener();
    }

    // A controller that may not show at launch (player closed and set to hide then) keeps
    // the windows and the first scrobble from coming up too.
    if (!tuneControllerCreate())
        return;

    if (preferences().prefLaunchLyricsWindow())
        clickNavigationMenuShowLyrics();
    if (preferences().prefLaunchFunctionPool())
        clickNavigationMenuFunctionPool();
    ui_.afterDelay(preferences().prefStatusItemAnimationTimeIn() * 1.1, [this] { scrobbleCurrentTrack(1); });
    if (yourRatingNotifierController_)
        yourRatingNotifierController_->ratingNotifierTimerFire();

    if (preferences().prefUseLastFM()) {
        const std::shared_ptr<LastFMScrobbler> probe = factory_.createLastFMScrobbler();
        if (probe && !probe->isSessionKeyValid() && !probe->prefUserName().isEmpty()) {
            openPreferencesWindowWithTargetView(3);
            if (yourAppPreferencesWindowController_)
                ui_.afterDelay(kLastFMMessageDelaySeconds, [this] {
                    if (yourAppPreferencesWindowController_)
                        yourAppPreferencesWindowController_->showNeedsAuthoForLastFMMessage();
                });
        }
    }
}

void AppController::launchInOrganizeMode()
{
    clickNavigationMenuFunctionPool();
    if (!AppToDo::isITunesRunning()) {
        AppToDo::openITunes();
        if (yourAppLinks_)
            yourAppLinks_->openAffLinkWithOption(3);
    }
    transformProcessWorkaroundA();
}

// Becoming the foreground application takes three steps 0.2 s apart; the organizer window
// stands at the front first, or the program stays as it is.
bool AppController::transformProcessWorkaroundA()
{
    if (!yourFunctionPoolWindowController_)
        return false;
    yourFunctionPoolWindowController_->makeKeyAndOrderFront();
    ui_.afterDelay(kWorkaroundStepSeconds, [this] {
        ui_.bringToForeground();
        ui_.afterDelay(kWorkaroundStepSeconds, [this] { ui_.activateApplication(); });
    });
    return true;
}

bool AppController::tuneControllerCreate()
{
    yourTuneController_ = factory_.createTuneController();
    return yourTuneController_ && yourTuneController_->yourControllerIsVissible();
}

QPoint AppController::tuneControllerPosition() const
{
    return yourTuneController_ ? yourTuneController_->currentPosition() : QPoint();
}

// --- The player notification.

void AppController::observeYourTunesPlayerState(const QVariantMap &userInfo)
{
    currentTrackActionRun();

    const QString state = userInfo.value(QStringLiteral("Player State")).toString();
    TuneController *controller = yourTuneController_.get();
    const bool wasVisible = controller && controller->yourControllerIsVissible();

    if (state == QLatin1String("Playing")) {
        // The echo of a rating set in the controller: only the reminder starts again.
        if (controller && controller->yourControllerLastAction() == 1) {
            controller->setYourControllerLastAction(0);
            if (yourRatingNotifierController_)
                yourRatingNotifierController_->ratingNotifierTimerFire();
            return;
        }
        if (controller && controller->checkIfTheControllerShouldBeHide(false)) {
            if (wasVisible)
                controller->hideControlls(true, false);
            scrobbleCurrentTrack(3);
            if (yourRatingNotifierController_)
                yourRatingNotifierController_->ratingNotifierTimerCancel();
            return;
        }
        if (controller && !wasVisible) {
            controller->showControlls(false, true);
            if (controller->yourLyricsWindowWasHiddenByController()) {
                clickNavigationMenuShowLyrics();
                controller->setYourLyricsWindowWasHiddenByController(false);
            }
        }
        if (controller)
            controller->switchPlayButtonStatusTo(2);
        if (yourRatingNotifierController_)
            yourRatingNotifierController_->ratingNotifierTimerFire();
        if (controller)
            controller->updateControllerRating();
        currentTrackIsChanging();
        return;
    }

    if (yourRatingNotifierController_)
        yourRatingNotifierController_->ratingNotifierTimerCancel();
    if (controller)
        controller->switchPlayButtonStatusTo(1);
    if (state == QLatin1String("Stopped")) {
        // Forced, so that a controller hidden for a video comes back when playback ends.
        if (controller && !wasVisible)
            controller->showControlls(true, true);
        if (controller)
            controller->emptyControllerRating();
        if (yourTrackInfoWindowController_)
            yourTrackInfoWindowController_->closeTrackInfoWindow();
        if (yourTrackLyricsWindowController_)
            yourTrackLyricsWindowController_->emptyTrackInformations();
    }
    scrobbleCurrentTrack(3);
}

void AppController::currentTrackIsChanging()
{
    scrobbleCurrentTrack(1);
    const ITunesTrack track = yourTunes_.currentTrack().get();
    if (track.isKindOf<ITunesURLTrack>()) {
        if (yourTrackInfoWindowController_)
            yourTrackInfoWindowController_->closeTrackInfoWindow();
        if (yourTrackLyricsWindowController_)
            yourTrackLyricsWindowController_->emptyTrackInformations();
        return;
    }
    showTrackInfoWindow(1);
    showTrackLyricsWindow();
}

void AppController::scrobbleCurrentTrack(int option)
{
    guarded([&] {
        if (!preferences().prefUseLastFM())
            return;
        // The first call after Last.fm was switched on only makes the scrobbler.
        if (!yourLastFMScrobbler_) {
            lastFMScrobblerCreate();
            return;
        }
        switch (option) {
        case 1:
            yourLastFMScrobbler_->scrobbleTrack();
            break;
        case 2:
            yourLastFMScrobbler_->scrobbleSubmission();
            break;
        case 3:
            yourLastFMScrobbler_->scrobbleSubmission();
            yourLastFMScrobbler_->scrobbleClean();
            break;
        default:
            break;
        }
    });
}

void AppController::lastFMScrobblerCreate()
{
    yourLastFMScrobbler_.reset();
    if (!preferences().prefUseLastFM())
        return;
    yourLastFMScrobbler_ = factory_.createLastFMScrobbler();
    if (yourLastFMScrobbler_ && !yourLastFMScrobbler_->prefUserName().isEmpty())
        yourLastFMScrobbler_->scrobbleTrackNow();
}

void AppController::showTrackInfoWindow(int option)
{
    guarded([&] {
        if (!yourTuneController_ || !yourTuneController_->yourControllerIsVissible()
            || yourMainNavigationWindowController_)
            return;
        if (option == 1 && !yourTrackInfoWindowController_
            && (!preferences().prefShowTrackInfoWindowWhenSkippingTrack() || yourTunes_.frontmost()))
            return;
        if (yourTrackInfoWindowController_) {
            yourTrackInfoWindowController_->updateTrackInformations(1);
            return;
        }
        std::shared_ptr<TrackInfoWindowController> window = factory_.createTrackInfoWindowController();
        if (!window)
            return;
        if (option == 1 || option == 3)
            window->orderFrontRegardless(); // does not take the focus from the player
        else if (option == 2 || option == 4)
            window->makeKeyAndOrderFront();
        else
            return;
        yourTrackInfoWindowController_ = std::move(window);
    });
}

void AppController::showTrackInfoWindowByMouseOver()
{
    if (yourTrackInfoWindowController_ || yourMainNavigationWindowController_ || !AppToDo::isITunesRunning()
        || yourTunes_.playerState() == kPSS)
        return;
    showTrackInfoWindow(2);
}

void AppController::showTrackLyricsWindow()
{
    if (yourTrackLyricsWindowController_)
        yourTrackLyricsWindowController_->updateTrackInformations();
}

void AppController::currentTrackActionRun()
{
    if (const std::shared_ptr<OVCurrentTrackAction> action = factory_.createCurrentTrackAction())
        action->run();
}

void AppController::currentTrackActionCleanup()
{
    if (const std::shared_ptr<OVCurrentTrackAction> action = factory_.createCurrentTrackAction())
        action->cleanup();
}

// --- Menus.

void AppController::clickNavigationMenu()
{
    if (ui_.isModalWindowOpen())
        ui_.activateApplication();
    if (yourTrackInfoWindowController_) {
        // Vanishes at once instead of fading.
        yourTrackInfoWindowController_->setPrefDisplayTime(0);
        yourTrackInfoWindowController_->setPrefFadeTimeOut(0);
        yourTrackInfoWindowController_->closeTrackInfoWindow();
    }
    if (!yourMainNavigationWindowController_) {
        yourMainNavigationWindowController_ = factory_.createNavigationWindowController();
        if (yourMainNavigationWindowController_)
            yourMainNavigationWindowController_->showWindow();
    } else if (yourMainNavigationWindowController_->isWindowVisible()) {
        yourMainNavigationWindowController_->closeNavigationWindow();
    } else {
        yourMainNavigationWindowController_->openNavigationWindow();
        yourMainNavigationWindowController_->makeKeyAndOrderFront();
    }
}

// A missing window is made and shown, a visible one comes to the front, a hidden one opens.
template <class Window, class Create, class Open>
void AppController::bringUpWindow(std::shared_ptr<Window> &field, Create create, Open open)
{
    if (!field) {
        field = (factory_.*create)();
        if (field)
            field->showWindow();
    } else if (field->isWindowVisible()) {
        field->makeKeyAndOrderFront();
    } else {
        (field.get()->*open)();
    }
}

void AppController::clickNavigationMenuFunctionPool()
{
    ui_.activateApplication();
    bringUpWindow(yourFunctionPoolWindowController_, &ServiceFactory::createFunctionPoolWindowController,
                  &FunctionPoolWindowController::openFunctionPoolMainWindow);
}

void AppController::clickNavigationMenuShowLyrics()
{
    if (yourTrackLyricsWindowController_)
        ui_.activateApplication();
    bringUpWindow(yourTrackLyricsWindowController_, &ServiceFactory::createTrackLyricsWindowController,
                  &TrackLyricsWindowController::openTrackLyricsWindow);
}

void AppController::clickNavigationMenuEnableDisableLastFM()
{
    preferences().setPrefUseLastFM(!preferences().prefUseLastFM());
    lastFMScrobblerCreate();
}

void AppController::clickNavigationMenuVisitLastFM()
{
    const QString userName =
        yourLastFMScrobbler_ ? yourLastFMScrobbler_->prefUserName() : factory_.lastFMPreferencesUserName();
    if (userName.isEmpty() || isOptionKeyPressed()) {
        openPreferencesWindowWithTargetView(3);
        return;
    }
    // The user's page lives on the site that also holds the consent page.
    const QUrl site(Configuration::text(QString::fromLatin1(Configuration::LastfmAuthURL)));
    const QString page = site.scheme() + QStringLiteral("://") + site.authority() + QStringLiteral("/user/")
                         + QString::fromUtf8(QUrl::toPercentEncoding(userName));
    if (yourAppLinks_)
        yourAppLinks_->openWebsite(page, 4);
}

void AppController::chooseOptionPreferences()
{
    if (isOptionKeyPressed()) {
        ui_.openLocation(OVApplication::ov_applicationPreferencesURL());
        return;
    }
    ui_.activateApplication();
    bringUpWindow(yourAppPreferencesWindowController_, &ServiceFactory::createPreferencesWindowController,
                  &AppPreferencesWindowController::openPreferencesWindow);
}

void AppController::openPreferencesWindowWithTargetView(int view)
{
    double delay = 0;
    if (!yourAppPreferencesWindowController_) {
        chooseOptionPreferences();
        delay = preferences().prefViewFadeTime() + preferences().prefWindowFadeTimeIn();
    }
    ui_.afterDelay(delay, [this, view] {
        if (yourAppPreferencesWindowController_)
            yourAppPreferencesWindowController_->switchToView(view);
    });
}

void AppController::chooseOptionHelp()
{
    if (yourAppLinks_)
        yourAppLinks_->openWebsite({}, 3);
}

void AppController::chooseOptionSupportProject()
{
    if (yourAppLinks_)
        yourAppLinks_->openWebsite({}, 1);
}

void AppController::chooseOptionFeedback()
{
    if (yourAppLinks_)
        yourAppLinks_->openWebsite({}, 2);
}

void AppController::chooseOptionTwitter()
{
    if (yourAppLinks_)
        yourAppLinks_->openWebsite({}, 6);
}

void AppController::chooseOptionUpdate()
{
    if (yourAppLinks_ && yourAppLinks_->checkApplicationUpdate() != 0)
        return;
    ui_.activateApplication();
    ui_.showAlert(QStringLiteral("0003.0021"), QStringLiteral("0002.0001"), QStringLiteral("0003.0022"));
}

void AppController::chooseOptionAboutInfos()
{
    ui_.activateApplication();
    ui_.showAboutPanel();
}

void AppController::chooseOptionLicense()
{
    ui_.activateApplication();
    if (!yourAppLicenseWindowController_)
        yourAppLicenseWindowController_ = factory_.createLicenseWindowController();
    if (yourAppLicenseWindowController_)
        yourAppLicenseWindowController_->showWindow();
}

void AppController::controllerWindowDidMove()
{
    if (yourTrackInfoWindowController_)
        yourTrackInfoWindowController_->updateWindowPosition();
    if (yourMainNavigationWindowController_)
        yourMainNavigationWindowController_->updateWindowPosition();
}

void AppController::killTargetWindow(int option)
{
    guarded([&] {
        switch (option) {
        case 1:
            releaseLater(std::move(yourTrackInfoWindowController_));
            break;
        case 2:
            releaseLater(std::move(yourFunctionPoolWindowController_));
            // In organize mode the organizer is the program: closing it quits.
            if (yourAppMode_ == 2)
                chooseOptionTerminate();
            break;
        case 3:
            releaseLater(std::move(yourAppLicenseWindowController_));
            break;
        case 4:
            releaseLater(std::move(yourAppPreferencesWindowController_));
            break;
        case 5:
            releaseLater(std::move(yourMainNavigationWindowController_));
            break;
        case 6:
            releaseLater(std::move(yourTrackLyricsWindowController_));
            break;
        default:
            break;
        }
    });
}

// --- Termination.

void AppController::chooseOptionTerminate()
{
    if (ui_.isModalWindowOpen()) {
        ui_.beep();
        return;
    }
    // Closing the organizer below asks to terminate again in organize mode.
    if (terminating_)
        return;
    terminating_ = true;

    preferences().saveUserPreferences();

    // Each close may clear its field through killTargetWindow(), so every field is read anew.
    if (yourFunctionPoolWindowController_)
        yourFunctionPoolWindowController_->closeFunctionPoolMainWindow();
    if (yourAppPreferencesWindowController_)
        yourAppPreferencesWindowController_->closePreferencesWindow();
    if (yourTrackInfoWindowController_)
        yourTrackInfoWindowController_->closeTrackInfoWindow();
    if (yourTrackLyricsWindowController_)
        yourTrackLyricsWindowController_->closeTrackLyricsWindow();
    if (yourAppLicenseWindowController_)
        yourAppLicenseWindowController_->closeWindow();
    if (yourMainNavigationWindowController_)
        yourMainNavigationWindowController_->closeNavigationWindow();

    if (yourTuneController_)
        yourTuneController_->fadeTuneControllerOut();
    ui_.afterDelay(preferences().prefStatusItemAnimationTimeOut() * 2, [this] { terminateApp(); });
}

void AppController::terminateApp()
{
    try {
        currentTrackActionCleanup();
        yourTrackInfoWindowController_.reset();
        yourFunctionPoolWindowController_.reset();
        yourAppLicenseWindowController_.reset();
        ui_.quit();
    } catch (const OVException &exception) {
        terminating_ = false;
        logException(exception);
        if (yourAppMode_ == 1 && yourTuneController_)
            yourTuneController_->showControlls(true, true);
        ui_.showStandardAlert(QStringLiteral("0003.0019"));
    }
}

void AppController::applicationWillTerminate()
{
    currentTrackActionCleanup();
}

// --- Failures.

void AppController::logException(const OVException &exception)
{
    try {
        const QString text = QStringLiteral("*** %1 ***\n\n%2\n%3\n%4\n\n")
                                 .arg(QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss t")),
                                      exception.name(), exception.reason(), exception.userInfoDescription());
        if (preferences().prefDevErrorWriteLogFile()) {
            const QString path = OVApplication::ov_applicationInfoURLForFileLog();
            if (!path.isEmpty()) {
                QFile file(path);
                if (file.exists()) {
                    if (file.open(QIODevice::Append))
                        file.write(text.toUtf8());
                } else {
                    writeFileAtomically(path, text.toUtf8());
                }
            }
        }
        if (preferences().prefDevErrorShowDialog() && ui_.showExceptionDialog(text))
            preferences().setPrefDevErrorShowDialog(false);
    } catch (...) {
        // A failure while logging has nowhere left to go.
    }
}

void AppController::eventDidFail(const QString &className, const QString &operation, const BridgeError &withError)
{
    logException(OVException(withError.domain, QStringLiteral("%1 | %2").arg(className, operation),
                             {{QStringLiteral("code"), withError.code},
                              {QStringLiteral("message"), withError.message}}));
}
