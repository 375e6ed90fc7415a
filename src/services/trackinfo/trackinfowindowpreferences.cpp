#include "services/trackinfo/trackinfowindowpreferences.h"

#include "application/apppreferences.h"

TrackInfoWindowPreferences::TrackInfoWindowPreferences(QObject *parent)
    : PreferenceObject({{"prefDisplayTime", "DisplayTime", qint64(5)},
                        {"prefTextInfoA", "TextInfoA", qint64(1)},
                        {"prefTextInfoB", "TextInfoB", qint64(2)},
                        {"prefTextInfoC", "TextInfoC", qint64(3)}},
                       parent)
{
    loadUserPreferencesDefaults();
    readUserPreferences();
}

QString TrackInfoWindowPreferences::preferencesLocation() const
{
    return AppPreferences::locationToPreferences(PreferenceLocation::TrackInfoWindow);
}
