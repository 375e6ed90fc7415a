#include "player/runningapplication.h"

#include "player/itunes.h"

PlayerBackendPtr RunningApplication::ov_iTunes()
{
    PlayerBackendPtr backend = contextPlayerBackend();
    return backend && backend->isRunning() ? backend : nullptr;
}

bool RunningApplication::ov_iTunesIsRunning()
{
    return ov_iTunes() != nullptr;
}

bool RunningApplication::ov_iTunesIsRunningAndPlaying()
{
    if (!ov_iTunesIsRunning())
        return false;
    const FourCharCode state = ITunesApplication::ov_iTunesApplication().playerState();
    return state != 0 && state != kPSS;
}

bool RunningApplication::ov_iTunesIsPlayingBeats1()
{
    if (!ov_iTunesIsRunning())
        return false;
    const ITunesTrack track = ITunesApplication::ov_currentTrack().get();
    return track && track.name().compare(QLatin1String("Beats 1"), Qt::CaseInsensitive) == 0
           && track.isKindOf<ITunesURLTrack>();
}
