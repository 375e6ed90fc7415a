#pragma once

#include <QString>
#include <QVariantMap>

class AppPreferences;
enum class PreferenceLocation;

// Carries the settings of version 3.5 over into the current settings tree, once: the old tree
// is $XDG_DATA_HOME/Orvane/3.5/, whose folder "Orvane" is deleted whole afterwards. Nothing
// here reports to the user; a file that could not be carried over simply starts from its
// defaults. Main thread, at launch, before any settings are read.
class PreferencesMigration
{
public:
    explicit PreferencesMigration(AppPreferences &preferences) : preferences_(preferences) {}

    // True when a conversion ran.
    bool deprecatedPreferencsConvert();

    static QString deprecatedApplicationSupportDirectoryForApp();
    static QString deprecatedApplicationSupportDirectoryFor3v5();
    // The old file of a settings file; the old "Preferences" folder for those without one.
    static QString deprecatedPreferencsPathForFile(PreferenceLocation location);

    // Only when the current tree has no general settings and the old tree exists.
    bool deprecatedPreferencsConvertIsNeeded() const;
    // Copies one old file to its new place, never over an existing file.
    bool deprecatedPreferencsConvertForFile(PreferenceLocation location) const;

    bool deprecatedPreferencsImprovementForGeneral() const;
    // The old auto-love value reaches the live general settings only, never a file.
    bool deprecatedPreferencsImprovementForLastFm() const;
    bool deprecatedPreferencsImprovementForKeyBindings() const;
    bool deprecatedPreferencsImprovementForRating() const;
    bool deprecatedPreferencsImprovementForStatusItem() const;

    void deprecatedOrganizerImprovement() const;
    bool deprecatedOrganizerImprovementFromPlist(const QString &oldPath, const QString &newPath) const;
    bool deprecatedOrganizerImprovementForPreferences() const;
    bool deprecatedOrganizerImprovementForSearchAndReplaceSets() const;
    bool deprecatedOrganizerImprovementForScripts() const;
    bool deprecatedOrganizerImprovementForLyricsSources() const;

    bool deprecatedApplicationSupportDirectoryForAppRemove() const;

private:
    AppPreferences &preferences_;
};
