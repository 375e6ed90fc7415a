#include "controller/gui/tunecontroller.h"

#include "application/apppreferences.h"
#include "controller/gui/controllerlovebutton.h"
#include "controller/gui/oxtunecontrollerbutton.h"
#include "controller/gui/oxtunecontrollerview.h"
#include "controller/gui/statusstripwindow.h"
#include "player/apptodo.h"
#include "widgets/oxlevelindicatorstarrating.h"

namespace {

using TuneControllerLayout::frameInView;

} // namespace

DesktopTuneController::DesktopTuneController(TuneControllerHooks hooks, QObject *parent)
    : QObject(parent), hooks_(std::move(hooks)), strip_(std::make_unique<StatusStripWindow>())
{
    yourTunes_ = ITunesApplication::initWithBundleIdentifier(AppToDo::iTunesBundleIdentifier());
    yourTunes_.setDelegate(this);
    connect(strip_.get(), &StatusStripWindow::stripMoved, this, [this] {
        if (hooks_.controllerWindowDidMove)
            hooks_.controllerWindowDidMove();
    });
    showControlls(false, true);
}

DesktopTuneController::~DesktopTuneController()
{
    QObject::disconnect(observer_);
    yourTunes_.setDelegate(nullptr);
}

template <class Body>
void DesktopTuneController::guarded(Body body)
{
    try {
        body();
    } catch (const OVException &exception) {
        if (hooks_.logException)
            hooks_.logException(exception);
    } catch (const std::exception &exception) {
        if (hooks_.logException)
            hooks_.logException(OVException(QStringLiteral("std::exception"), QString::fromUtf8(exception.what())));
    }
}

void DesktopTuneController::eventDidFail(const QString &className, const QString &operation,
                                         const BridgeError &withError)
{
    if (hooks_.eventDidFail)
        hooks_.eventDidFail(className, operation, withError);
}

// --- Whether it may show.

bool DesktopTuneController::checkIfTheControllerShouldBeHide(bool updateObservers)
{
    if (updateObservers) {
        const bool running = yourTunes_.isRunning();
        const bool hideWhenClosed = yourPreferences_.prefHideControllerWhenYourTunesIsClosed();
        if (running && hideWhenClosed) {
            observeYourTunesTerminate();
        } else if (running) {
            observeYourTunesRemoveObserver();
        } else if (hideWhenClosed) {
            observeYourTunesLaunch();
            return true;
        } else {
            observeYourTunesRemoveObserver();
            return false;
        }
    }
    return controllerShouldHideForPlayingTrack(yourTunes_, yourPreferences_);
}

// --- Building and tearing down.

void DesktopTuneController::showControlls(bool force, bool)
{
    if (!force && checkIfTheControllerShouldBeHide(true)) {
        hideControlls(true, false);
        return;
    }
    // Each showing builds a fresh view, which also picks up changed design settings.
    auto *view = new OXTuneControllerView;
    view->setHoverHandlers(
        [this] {
            return OXTuneControllerView::HoverSettings{
                yourPreferences_.prefShowTrackInfoWindowOnControllerMouseOver(),
                yourPreferences_.prefShowTrackInfoWindowOnControllerMouseOverTime()};
        },
        [this] {
            if (hooks_.showTrackInfoWindowByMouseOver)
                hooks_.showTrackInfoWindowByMouseOver();
        });
    yourTuneControllerView_ = view;

    const bool navigation = yourPreferences_.prefShowControllerNavigation();
    const bool rating = yourPreferences_.prefShowControllerRating();
    const bool love = yourPreferences_.prefShowControllerLove();
    frames_ = TuneControllerLayout::layout(navigation, rating, love);
    const auto perform = [this](ControllerAction action) { performAction(action); };

    if (navigation) {
        new OXTuneControllerButton(frameInView(frames_.previous), ControllerButtonType::Previous, perform, view);
        yourControllerPlayButton_ =
            new OXTuneControllerButton(frameInView(frames_.play), ControllerButtonType::Play, perform, view);
        new OXTuneControllerButton(frameInView(frames_.next), ControllerButtonType::Next, perform, view);
        yourControllerNavigationIsVisible_ = true;
        if (yourTunes_.isRunning() && yourTunes_.playerState() == kPSP)
            switchPlayButtonStatusTo(2);
    } else {
        yourControllerPlayButton_ = nullptr;
        yourControllerNavigationIsVisible_ = false;
    }

    if (rating) {
        auto *stars = new OXLevelIndicatorStarRating(view);
        stars->setGeometry(frameInView(frames_.stars));
        stars->changeStarColor(2);
        connect(stars, &OXLevelIndicatorStarRating::activated, this, &DesktopTuneController::rateCurrentTrack);
        yourControllerRating_ = stars;
        yourControllerRatingIsVisible_ = true;
        updateControllerRating();
    } else {
        yourControllerRating_ = nullptr;
        yourControllerRatingIsVisible_ = false;
    }

    if (love) {
        auto *button = new ControllerLoveButton(frameInView(frames_.loveButton), view);
        connect(button, &ControllerLoveButton::clickedWithModifiers, this, &DesktopTuneController::changeLove);
        yourControllerLove_ = button;
        yourControllerLoveIsVisible_ = true;
        updateControllerRating();
    } else {
        yourControllerLove_ = nullptr;
        yourControllerLoveIsVisible_ = false;
    }

    // The menu button goes in last; every layout has it.
    new OXTuneControllerButton(frameInView(frames_.menu), ControllerButtonType::Menu, perform, view);

    view->setFixedSize(frames_.totalWidth, TuneControllerLayout::kThickness);
    tuneControllerChange(view, frames_.totalWidth);
}

