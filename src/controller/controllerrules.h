#pragma once

#include "player/itunes.h"

#include <QList>

class TuneControllerPreferences;

// Whether what plays now forbids the controller, by the hiding settings. The first rule that
// answers ends the test: a stopped player never hides it; then video, podcast, stream (the
// radio station excepted, which also skips the shared-track rule) and shared track. The
// player's life (the closed-player setting) is the controller's own business.
bool controllerShouldHideForPlayingTrack(const ITunesApplication &tunes, const TuneControllerPreferences &preferences);

// What a controller button does with the player.
enum class ControllerAction {
    PlayPause,
    NextTrack,
    BackTrack,
    FastForward,
    Rewind,
    Resume,
    // Shows the current track in the library window and raises the player.
    RevealCurrentTrack,
    // The same, then opens the track's properties.
    RevealCurrentTrackInfo,
    ClickNavigationMenu,
};

// The buttons by their type numbers.
enum class ControllerButtonType { Play = 1, Next = 2, Previous = 3, Menu = 4 };

// One mouse gesture on a controller button: a press shorter than a second is a click, a longer
// one a hold. mouseDown() starts the gesture (the caller runs the one-second timer),
// holdTimerFired() and mouseUp() answer what to send, in order. After every gesture but a menu
// click the player gets resume, so it never stays in fast forward. Pure logic; the button owns
// it and the timer.
class ControllerButtonGesture
{
public:
    explicit ControllerButtonGesture(ControllerButtonType type) : type_(type) {}

    ControllerButtonType type() const { return type_; }
    bool pressed() const { return pressed_; }

    static constexpr int kHoldMilliseconds = 1000;

    void mouseDown() { pressed_ = false; }
    QList<ControllerAction> holdTimerFired();
    // A release with a click count of 0 (the press was taken elsewhere) is no click.
    QList<ControllerAction> mouseUp(int clickCount);

    // What a click on a button of the type sends.
    static ControllerAction clickAction(ControllerButtonType type);

private:
    ControllerButtonType type_;
    bool pressed_ = false;
};
