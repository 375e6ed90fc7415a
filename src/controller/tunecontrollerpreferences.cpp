#include "controller/tunecontrollerpreferences.h"

#include "application/apppreferences.h"

namespace {

QList<PreferenceObject::Setting> statusItemSettings()
{
    return {
        {"prefShowTrackInfoWindowOnControllerMouseOver", "ShowTrackInfoWindowOnControllerMouseover", true},
        {"prefShowTrackInfoWindowOnControllerMouseOverTime", "ShowTrackInfoWindowOnControllerMouseoverTime", 1.0},
        {"prefShowControllerNavigation", "DesignYourTunesController", true},
        {"prefShowControllerRating", "DesignRating", false},
        {"prefShowControllerLove", "DesignLove", true},
        {"prefHideControllerWhenYourTunesIsClosed", "HideControllerWhenYourTunesClosed", false},
        {"prefHideControllerWhenPlayingVideos", "HideControllerWhenPlayingVideos", false},
        {"prefHideControllerWhenPlayingPodcasts", "HideControllerWhenPlayingPodcasts", false},
        {"prefHideControllerWhenPlayingStreams", "HideControllerWhenPlayingStreams", false},
        {"prefHideControllerWhenPlayingSharedTracks", "HideControllerWhenPlayingSharedTracks", false},
    };
}

} // namespace

TuneControllerPreferences::TuneControllerPreferences(QObject *parent)
    : PreferenceObject(statusItemSettings(), parent)
{
    loadUserPreferencesDefaults();
    readUserPreferences();
}

QString TuneControllerPreferences::preferencesLocation() const
{
    return AppPreferences::locationToPreferences(PreferenceLocation::StatusItem);
}
