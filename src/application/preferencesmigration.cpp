#include "application/preferencesmigration.h"

#include "additions/ovapplication.h"
#include "additions/propertylist.h"
#include "application/apppreferences.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <functional>

namespace {

QString oldFunctionPoolFile(const QString &name)
{
    const QString old = PreferencesMigration::deprecatedApplicationSupportDirectoryFor3v5();
    return old.isEmpty() ? QString() : old + QLatin1String("/FunctionPool/") + name;
}

bool isNumber(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
        return true;
    default:
        return false;
    }
}

// Moves leave no key behind for a value the old file did not have.
void setValueIgnoringNull(QVariantMap &map, const QString &key, const QVariant &value)
{
    if (value.isValid())
        map.insert(key, value);
    else
        map.remove(key);
}

// Reads a settings file, lets the change edit its map and writes it back.
bool improve(const QString &path, const std::function<void(QVariantMap &)> &change)
{
    QVariantMap map = PropertyList::readMap(path);
    if (map.isEmpty())
        return false;
    change(map);
    try {
        return PropertyList::write(path, map);
    } catch (const std::exception &) {
        return false;
    }
}

void move(QVariantMap &map, const QString &from, const QString &to, bool (*accepts)(const QVariant &))
{
    const QVariant value = map.take(from);
    setValueIgnoringNull(map, to, accepts(value) ? value : QVariant());
}

} // namespace

bool PreferencesMigration::deprecatedPreferencsConvert()
{
    if (!deprecatedPreferencsConvertIsNeeded())
        return false;
    if (deprecatedPreferencsConvertForFile(PreferenceLocation::General))
        deprecatedPreferencsImprovementForGeneral();
    deprecatedPreferencsConvertForFile(PreferenceLocation::TrackInfoWindow);
    deprecatedPreferencsConvertForFile(PreferenceLocation::LyricsWindow);
    if (deprecatedPreferencsConvertForFile(PreferenceLocation::LastFm))
        deprecatedPreferencsImprovementForLastFm();
    if (deprecatedPreferencsConvertForFile(PreferenceLocation::KeyBindings))
        deprecatedPreferencsImprovementForKeyBindings();
    if (deprecatedPreferencsConvertForFile(PreferenceLocation::Rating))
        deprecatedPreferencsImprovementForRating();
    if (deprecatedPreferencsConvertForFile(PreferenceLocation::StatusItem))
        deprecatedPreferencsImprovementForStatusItem();
    deprecatedOrganizerImprovement();
    deprecatedApplicationSupportDirectoryForAppRemove();
    return true;
}

QString PreferencesMigration::deprecatedApplicationSupportDirectoryForApp()
{
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return data.isEmpty() ? QString() : data + QLatin1String("/Orvane");
}

QString PreferencesMigration::deprecatedApplicationSupportDirectoryFor3v5()
{
    const QString app = deprecatedApplicationSupportDirectoryForApp();
    return app.isEmpty() ? QString() : app + QLatin1String("/3.5");
}

QString PreferencesMigration::deprecatedPreferencsPathForFile(PreferenceLocation location)
{
    const QString old = deprecatedApplicationSupportDirectoryFor3v5();
    if (old.isEmpty())
        return {};
    const QString folder = old + QLatin1String("/Preferences");
    const char *name = nullptr;
    switch (location) {
    case PreferenceLocation::TrackInfoWindow: name = "TrackInfoWindow.plist"; break;
    case PreferenceLocation::LyricsWindow: name = "TrackLyricsWindow.plist"; break;
    case PreferenceLocation::LastFm: name = "LastFM.plist"; break;
    case PreferenceLocation::General: name = "Application.plist"; break;
    case PreferenceLocation::StatusItem: name = "Controller.plist"; break;
    case PreferenceLocation::Rating: name = "RatingNotifier.plist"; break;
    case PreferenceLocation::KeyBindings: name = "Shortcuts.plist"; break;
    case PreferenceLocation::ServerDocument:
    case PreferenceLocation::ExceptionLog: return folder;
    }
    if (!name)
        return folder;
    return folder + QLatin1Char('/') + QLatin1String(name);
}

bool PreferencesMigration::deprecatedPreferencsConvertIsNeeded() const
{
    if (QFileInfo::exists(AppPreferences::locationToPreferences(PreferenceLocation::General)))
        return false;
    return QFileInfo(deprecatedApplicationSupportDirectoryFor3v5()).isDir();
}

bool PreferencesMigration::deprecatedPreferencsConvertForFile(PreferenceLocation location) const
{
    const QString newPath = AppPreferences::locationToPreferences(location);
    return deprecatedOrganizerImprovementFromPlist(deprecatedPreferencsPathForFile(location), newPath);
}

