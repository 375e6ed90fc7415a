#include "application/appcontroller.h"

#include "additions/configuration.h"
#include "additions/appcontext.h"
#include "additions/ovapplication.h"
#include "application/applicationui.h"
#include "application/apppreferences.h"
#include "player/apptodo.h"

#include <QLoggingCategory>
#include <QThread>
#include <QUrl>

Q_LOGGING_CATEGORY(lcApplication, "orvane.application")

AppController::AppController(AppContext &context, ApplicationUi &ui, ServiceFactory &factory,
                             AppPreferences &preferences, QObject *parent)
    : QObject(parent), context_(context), ui_(ui), factory_(factory), preferences_(preferences), windows_(factory),
      exceptionLog_(preferences, ui),
      router_({factory, preferences, windows_, services_, exceptionLog_, [this] { clickNavigationMenuShowLyrics(); }}),
      launch_(*this)
{
}

AppController::~AppController()
{
    launch_.stopLaunchThread();
    removeHooks();
}

void AppController::installHooks()
{
    context_.setExceptionHandler([this](const OVException &exception) {
        if (QThread::currentThread() == thread())
            logException(exception);
        else
            QMetaObject::invokeMethod(this, [this, exception] { logException(exception); }, Qt::QueuedConnection);
    });
    AppPreferences *preferences = &preferences_;
    context_.setAutoLoveSource({[preferences] { return preferences->prefUseAutoLove(); },
                                [preferences] { return qint64(preferences->prefUseAutoLoveValue()); }});
    context_.setLovedScrobbler({[this] {
                                    const LastFMScrobbler *scrobbler = yourLastFMScrobbler();
                                    return scrobbler && scrobbler->yourScrobbleState() == 1;
                                },
                                [this](bool loved) {
                                    LastFMScrobbler *scrobbler = yourLastFMScrobbler();
                                    if (!scrobbler)
                                        return;
                                    if (loved)
                                        scrobbler->loveCurrentTrack();
                                    else
                                        scrobbler->unloveCurrentTrack();
                                }});
}

void AppController::removeHooks()
{
    context_.setExceptionHandler({});
    context_.setAutoLoveSource({});
    context_.setLovedScrobbler({});
}

// --- Start-up.

