#include "application/launchsequence.h"

#include "additions/configuration.h"
#include "application/appcontroller.h"
#include "application/applicationui.h"
#include "application/apppreferences.h"
#include "player/apptodo.h"

#include <QCoreApplication>
#include <QEvent>
#include <QSysInfo>
#include <QThread>

namespace {

constexpr double kWorkaroundStepSeconds = 0.2;
constexpr double kLastFMMessageDelaySeconds = 0.5;

} // namespace

QString operatingSystemNameAndRelease()
{
    return QSysInfo::productType() + QLatin1Char(' ') + QSysInfo::productVersion();
}

LaunchSequence::LaunchSequence(AppController &controller) : controller_(controller)
{
}

LaunchSequence::~LaunchSequence()
{
    stopLaunchThread();
}

void LaunchSequence::startLaunchThread()
{
    if (launchThread_)
        return;
    stopping_ = false;
    launchThread_ = QThread::create([this] { doLaunchJobs(); });
    launchThread_->start();
}

void LaunchSequence::stopLaunchThread()
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

template <class Call>
void LaunchSequence::onMainThreadWaiting(Call call)
{
    if (stopping_)
        return;
    QMetaObject::invokeMethod(this, [this, call] { if (!stopping_) call(); }, Qt::BlockingQueuedConnection);
}

// Runs on the launch thread: network only, everything else on the main thread.
void LaunchSequence::doLaunchJobs()
{
    // Without the server links (not part of every build) the launch goes straight on to the
    // system check.
    const std::shared_ptr<AppLinks> links = controller_.yourAppLinks_;
    if (links) {
        const ServerDownload result = links->checkRequestDownload();
        if (result == ServerDownload::Refused)
            onMainThreadWaiting([this] { doLaunchErrorMessage(); });
        else
            onMainThreadWaiting([this] { doLaunchCheck(); });
    }
    onMainThreadWaiting([this] { doSystemCheck(); });
}

void LaunchSequence::doLaunchErrorMessage()
{
    controller_.ui_.showStandardAlert(QStringLiteral("0003.0025"));
}

void LaunchSequence::doLaunchCheck()
{
    AppLinks *links = controller_.yourAppLinks_.get();
    if (!links)
        return;
    if (links->checkApplicationLaunch() == ServerLaunch::Stop)
        controller_.chooseOptionTerminate();
    else
        links->checkApplicationUpdate();
}

void LaunchSequence::doSystemCheck()
{
    const QString system = operatingSystemNameAndRelease();
    for (const QString &supported : Configuration::list(QStringLiteral("SupportedSystems")))
        if (system == supported || system.startsWith(supported + QLatin1Char('.')))
            return;
    controller_.ui_.showStandardAlert(QStringLiteral("0003.0032"));
    if (AppLinks *links = controller_.yourAppLinks_.get())
        links->openWebsite({}, WebsiteOption::UnsupportedSystem);
}

void LaunchSequence::launchInDefaultMode()
{
    AppController &app = controller_;
    AppPreferences &preferences = app.preferences_;
    AppLinks *links = app.yourAppLinks_.get();
    app.router_.connectPlayer(AppToDo::iTunesBundleIdentifier(), &app);

    if (AppToDo::isITunesRunning()) {
        if (links)
            links->openAffLinkWithOption(AffiliateOption::PlayerAlreadyRunning);
        app.currentTrackActionRun();
    } else if (preferences.prefLaunchYourTunes()) {
        AppToDo::openITunes();
        if (links)
            links->openAffLinkWithOption(AffiliateOption::PlayerStartedInDefaultMode);
    }

    LiveServices &services = app.services_;
    if (preferences.prefUseRatingNotifier())
        services.ratingNotifier = app.factory_.createRatingNotifierController();
    if (preferences.prefUseHotkeyListener()) {
        services.hotkeyListener = app.factory_.createHotkeyListener();
        if (services.hotkeyListener)
            services.hotkeyListener->startListener();
    }

    // A controller that may not show at launch (player closed and set to hide then) keeps
    // the windows and the first scrobble from coming up too.
    if (!app.tuneControllerCreate())
        return;

    if (preferences.prefLaunchLyricsWindow())
        app.clickNavigationMenuShowLyrics();
    if (preferences.prefLaunchFunctionPool())
        app.clickNavigationMenuFunctionPool();
    app.ui_.afterDelay(preferences.prefStatusItemAnimationTimeIn() * 1.1, [&app] { app.scrobbleCurrentTrack(1); });
    if (services.ratingNotifier)
        services.ratingNotifier->ratingNotifierTimerFire();

    if (preferences.prefUseLastFM()) {
        const std::shared_ptr<LastFMScrobbler> probe = app.factory_.createLastFMScrobbler();
        if (probe && !probe->isSessionKeyValid() && !probe->prefUserName().isEmpty()) {
            app.openPreferencesWindowWithTargetView(3);
            if (app.windows_.has(AppWindow::Preferences))
                app.ui_.afterDelay(kLastFMMessageDelaySeconds, [&app] {
                    if (const auto window = app.windows_.get<AppWindow::Preferences>())
                        window->showNeedsAuthoForLastFMMessage();
                });
        }
    }
}

void LaunchSequence::launchInOrganizeMode()
{
    controller_.clickNavigationMenuFunctionPool();
    if (!AppToDo::isITunesRunning()) {
        AppToDo::openITunes();
        if (AppLinks *links = controller_.yourAppLinks_.get())
            links->openAffLinkWithOption(AffiliateOption::PlayerStartedInOrganizeMode);
    }
    transformProcessWorkaroundA();
}

// Becoming the foreground application takes three steps 0.2 s apart; the organizer window
// stands at the front first, or the program stays as it is.
bool LaunchSequence::transformProcessWorkaroundA()
{
    const auto window = controller_.windows_.get<AppWindow::FunctionPool>();
    if (!window)
        return false;
    window->makeKeyAndOrderFront();
    ApplicationUi &ui = controller_.ui_;
    ui.afterDelay(kWorkaroundStepSeconds, [&ui] {
        ui.bringToForeground();
        ui.afterDelay(kWorkaroundStepSeconds, [&ui] { ui.activateApplication(); });
    });
    return true;
}
