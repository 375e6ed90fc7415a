#include "application/playereventrouter.h"

#include "application/apppreferences.h"
#include "application/exceptionlog.h"
#include "application/windowregistry.h"
#include "player/apptodo.h"

PlayerEventRouter::PlayerEventRouter(Context context, QObject *parent)
    : QObject(parent), context_(std::move(context))
{
}

PlayerEventRouter::~PlayerEventRouter()
{
    QObject::disconnect(playerInfoConnection_);
    yourTunes_.setDelegate(nullptr);
}

template <class Body>
void PlayerEventRouter::guarded(Body body)
{
    try {
        body();
    } catch (const OVException &exception) {
        context_.exceptionLog.logException(exception);
    } catch (const std::exception &exception) {
        context_.exceptionLog.logException(
            OVException(QStringLiteral("std::exception"), QString::fromUtf8(exception.what())));
    }
}

void PlayerEventRouter::connectPlayer(const QString &bundleIdentifier, ScriptingBridgeDelegate *delegate)
{
    QObject::disconnect(playerInfoConnection_);
    yourTunes_ = ITunesApplication::initWithBundleIdentifier(bundleIdentifier);
    yourTunes_.setDelegate(delegate);
    if (PlayerNotifier *notifier = yourTunes_.notifier())
        playerInfoConnection_ = connect(notifier, &PlayerNotifier::playerInfo, this,
                                        &PlayerEventRouter::observeYourTunesPlayerState);
}

void PlayerEventRouter::observeYourTunesPlayerState(const QVariantMap &userInfo)
{
    currentTrackActionRun();

    const QString state = userInfo.value(QStringLiteral("Player State")).toString();
    TuneController *controller = context_.services.tuneController.get();
    const bool wasVisible = controller && controller->yourControllerIsVissible();
    auto rating = [this] { return context_.services.ratingNotifier.get(); };
    WindowRegistry &windows = context_.windows;

    if (state == QLatin1String("Playing")) {
        // The echo of a rating set in the controller: only the reminder starts again.
        if (controller && controller->yourControllerLastAction() == 1) {
            controller->setYourControllerLastAction(0);
            if (rating())
                rating()->ratingNotifierTimerFire();
            return;
        }
        if (controller && controller->checkIfTheControllerShouldBeHide(false)) {
            if (wasVisible)
                controller->hideControlls(true, false);
            scrobbleCurrentTrack(3);
            if (rating())
                rating()->ratingNotifierTimerCancel();
            return;
        }
        if (controller && !wasVisible) {
            controller->showControlls(false, true);
            if (controller->yourLyricsWindowWasHiddenByController()) {
                if (context_.showLyricsWindow)
                    context_.showLyricsWindow();
                controller->setYourLyricsWindowWasHiddenByController(false);
            }
        }
        if (controller)
            controller->switchPlayButtonStatusTo(2);
        if (rating())
            rating()->ratingNotifierTimerFire();
        if (controller)
            controller->updateControllerRating();
        currentTrackIsChanging();
        return;
    }

    if (rating())
        rating()->ratingNotifierTimerCancel();
    if (controller)
        controller->switchPlayButtonStatusTo(1);
    if (state == QLatin1String("Stopped")) {
        // Forced, so that a controller hidden for a video comes back when playback ends.
        if (controller && !wasVisible)
            controller->showControlls(true, true);
        if (controller)
            controller->emptyControllerRating();
        if (const auto info = windows.get<AppWindow::TrackInfo>())
            info->closeTrackInfoWindow();
        if (const auto lyrics = windows.get<AppWindow::Lyrics>())
            lyrics->emptyTrackInformations();
    }
    scrobbleCurrentTrack(3);
}

void PlayerEventRouter::currentTrackIsChanging()
{
    scrobbleCurrentTrack(1);
    const ITunesTrack track = yourTunes_.currentTrack().get();
    if (track.isKindOf<ITunesURLTrack>()) {
        if (const auto info = context_.windows.get<AppWindow::TrackInfo>())
            info->closeTrackInfoWindow();
        if (const auto lyrics = context_.windows.get<AppWindow::Lyrics>())
            lyrics->emptyTrackInformations();
        return;
    }
    showTrackInfoWindow(1);
    showTrackLyricsWindow();
}

void PlayerEventRouter::scrobbleCurrentTrack(int option)
{
    guarded([&] {
        if (!context_.preferences.prefUseLastFM())
            return;
        // The first call after Last.fm was switched on only makes the scrobbler.
        LastFMScrobbler *scrobbler = context_.services.lastFMScrobbler.get();
        if (!scrobbler) {
            lastFMScrobblerCreate();
            return;
        }
        switch (option) {
        case 1:
            scrobbler->scrobbleTrack();
            break;
        case 2:
            scrobbler->scrobbleSubmission();
            break;
        case 3:
            scrobbler->scrobbleSubmission();
            scrobbler->scrobbleClean();
            break;
        default:
            break;
        }
    });
}

void PlayerEventRouter::lastFMScrobblerCreate()
{
    std::shared_ptr<LastFMScrobbler> &scrobbler = context_.services.lastFMScrobbler;
    scrobbler.reset();
    if (!context_.preferences.prefUseLastFM())
        return;
    scrobbler = context_.factory.createLastFMScrobbler();
    if (scrobbler && !scrobbler->prefUserName().isEmpty())
        scrobbler->scrobbleTrackNow();
}

void PlayerEventRouter::showTrackInfoWindow(int option)
{
    guarded([&] {
        WindowRegistry &windows = context_.windows;
        const TuneController *controller = context_.services.tuneController.get();
        if (!controller || !controller->yourControllerIsVissible() || windows.has(AppWindow::Navigation))
            return;
        const auto shown = windows.get<AppWindow::TrackInfo>();
        if (option == 1 && !shown
            && (!context_.preferences.prefShowTrackInfoWindowWhenSkippingTrack() || yourTunes_.frontmost()))
            return;
        if (shown) {
            shown->updateTrackInformations(1);
            return;
        }
        const auto window = windows.create<AppWindow::TrackInfo>();
        if (!window)
            return;
        if (option == 1 || option == 3)
            window->orderFrontRegardless(); // does not take the focus from the player
        else if (option == 2 || option == 4)
            window->makeKeyAndOrderFront();
        else
            return;
        windows.set<AppWindow::TrackInfo>(window);
    });
}

void PlayerEventRouter::showTrackInfoWindowByMouseOver()
{
    if (context_.windows.has(AppWindow::TrackInfo) || context_.windows.has(AppWindow::Navigation) || !AppToDo::isITunesRunning()
        || yourTunes_.playerState() == kPSS)
        return;
    showTrackInfoWindow(2);
}

void PlayerEventRouter::showTrackLyricsWindow()
{
    if (const auto lyrics = context_.windows.get<AppWindow::Lyrics>())
        lyrics->updateTrackInformations();
}

void PlayerEventRouter::currentTrackActionRun()
{
    if (const std::shared_ptr<OVCurrentTrackAction> action = context_.factory.createCurrentTrackAction())
        action->run();
}

void PlayerEventRouter::currentTrackActionCleanup()
{
    if (const std::shared_ptr<OVCurrentTrackAction> action = context_.factory.createCurrentTrackAction())
        action->cleanup();
}