void AppController::awakeFromNib()
{
    installHooks();
    preferences_.deprecatedPreferencsConvert();
    preferences_.readUserPreferences();

    yourAppLinks_ = factory_.createAppLinks();
    launch_.startLaunchThread();

    // Alt held at launch chooses organize mode for this launch only; the stored mode stays.
    yourAppMode_ = isOptionKeyPressed() ? 2 : preferences_.prefLaunchAppMode();
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

bool AppController::tuneControllerCreate()
{
    services_.tuneController = factory_.createTuneController();
    return services_.tuneController && services_.tuneController->yourControllerIsVissible();
}

QPoint AppController::tuneControllerPosition() const
{
    return services_.tuneController ? services_.tuneController->currentPosition() : QPoint();
}

// --- Menus.

void AppController::clickNavigationMenu()
{
    if (ui_.isModalWindowOpen())
        ui_.activateApplication();
    if (const auto info = windows_.get<AppWindow::TrackInfo>()) {
        // Vanishes at once instead of fading.
        info->setPrefDisplayTime(0);
        info->setPrefFadeTimeOut(0);
        info->closeTrackInfoWindow();
    }
    const auto navigation = windows_.get<AppWindow::Navigation>();
    if (!navigation) {
        if (const auto made = windows_.ensure<AppWindow::Navigation>())
            made->showWindow();
    } else if (navigation->isWindowVisible()) {
        navigation->closeNavigationWindow();
    } else {
        navigation->openNavigationWindow();
        navigation->makeKeyAndOrderFront();
    }
}

void AppController::clickNavigationMenuFunctionPool()
{
    ui_.activateApplication();
    windows_.bringUp<AppWindow::FunctionPool>(&FunctionPoolWindowController::openFunctionPoolMainWindow);
}

void AppController::clickNavigationMenuShowLyrics()
{
    if (windows_.has(AppWindow::Lyrics))
        ui_.activateApplication();
    windows_.bringUp<AppWindow::Lyrics>(&TrackLyricsWindowController::openTrackLyricsWindow);
}

void AppController::clickNavigationMenuEnableDisableLastFM()
{
    preferences_.setPrefUseLastFM(!preferences_.prefUseLastFM());
    lastFMScrobblerCreate();
}

void AppController::clickNavigationMenuVisitLastFM()
{
    const LastFMScrobbler *scrobbler = yourLastFMScrobbler();
    const QString userName = scrobbler ? scrobbler->prefUserName() : factory_.lastFMPreferencesUserName();
    if (userName.isEmpty() || isOptionKeyPressed()) {
        openPreferencesWindowWithTargetView(3);
        return;
    }
    // The user's page lives on the site that also holds the consent page.
    const QUrl site(Configuration::text(QString::fromLatin1(Configuration::LastfmAuthURL)));
    const QString page = site.scheme() + QStringLiteral("://") + site.authority() + QStringLiteral("/user/")
                         + QString::fromUtf8(QUrl::toPercentEncoding(userName));
    if (yourAppLinks_)
        yourAppLinks_->openWebsite(page, WebsiteOption::LastFmUser);
}

void AppController::chooseOptionPreferences()
{
    if (isOptionKeyPressed()) {
        ui_.openLocation(OVApplication::ov_applicationPreferencesURL());
        return;
    }
    ui_.activateApplication();
    windows_.bringUp<AppWindow::Preferences>(&AppPreferencesWindowController::openPreferencesWindow);
}

void AppController::openPreferencesWindowWithTargetView(int view)
{
    double delay = 0;
    if (!windows_.has(AppWindow::Preferences)) {
        chooseOptionPreferences();
        delay = preferences_.prefViewFadeTime() + preferences_.prefWindowFadeTimeIn();
    }
    ui_.afterDelay(delay, [this, view] {
        if (const auto window = windows_.get<AppWindow::Preferences>())
            window->switchToView(view);
    });
}

void AppController::chooseOptionHelp()
{
    if (yourAppLinks_)
        yourAppLinks_->openWebsite({}, WebsiteOption::Help);
}

void AppController::chooseOptionSupportProject()
{
    if (yourAppLinks_)
        yourAppLinks_->openWebsite({}, WebsiteOption::Support);
}

void AppController::chooseOptionFeedback()
{
    if (yourAppLinks_)
        yourAppLinks_->openWebsite({}, WebsiteOption::Feedback);
}

void AppController::chooseOptionTwitter()
{
    if (yourAppLinks_)
        yourAppLinks_->openWebsite({}, WebsiteOption::SocialProfile);
}

void AppController::chooseOptionUpdate()
{
    if (yourAppLinks_ && yourAppLinks_->checkApplicationUpdate() != ServerUpdate::None)
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
    if (const auto window = windows_.ensure<AppWindow::License>())
        window->showWindow();
}

void AppController::controllerWindowDidMove()
{
    if (const auto info = windows_.get<AppWindow::TrackInfo>())
        info->updateWindowPosition();
    if (const auto navigation = windows_.get<AppWindow::Navigation>())
        navigation->updateWindowPosition();
}

void AppController::killTargetWindow(AppWindow window)
{
    try {
        windows_.release(window);
        // In organize mode the organizer is the program: closing it quits.
        if (window == AppWindow::FunctionPool && yourAppMode_ == 2)
            chooseOptionTerminate();
    } catch (const OVException &exception) {
        logException(exception);
    } catch (const std::exception &exception) {
        logException(OVException(QStringLiteral("std::exception"), QString::fromUtf8(exception.what())));
    }
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

    preferences_.saveUserPreferences();

    // Each close may release its window through killTargetWindow(), so every one is read anew.
    if (const auto pool = windows_.get<AppWindow::FunctionPool>())
        pool->closeFunctionPoolMainWindow();
    if (const auto preferences = windows_.get<AppWindow::Preferences>())
        preferences->closePreferencesWindow();
    if (const auto info = windows_.get<AppWindow::TrackInfo>())
        info->closeTrackInfoWindow();
    if (const auto lyrics = windows_.get<AppWindow::Lyrics>())
        lyrics->closeTrackLyricsWindow();
    if (const auto licence = windows_.get<AppWindow::License>())
        licence->closeWindow();
    if (const auto navigation = windows_.get<AppWindow::Navigation>())
        navigation->closeNavigationWindow();

    if (services_.tuneController)
        services_.tuneController->fadeTuneControllerOut();
    ui_.afterDelay(preferences_.prefStatusItemAnimationTimeOut() * 2, [this] { terminateApp(); });
}

void AppController::terminateApp()
{
    try {
        currentTrackActionCleanup();
        windows_.reset(AppWindow::TrackInfo);
        windows_.reset(AppWindow::FunctionPool);
        windows_.reset(AppWindow::License);
        ui_.quit();
    } catch (const OVException &exception) {
        terminating_ = false;
        logException(exception);
        if (yourAppMode_ == 1 && services_.tuneController)
            services_.tuneController->showControlls(true, true);
        ui_.showStandardAlert(QStringLiteral("0003.0019"));
    }
}

void AppController::applicationWillTerminate()
{
    currentTrackActionCleanup();
}
