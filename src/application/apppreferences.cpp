#include "application/apppreferences.h"

#include "additions/exceptionsink.h"
#include "additions/ovapplication.h"
#include "application/loginitems.h"
#include "application/preferencesmigration.h"


namespace {

QList<PreferenceObject::Setting> generalSettings()
{
    return {
        {"prefLaunchMeOnLogin", "LaunchMeOnLogin", true},
        {"prefLaunchYourTunes", "LaunchYourTunes", true},
        {"prefShowTrackInfoWindowWhenSkippingTrack", "ShowTrackInfoWindowWhenSkippingTrack", true},
        {"prefUseLastFM", "UseLastFM", false},
        {"prefUseRatingNotifier", "UseRatingNotifier", false},
        {"prefUseHotkeyListener", "UseHotkeyListener", false},
        {"prefUseAutoLove", "UseAutoLove", true},
        {"prefUseAutoLoveValue", "UseAutoLoveValue", 70},
        {"prefLaunchAppMode", "LaunchMode", 1},
        {"prefLaunchLyricsWindow", "LaunchLyricsWindow", false},
        {"prefLaunchFunctionPool", "LaunchFunctionPool", false},
    };
}

} // namespace

AppPreferences::AppPreferences(QObject *parent)
    : PreferenceObject(generalSettings(), parent),
      prefAppSupportParentLocation_(OVApplication::ov_applicationSupportDirectoryURLForVersion())
{
    loadUserPreferencesDefaults();
}

QString AppPreferences::locationToPreferences(PreferenceLocation location)
{
    switch (location) {
    case PreferenceLocation::TrackInfoWindow:
        return OVApplication::ov_applicationPreferencesURLForPlistTrackInfoWindow();
    case PreferenceLocation::LyricsWindow:
        return OVApplication::ov_applicationPreferencesURLForPlistLyricsWindow();
    case PreferenceLocation::LastFm:
        return OVApplication::ov_applicationPreferencesURLForPlistLastFm();
    case PreferenceLocation::General:
        return OVApplication::ov_applicationPreferencesURLForPlistGeneral();
    case PreferenceLocation::ServerDocument:
        return OVApplication::ov_applicationInfoURLForFileHidden();
    case PreferenceLocation::ExceptionLog:
        return OVApplication::ov_applicationInfoURLForFileLog();
    case PreferenceLocation::StatusItem:
        return OVApplication::ov_applicationPreferencesURLForPlistStatusItem();
    case PreferenceLocation::Rating:
        return OVApplication::ov_applicationPreferencesURLForPlistRating();
    case PreferenceLocation::KeyBindings:
        return OVApplication::ov_applicationPreferencesURLForPlistKeyBindings();
    }
    return {}; // a number outside the set
}

void AppPreferences::saveUserPreferences()
{
    try {
        writeUserPreferences();
    } catch (const std::exception &exception) {
        ExceptionSink::logException(exception);
        resetUserPreferences();
    }
    // A program set to organize mode is never a login item.
    OVApplicationLogin::ov_setLaunchingAtLogin(prefLaunchMeOnLogin() && prefLaunchAppMode() == 1);
    if (prefLaunchAppMode() == 2)
        OVApplicationLogin::ov_setLaunchingAtLogin(false);
}

bool AppPreferences::deprecatedPreferencsConvert()
{
    return PreferencesMigration(*this).deprecatedPreferencsConvert();
}

void AppPreferences::setPrefDevErrorShowDialog(bool on)
{
    if (prefDevErrorShowDialog_ == on)
        return;
    prefDevErrorShowDialog_ = on;
    emit devErrorChanged();
}

void AppPreferences::setPrefDevErrorWriteLogFile(bool on)
{
    if (prefDevErrorWriteLogFile_ == on)
        return;
    prefDevErrorWriteLogFile_ = on;
    emit devErrorChanged();
}
