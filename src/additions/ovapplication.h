#pragma once

#include <QString>
#include <QVariantMap>

// The program's own identity and the places of its settings. The settings tree is
// $XDG_CONFIG_HOME/Orvane/<short version>/ with the folders "Preferences", "Organizer" and
// "Info"; a new short version starts from an empty tree. Every operation answers an empty
// string when a component is empty or a folder cannot be made.
class OVApplication
{
public:
    // "CFBundleIdentifier", "CFBundleShortVersionString", "CFBundleVersion", "CFBundleName", taken from
    // QCoreApplication (organization domain + name, applicationVersion, applicationName) with
    // the built-in values where those are unset.
    static QVariantMap ov_info();
    static QString ov_bundleIdentifier();
    static QString ov_version();
    static QString ov_buildVersion(); // "CFBundleVersion"
    static QString ov_name();
    static QString ov_path(); // the running executable

    // $XDG_CONFIG_HOME/Orvane, not created here.
    static QString ov_applicationSupportDirectoryURLForApp();
    // The version folder and named folders inside it, created with their parents.
    static QString ov_applicationSupportDirectoryURLForVersion();
    static QString ov_applicationSupportDirectoryURLForVersionWithItem(const QString &name);

    static QString ov_applicationPreferencesURL();
    static QString ov_applicationPreferencesURLForItemWithName(const QString &name);
    static QString ov_applicationPreferencesURLForPlistWithName(const QString &name);
    static QString ov_applicationPreferencesURLForPlistTrackInfoWindow();
    static QString ov_applicationPreferencesURLForPlistLyricsWindow();
    static QString ov_applicationPreferencesURLForPlistLastFm();
    static QString ov_applicationPreferencesURLForPlistGeneral();
    static QString ov_applicationPreferencesURLForPlistKeyBindings();
    static QString ov_applicationPreferencesURLForPlistRating();
    static QString ov_applicationPreferencesURLForPlistStatusItem();
    static QString ov_applicationPreferencesURLForPlistCurrentTrackAction();

    static QString ov_applicationOrganizerURL();
    static QString ov_applicationOrganizerURLForItemWithName(const QString &name);
    static QString ov_applicationOrganizerURLForPlistWithName(const QString &name);
    static QString ov_applicationOrganizerURLForPlistPreferences();
    static QString ov_applicationOrganizerURLForPlistSearchAndReplaceSets();
    static QString ov_applicationOrganizerURLForPlistLyricsSources();
    static QString ov_applicationOrganizerURLForPlistScripts();

    static QString ov_applicationInfoURL();
    static QString ov_applicationInfoURLForItemWithName(const QString &name);
    static QString ov_applicationInfoURLForFileLog();    // "log.txt"
    static QString ov_applicationInfoURLForFileHidden(); // ".orvane"
};
