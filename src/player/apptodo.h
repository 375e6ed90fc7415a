#pragma once

#include "player/playerbackend.h"

#include <QString>

// Class-level operations on the player and the playing track, with no state of their own
// (apptodo.cpp). Operations that higher modules define are declared in those modules' headers
// (pool/tagtable.h, pool/storemetadata.h, pool/utilities.h, pool/displayflash.h).
class AppToDo
{
public:
    // --- The player as a process (apptodo.cpp).
    static QString iTunesBundleIdentifier(); // "com.apple.iTunes"
    static bool isITunesRunning();
    // Asks the context's player backend to start the player, without bringing it to the front; false
    // when there is no backend or it cannot launch one.
    static bool openITunes();
    static PlayerBackendPtr runningApplicationForApplicationWithBundleIdentifier(
        const QString &bundleIdentifier);

    // --- Love and rating of the playing track, the user's entry points (apptodo.cpp).
    static bool toggleLovedForThePlayingTrack();
    static bool setLovedForThePlayingTrack(bool loved);
    static bool setRatingForThePlayingTrack(qint64 rating);
    static bool toggleLovedForThePlayingAlbum();
    static bool setLovedForThePlayingAlbum(bool loved);
    static bool setRatingForThePlayingAlbum(qint64 rating);
    // Tells Last.fm whether the playing track is loved. False without a ready scrobbler, while
    // Beats 1 plays or without a current track.
    static bool scrobbleLoved();
    // The auto-love settings the application gives the AppContext (so that this module needs
    // neither the preferences nor the scrobbler, both living above it); false and 0 until it
    // does. The value is clamped to 0 to 100.
    static bool autoLoveUse();
    static qint64 autoLoveValue();
};