bool PreferencesMigration::deprecatedPreferencsImprovementForGeneral() const
{
    return improve(AppPreferences::locationToPreferences(PreferenceLocation::General), [](QVariantMap &map) {
        map.insert(QStringLiteral("UseAutoLove"), true);
        map.insert(QStringLiteral("UseAutoLoveValue"), 70);
        map.insert(QStringLiteral("LaunchMeOnLogin"), true);
        map.insert(QStringLiteral("LaunchYourTunes"), true);
    });
}

bool PreferencesMigration::deprecatedPreferencsImprovementForLastFm() const
{
    return improve(AppPreferences::locationToPreferences(PreferenceLocation::LastFm), [this](QVariantMap &map) {
        const QVariant value = map.value(QStringLiteral("AutoLoveValue"));
        if (isNumber(value))
            preferences_.setPrefUseAutoLoveValue(value.toInt());
        map.remove(QStringLiteral("AutoLove"));
        map.remove(QStringLiteral("AutoLoveValue"));
    });
}

bool PreferencesMigration::deprecatedPreferencsImprovementForKeyBindings() const
{
    return improve(AppPreferences::locationToPreferences(PreferenceLocation::KeyBindings), [](QVariantMap &map) {
        move(map, QStringLiteral("LastFMLoveCurrentTrack"), QStringLiteral("YourTunesLoved"),
             [](const QVariant &value) { return value.typeId() == QMetaType::QVariantMap; });
    });
}

bool PreferencesMigration::deprecatedPreferencsImprovementForRating() const
{
    return improve(AppPreferences::locationToPreferences(PreferenceLocation::Rating), [](QVariantMap &map) {
        move(map, QStringLiteral("RatingValue"), QStringLiteral("NotifyRatingValue"), isNumber);
        move(map, QStringLiteral("TimeBeforeEndOfTrack"), QStringLiteral("NotifyTimeBeforeEndOfTrack"), isNumber);
    });
}

bool PreferencesMigration::deprecatedPreferencsImprovementForStatusItem() const
{
    return improve(AppPreferences::locationToPreferences(PreferenceLocation::StatusItem), [](QVariantMap &map) {
        map.remove(QStringLiteral("DesignRatingBackground"));
        map.remove(QStringLiteral("DesignYourTunesControllerBackground"));
        map.insert(QStringLiteral("DesignLove"), true);
    });
}

void PreferencesMigration::deprecatedOrganizerImprovement() const
{
    deprecatedOrganizerImprovementForPreferences();
    deprecatedOrganizerImprovementForSearchAndReplaceSets();
    deprecatedOrganizerImprovementForScripts();
    deprecatedOrganizerImprovementForLyricsSources();
}

bool PreferencesMigration::deprecatedOrganizerImprovementFromPlist(const QString &oldPath,
                                                                   const QString &newPath) const
{
    if (newPath.isEmpty() || !QFileInfo(oldPath).isFile() || QFileInfo::exists(newPath))
        return false;
    return QFile::copy(oldPath, newPath);
}

bool PreferencesMigration::deprecatedOrganizerImprovementForPreferences() const
{
    return deprecatedOrganizerImprovementFromPlist(oldFunctionPoolFile(QStringLiteral("Preferences.plist")),
                                                   OVApplication::ov_applicationOrganizerURLForPlistPreferences());
}

bool PreferencesMigration::deprecatedOrganizerImprovementForSearchAndReplaceSets() const
{
    return deprecatedOrganizerImprovementFromPlist(
        oldFunctionPoolFile(QStringLiteral("SearchSets.plist")),
        OVApplication::ov_applicationOrganizerURLForPlistSearchAndReplaceSets());
}

bool PreferencesMigration::deprecatedOrganizerImprovementForScripts() const
{
    return deprecatedOrganizerImprovementFromPlist(oldFunctionPoolFile(QStringLiteral("Scripts.plist")),
                                                   OVApplication::ov_applicationOrganizerURLForPlistScripts());
}

bool PreferencesMigration::deprecatedOrganizerImprovementForLyricsSources() const
{
    return deprecatedOrganizerImprovementFromPlist(oldFunctionPoolFile(QStringLiteral("LyricsSources.plist")),
                                                   OVApplication::ov_applicationOrganizerURLForPlistLyricsSources());
}

bool PreferencesMigration::deprecatedApplicationSupportDirectoryForAppRemove() const
{
    const QString app = deprecatedApplicationSupportDirectoryForApp();
    return !app.isEmpty() && QDir(app).removeRecursively();
}