void DesktopTuneController::hideControlls(bool, bool)
{
    releaseControlls();
    // The track windows go with the strip, at once.
    if (TrackInfoWindowController *info = hooks_.trackInfoWindow ? hooks_.trackInfoWindow() : nullptr) {
        info->setPrefFadeTimeOut(0);
        info->closeTrackInfoWindow();
    }
    if (TrackLyricsWindowController *lyrics = hooks_.lyricsWindow ? hooks_.lyricsWindow() : nullptr) {
        lyrics->closeTrackLyricsWindow();
        yourLyricsWindowWasHiddenByController_ = true;
    }
    if (RatingNotifierController *notifier = hooks_.ratingNotifier ? hooks_.ratingNotifier() : nullptr)
        notifier->ratingNotifierTimerCancel();
}

void DesktopTuneController::releaseControlls()
{
    tuneControllerChange(nullptr, 0);
    yourTuneControllerView_ = nullptr;
    yourControllerPlayButton_ = nullptr;
    yourControllerRating_ = nullptr;
    yourControllerNavigationIsVisible_ = false;
    yourControllerRatingIsVisible_ = false;
    yourControllerIsVissible_ = false;
}

void DesktopTuneController::tuneControllerChange(OXTuneControllerView *view, int newLength)
{
    if (!StatusStripWindow::hasScreen()) {
        delete view;
        yourControllerIsVissible_ = false;
        return;
    }
    if (fade_)
        fade_->stop();
    strip_->setWindowOpacity(1.0);
    strip_->setContent(view, newLength);
    yourControllerIsVissible_ = newLength != 0;
}

QPoint DesktopTuneController::currentPosition() const
{
    if (!strip_->isVisible())
        return TuneControllerLayout::currentPosition(nullptr, yourControllerNavigationIsVisible_);
    const QRect frame = strip_->geometry();
    return TuneControllerLayout::currentPosition(&frame, yourControllerNavigationIsVisible_);
}

void DesktopTuneController::switchPlayButtonStatusTo(int state)
{
    if (yourControllerPlayButton_)
        yourControllerPlayButton_->toggleState(state);
}

// --- Fades.

void DesktopTuneController::fadeTuneControllerIn()
{
    if (fade_)
        fade_->stop();
    auto *fade = new QPropertyAnimation(strip_.get(), "windowOpacity", this);
    fade->setDuration(int(AppPreferences::kStatusItemAnimationTime * 1000));
    fade->setStartValue(0.0);
    fade->setEndValue(1.0);
    fade_ = fade;
    fade->start(QAbstractAnimation::DeleteWhenStopped);
}

void DesktopTuneController::fadeTuneControllerOut()
{
    if (fade_)
        fade_->stop();
    auto *fade = new QPropertyAnimation(strip_.get(), "windowOpacity", this);
    fade->setDuration(int(AppPreferences::kStatusItemAnimationTime * 1000));
    fade->setStartValue(strip_->windowOpacity());
    fade->setEndValue(0.0);
    connect(fade, &QPropertyAnimation::finished, this, [this] { releaseControlls(); });
    fade_ = fade;
    fade->start(QAbstractAnimation::DeleteWhenStopped);
}

// --- Rating and love.

void DesktopTuneController::rateCurrentTrack(Qt::KeyboardModifiers modifiers)
{
    guarded([&] {
        OXLevelIndicatorStarRating *stars = yourControllerRating_;
        if (!stars)
            return;
        if (!yourTunes_.isRunning() || yourTunes_.playerState() == kPSS) {
            stars->setValue(0);
            return;
        }
        if (modifiers & Qt::AltModifier)
            AppToDo::setRatingForThePlayingAlbum(stars->value());
        else
            AppToDo::setRatingForThePlayingTrack(stars->value());
        // The auto-love rules may have changed the track's rating.
        stars->setValue(int(yourTunes_.currentTrack().get().rating()));
        updateControllerRating();
        // Marks the player's coming notification as the echo of this rating.
        yourControllerLastAction_ = 1;
        updateInfoWindowRatings();
    });
}

