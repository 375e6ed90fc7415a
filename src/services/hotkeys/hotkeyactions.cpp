#include "services/hotkeys/hotkeyactions.h"

#include "player/apptodo.h"
#include "services/hotkeys/hotkeylistenerpreferences.h"

#include <algorithm>

namespace {

void call(const std::function<void()> &hook)
{
    if (hook)
        hook();
}

bool ask(const std::function<bool()> &hook)
{
    return hook && hook();
}

} // namespace

void runShortcutActionForHotkeyID(qint64 hotkeyID, const HotkeyActionHooks &hooks)
{
    switch (HotkeyTag(hotkeyID)) {
    case HotkeyTag::ShowTrackInfoWindow:
        call(ask(hooks.hasTrackInfoWindow) ? hooks.closeTrackInfoWindow : hooks.showTrackInfoWindow);
        return;
    case HotkeyTag::ShowLyricsWindow:
        call(ask(hooks.hasLyricsWindow) ? hooks.closeTrackLyricsWindow : hooks.showLyricsWindow);
        return;
    case HotkeyTag::ShowFunctionPool:
        call(hooks.showFunctionPool);
        return;
    case HotkeyTag::LastFMEnableDisable:
        call(hooks.enableDisableLastFM);
        return;
    case HotkeyTag::YourTunesLoved:
        // Sets the flag, never clears it.
        AppToDo::setLovedForThePlayingTrack(true);
        return;
    default:
        break;
    }
    if (hotkeyID < int(HotkeyTag::YourTunesPlayPause) || hotkeyID > int(HotkeyTag::YourTunesRatingRemove)
        || !hooks.yourTunes)
        return;
    const ITunesApplication tunes = hooks.yourTunes();
    if (tunes.isNull())
        return;
    switch (HotkeyTag(hotkeyID)) {
    case HotkeyTag::YourTunesPlayPause:
        tunes.playpause();
        break;
    case HotkeyTag::YourTunesBackTrack:
        tunes.backTrack();
        break;
    case HotkeyTag::YourTunesNextTrack:
        tunes.nextTrack();
        break;
    case HotkeyTag::YourTunesRevealCurrentTrack:
        tunes.currentTrack().get().reveal();
        tunes.activate();
        break;
    case HotkeyTag::YourTunesMute:
        tunes.setMute(!tunes.mute());
        break;
    case HotkeyTag::YourTunesSoundVolumeUp:
        tunes.setSoundVolume(std::min<qint64>(tunes.soundVolume() + 10, 100));
        break;
    case HotkeyTag::YourTunesSoundVolumeDown:
        tunes.setSoundVolume(std::max<qint64>(tunes.soundVolume() - 10, 0));
        break;
    case HotkeyTag::YourTunesRatingStarUp: {
        const ITunesTrack track = tunes.currentTrack().get();
        track.setRating(std::min<qint64>(track.rating() + 20, 100));
        break;
    }
    case HotkeyTag::YourTunesRatingStarDown: {
        const ITunesTrack track = tunes.currentTrack().get();
        track.setRating(std::max<qint64>(track.rating() - 20, 0));
        break;
    }
    case HotkeyTag::YourTunesRatingRemove:
        tunes.currentTrack().get().setRating(0);
        break;
    default:
        break;
    }
}
