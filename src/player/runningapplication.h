#pragma once

#include "player/playerbackend.h"

// Who is running, asked of the default backend: the player counts as running while that
// backend exists and says so (the library is open, the followed player is on the bus).
class RunningApplication
{
public:
    // The running player, or null when there is none.
    static PlayerBackendPtr ov_iTunes();
    static bool ov_iTunesIsRunning();
    // Paused counts as playing; a state that cannot be read does not.
    static bool ov_iTunesIsRunningAndPlaying();
    // The current track is a stream that the configured "RadioStreamPattern" recognises as the
    // live radio station, by its address or its name.
    static bool ov_iTunesIsPlayingBeats1();
    static bool isRadioStationStream(const QString &address, const QString &name);
};
