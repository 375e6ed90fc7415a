#include "controller/controllerrules.h"

#include "controller/tunecontrollerpreferences.h"
#include "player/runningapplication.h"

bool controllerShouldHideForPlayingTrack(const ITunesApplication &tunes, const TuneControllerPreferences &preferences)
{
    if (tunes.playerState() == kPSS)
        return false;
    const ITunesTrack track = tunes.currentTrack().get();
    // A track that cannot be read forbids nothing.
    if (preferences.prefHideControllerWhenPlayingVideos() && track && track.videoKind() != kNon)
        return true;
    if (preferences.prefHideControllerWhenPlayingPodcasts() && track.mediaKind() == kMdP)
        return true;
    if (preferences.prefHideControllerWhenPlayingStreams() && track.isKindOf<ITunesURLTrack>())
        return !RunningApplication::ov_iTunesIsPlayingBeats1();
    if (preferences.prefHideControllerWhenPlayingSharedTracks() && track.isKindOf<ITunesSharedTrack>())
        return true;
    return false;
}

ControllerAction ControllerButtonGesture::clickAction(ControllerButtonType type)
{
    switch (type) {
    case ControllerButtonType::Play:
        return ControllerAction::PlayPause;
    case ControllerButtonType::Next:
        return ControllerAction::NextTrack;
    case ControllerButtonType::Previous:
        return ControllerAction::BackTrack;
    case ControllerButtonType::Menu:
        break;
    }
    return ControllerAction::ClickNavigationMenu;
}

QList<ControllerAction> ControllerButtonGesture::holdTimerFired()
{
    pressed_ = true;
    switch (type_) {
    case ControllerButtonType::Play:
        return {ControllerAction::RevealCurrentTrack};
    case ControllerButtonType::Menu:
        return {ControllerAction::RevealCurrentTrackInfo};
    case ControllerButtonType::Next:
        return {ControllerAction::FastForward};
    case ControllerButtonType::Previous:
        return {ControllerAction::Rewind};
    }
    return {};
}

QList<ControllerAction> ControllerButtonGesture::mouseUp(int clickCount)
{
    QList<ControllerAction> actions;
    if (!pressed_ && clickCount > 0) {
        if (type_ == ControllerButtonType::Menu)
            return {ControllerAction::ClickNavigationMenu};
        actions.append(clickAction(type_));
    }
    actions.append(ControllerAction::Resume);
    return actions;
}
