#pragma once

#include "application/preferenceobject.h"

// The reminder's settings, "Rating".plist: the rating limit, how long before the end, and the
// three ways of reminding. Main thread.
class RatingNotifierPreferences : public PreferenceObject
{
    Q_OBJECT
    Q_PROPERTY(qint64 prefIgnoreTrackRatingValue READ prefIgnoreTrackRatingValue WRITE setPrefIgnoreTrackRatingValue NOTIFY settingsChanged)
    Q_PROPERTY(qint64 prefNotifyTimeBeforeTrackEnds READ prefNotifyTimeBeforeTrackEnds WRITE setPrefNotifyTimeBeforeTrackEnds NOTIFY settingsChanged)
    Q_PROPERTY(bool prefNotifyWithTrackInfoWindow READ prefNotifyWithTrackInfoWindow WRITE setPrefNotifyWithTrackInfoWindow NOTIFY settingsChanged)
    Q_PROPERTY(bool prefNotifyWithDisplayFlash READ prefNotifyWithDisplayFlash WRITE setPrefNotifyWithDisplayFlash NOTIFY settingsChanged)
    Q_PROPERTY(bool prefNotifyWithSound READ prefNotifyWithSound WRITE setPrefNotifyWithSound NOTIFY settingsChanged)

public:
    explicit RatingNotifierPreferences(QObject *parent = nullptr);

    QString preferencesLocation() const override;

    // A track the user rated above this (0 to 100) gets no reminder.
    qint64 prefIgnoreTrackRatingValue() const { return integerSetting("prefIgnoreTrackRatingValue"); }
    void setPrefIgnoreTrackRatingValue(qint64 v) { setSetting(QStringLiteral("prefIgnoreTrackRatingValue"), v); }
    // Seconds before the end of the track.
    qint64 prefNotifyTimeBeforeTrackEnds() const { return integerSetting("prefNotifyTimeBeforeTrackEnds"); }
    void setPrefNotifyTimeBeforeTrackEnds(qint64 v) { setSetting(QStringLiteral("prefNotifyTimeBeforeTrackEnds"), v); }
    bool prefNotifyWithTrackInfoWindow() const { return boolSetting("prefNotifyWithTrackInfoWindow"); }
    void setPrefNotifyWithTrackInfoWindow(bool on) { setSetting(QStringLiteral("prefNotifyWithTrackInfoWindow"), on); }
    bool prefNotifyWithDisplayFlash() const { return boolSetting("prefNotifyWithDisplayFlash"); }
    void setPrefNotifyWithDisplayFlash(bool on) { setSetting(QStringLiteral("prefNotifyWithDisplayFlash"), on); }
    bool prefNotifyWithSound() const { return boolSetting("prefNotifyWithSound"); }
    void setPrefNotifyWithSound(bool on) { setSetting(QStringLiteral("prefNotifyWithSound"), on); }
};
