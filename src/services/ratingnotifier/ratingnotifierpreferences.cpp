#include "services/ratingnotifier/ratingnotifierpreferences.h"

#include "application/apppreferences.h"

RatingNotifierPreferences::RatingNotifierPreferences(QObject *parent)
    : PreferenceObject({{"prefIgnoreTrackRatingValue", "NotifyRatingValue", qint64(10)},
                        {"prefNotifyTimeBeforeTrackEnds", "NotifyTimeBeforeEndOfTrack", qint64(30)},
                        {"prefNotifyWithTrackInfoWindow", "NotifyWithTrackInfoWindow", false},
                        {"prefNotifyWithDisplayFlash", "NotifyWithDisplayFlash", true},
                        {"prefNotifyWithSound", "NotifyWithAlertSound", false}},
                       parent)
{
    loadUserPreferencesDefaults();
    readUserPreferences();
}

QString RatingNotifierPreferences::preferencesLocation() const
{
    return AppPreferences::locationToPreferences(PreferenceLocation::Rating);
}