void DesktopTuneController::updateControllerRating()
{
    guarded([&] {
        updateLoveButton();
        OXLevelIndicatorStarRating *stars = yourControllerRating_;
        if (!stars)
            return;
        if (!yourTunes_.isRunning() || yourTunes_.playerState() == kPSS) {
            stars->setValue(0);
            return;
        }
        const ITunesTrack track = yourTunes_.currentTrack().get();
        stars->setValue(int(track.rating()));
        stars->setYourRatingTyp(track.ratingKind() == kRtC ? 2 : 1);
    });
}

void DesktopTuneController::emptyControllerRating()
{
    if (OXLevelIndicatorStarRating *stars = yourControllerRating_) {
        stars->setValue(0);
        stars->setYourRatingTyp(1);
    }
}

bool DesktopTuneController::updateLoveButton()
{
    ControllerLoveButton *button = yourControllerLove_;
    if (!button)
        return false;
    bool loved = false;
    if (yourTunes_.isRunning() && yourTunes_.playerState() != kPSS) {
        if (const ITunesTrack track = yourTunes_.currentTrack().get())
            loved = track.loved();
    }
    button->setLovedImage(loved);
    return true;
}

void DesktopTuneController::changeLove(Qt::KeyboardModifiers modifiers)
{
    if (modifiers & Qt::AltModifier)
        AppToDo::toggleLovedForThePlayingAlbum();
    else
        AppToDo::toggleLovedForThePlayingTrack();
    updateControllerRating();
    updateInfoWindowRatings();
}

void DesktopTuneController::updateInfoWindowRatings()
{
    if (TrackInfoWindowController *info = hooks_.trackInfoWindow ? hooks_.trackInfoWindow() : nullptr)
        info->updateRatings();
}

// --- The buttons' gestures.

void DesktopTuneController::performAction(ControllerAction action)
{
    switch (action) {
    case ControllerAction::PlayPause:
        yourTunes_.playpause();
        break;
    case ControllerAction::NextTrack:
        yourTunes_.nextTrack();
        break;
    case ControllerAction::BackTrack:
        yourTunes_.backTrack();
        break;
    case ControllerAction::FastForward:
        yourTunes_.fastForward();
        break;
    case ControllerAction::Rewind:
        yourTunes_.rewind();
        break;
    case ControllerAction::Resume:
        yourTunes_.resume();
        break;
    case ControllerAction::RevealCurrentTrack:
    case ControllerAction::RevealCurrentTrackInfo:
        // The library window shows the track; the info window gives way at once.
        yourTunes_.currentTrack().get().reveal();
        yourTunes_.activate();
        if (TrackInfoWindowController *info = hooks_.trackInfoWindow ? hooks_.trackInfoWindow() : nullptr) {
            info->setPrefDisplayTime(0);
            info->setPrefFadeTimeOut(0);
            info->closeTrackInfoWindow();
        }
        break;
    case ControllerAction::ClickNavigationMenu:
        if (hooks_.clickNavigationMenu)
            hooks_.clickNavigationMenu();
        break;
    }
}

// --- The player's life.

void DesktopTuneController::observeYourTunesLaunch()
{
    observeYourTunesRemoveObserver();
    if (PlayerNotifier *notifier = yourTunes_.notifier()) {
        observer_ = connect(notifier, &PlayerNotifier::playerLaunched, this,
                            &DesktopTuneController::observeYourTunesLaunched);
        observed_ = Observed::Launch;
    }
}

void DesktopTuneController::observeYourTunesTerminate()
{
    observeYourTunesRemoveObserver();
    if (PlayerNotifier *notifier = yourTunes_.notifier()) {
        observer_ = connect(notifier, &PlayerNotifier::playerTerminated, this,
                            &DesktopTuneController::observeYourTunesTerminated);
        observed_ = Observed::Terminate;
    }
}

void DesktopTuneController::observeYourTunesRemoveObserver()
{
    QObject::disconnect(observer_);
    observer_ = {};
    observed_ = Observed::None;
}

void DesktopTuneController::observeYourTunesLaunched()
{
    if (!yourControllerIsVissible_)
        showControlls(false, true);
    observeYourTunesTerminate();
}

void DesktopTuneController::observeYourTunesTerminated()
{
    if (yourControllerIsVissible_)
        hideControlls(true, false);
    observeYourTunesLaunch();
}
