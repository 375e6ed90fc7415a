#pragma once

#include "application/preferenceobject.h"

// The status strip's settings, "Status Item".plist: what the strip shows and when it hides.
// Every controller holds its own copy; the preferences window saves its copy and the
// controller reads the file again. Main thread.
class TuneControllerPreferences : public PreferenceObject
{
    Q_OBJECT
    Q_PROPERTY(bool prefShowTrackInfoWindowOnControllerMouseOver READ prefShowTrackInfoWindowOnControllerMouseOver
                   WRITE setPrefShowTrackInfoWindowOnControllerMouseOver NOTIFY settingsChanged)
    Q_PROPERTY(double prefShowTrackInfoWindowOnControllerMouseOverTime READ prefShowTrackInfoWindowOnControllerMouseOverTime
                   WRITE setPrefShowTrackInfoWindowOnControllerMouseOverTime NOTIFY settingsChanged)
    Q_PROPERTY(bool prefShowControllerNavigation READ prefShowControllerNavigation WRITE setPrefShowControllerNavigation
                   NOTIFY settingsChanged)
    Q_PROPERTY(bool prefShowControllerRating READ prefShowControllerRating WRITE setPrefShowControllerRating
                   NOTIFY settingsChanged)
    Q_PROPERTY(bool prefShowControllerLove READ prefShowControllerLove WRITE setPrefShowControllerLove
                   NOTIFY settingsChanged)
    Q_PROPERTY(bool prefHideControllerWhenYourTunesIsClosed READ prefHideControllerWhenYourTunesIsClosed
                   WRITE setPrefHideControllerWhenYourTunesIsClosed NOTIFY settingsChanged)
    Q_PROPERTY(bool prefHideControllerWhenPlayingVideos READ prefHideControllerWhenPlayingVideos
                   WRITE setPrefHideControllerWhenPlayingVideos NOTIFY settingsChanged)
    Q_PROPERTY(bool prefHideControllerWhenPlayingPodcasts READ prefHideControllerWhenPlayingPodcasts
                   WRITE setPrefHideControllerWhenPlayingPodcasts NOTIFY settingsChanged)
    Q_PROPERTY(bool prefHideControllerWhenPlayingStreams READ prefHideControllerWhenPlayingStreams
                   WRITE setPrefHideControllerWhenPlayingStreams NOTIFY settingsChanged)
    Q_PROPERTY(bool prefHideControllerWhenPlayingSharedTracks READ prefHideControllerWhenPlayingSharedTracks
                   WRITE setPrefHideControllerWhenPlayingSharedTracks NOTIFY settingsChanged)
    // Kept for the preferences window's bindings; nothing stores or reads them.
    Q_PROPERTY(bool prefShowControllerNavigationBackground MEMBER prefShowControllerNavigationBackground_)
    Q_PROPERTY(bool prefShowControllerRatingBackground MEMBER prefShowControllerRatingBackground_)

public:
    // Reads the file (the defaults when there is none).
    explicit TuneControllerPreferences(QObject *parent = nullptr);

    QString preferencesLocation() const override;

    bool prefShowTrackInfoWindowOnControllerMouseOver() const
    {
        return boolSetting("prefShowTrackInfoWindowOnControllerMouseOver");
    }
    void setPrefShowTrackInfoWindowOnControllerMouseOver(bool on)
    {
        setSetting(QStringLiteral("prefShowTrackInfoWindowOnControllerMouseOver"), on);
    }
    // Seconds of hovering before the track info window opens; 0 or less opens it at once.
    double prefShowTrackInfoWindowOnControllerMouseOverTime() const
    {
        return realSetting("prefShowTrackInfoWindowOnControllerMouseOverTime");
    }
    void setPrefShowTrackInfoWindowOnControllerMouseOverTime(double seconds)
    {
        setSetting(QStringLiteral("prefShowTrackInfoWindowOnControllerMouseOverTime"), seconds);
    }
    bool prefShowControllerNavigation() const { return boolSetting("prefShowControllerNavigation"); }
    void setPrefShowControllerNavigation(bool on) { setSetting(QStringLiteral("prefShowControllerNavigation"), on); }
    bool prefShowControllerRating() const { return boolSetting("prefShowControllerRating"); }
    void setPrefShowControllerRating(bool on) { setSetting(QStringLiteral("prefShowControllerRating"), on); }
    bool prefShowControllerLove() const { return boolSetting("prefShowControllerLove"); }
    void setPrefShowControllerLove(bool on) { setSetting(QStringLiteral("prefShowControllerLove"), on); }
    bool prefHideControllerWhenYourTunesIsClosed() const
    {
        return boolSetting("prefHideControllerWhenYourTunesIsClosed");
    }
    void setPrefHideControllerWhenYourTunesIsClosed(bool on)
    {
        setSetting(QStringLiteral("prefHideControllerWhenYourTunesIsClosed"), on);
    }
    bool prefHideControllerWhenPlayingVideos() const { return boolSetting("prefHideControllerWhenPlayingVideos"); }
    void setPrefHideControllerWhenPlayingVideos(bool on)
    {
        setSetting(QStringLiteral("prefHideControllerWhenPlayingVideos"), on);
    }
    bool prefHideControllerWhenPlayingPodcasts() const { return boolSetting("prefHideControllerWhenPlayingPodcasts"); }
    void setPrefHideControllerWhenPlayingPodcasts(bool on)
    {
        setSetting(QStringLiteral("prefHideControllerWhenPlayingPodcasts"), on);
    }
    bool prefHideControllerWhenPlayingStreams() const { return boolSetting("prefHideControllerWhenPlayingStreams"); }
    void setPrefHideControllerWhenPlayingStreams(bool on)
    {
        setSetting(QStringLiteral("prefHideControllerWhenPlayingStreams"), on);
    }
    bool prefHideControllerWhenPlayingSharedTracks() const
    {
        return boolSetting("prefHideControllerWhenPlayingSharedTracks");
    }
    void setPrefHideControllerWhenPlayingSharedTracks(bool on)
    {
        setSetting(QStringLiteral("prefHideControllerWhenPlayingSharedTracks"), on);
    }

private:
    bool prefShowControllerNavigationBackground_ = false;
    bool prefShowControllerRatingBackground_ = false;
};
