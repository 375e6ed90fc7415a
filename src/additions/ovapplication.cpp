#include "additions/ovapplication.h"

#include "orvaneversion.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

// A folder made with its parents, or empty when that fails.
QString madeFolder(const QString &path)
{
    if (path.isEmpty())
        return {};
    if (QFileInfo(path).isDir() || QDir().mkpath(path))
        return path;
    return {};
}

QString itemIn(const QString &folder, const QString &name)
{
    if (folder.isEmpty() || name.isEmpty())
        return {};
    return folder + QLatin1Char('/') + name;
}

QString plistIn(const QString &folder, const QString &name)
{
    return name.isEmpty() ? QString() : itemIn(folder, name + QStringLiteral(".plist"));
}

} // namespace

QVariantMap OVApplication::ov_info()
{
    QCoreApplication *app = QCoreApplication::instance();
    auto pick = [](const QString &value, const char *fallback) {
        return value.isEmpty() ? QString::fromUtf8(fallback) : value;
    };
    const QString domain = app ? QCoreApplication::organizationDomain() : QString();
    const QString identifier = domain.isEmpty() ? QString()
                                                : domain + QLatin1Char('.') + QCoreApplication::applicationName();
    QVariantMap info;
    info.insert(QStringLiteral("CFBundleIdentifier"), pick(identifier, ORVANE_BUNDLE_IDENTIFIER));
    info.insert(QStringLiteral("CFBundleShortVersionString"),
                pick(app ? QCoreApplication::applicationVersion() : QString(), ORVANE_SHORT_VERSION));
    info.insert(QStringLiteral("CFBundleVersion"), QStringLiteral(ORVANE_BUNDLE_VERSION));
    info.insert(QStringLiteral("CFBundleName"), QStringLiteral(ORVANE_NAME));
    return info;
}

QString OVApplication::ov_bundleIdentifier()
{
    return ov_info().value(QStringLiteral("CFBundleIdentifier")).toString();
}

QString OVApplication::ov_buildVersion()
{
    return ov_info().value(QStringLiteral("CFBundleVersion")).toString();
}

QString OVApplication::ov_version()
{
    return ov_info().value(QStringLiteral("CFBundleShortVersionString")).toString();
}

QString OVApplication::ov_name()
{
    return ov_info().value(QStringLiteral("CFBundleName")).toString();
}

QString OVApplication::ov_path()
{
    return QCoreApplication::instance() ? QCoreApplication::applicationFilePath() : QString();
}

QString OVApplication::ov_applicationSupportDirectoryURLForApp()
{
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return config.isEmpty() ? QString() : itemIn(config, ov_name());
}

QString OVApplication::ov_applicationSupportDirectoryURLForVersion()
{
    return madeFolder(itemIn(ov_applicationSupportDirectoryURLForApp(), ov_version()));
}

QString OVApplication::ov_applicationSupportDirectoryURLForVersionWithItem(const QString &name)
{
    return madeFolder(itemIn(ov_applicationSupportDirectoryURLForVersion(), name));
}

QString OVApplication::ov_applicationPreferencesURL()
{
    return ov_applicationSupportDirectoryURLForVersionWithItem(QStringLiteral("Preferences"));
}

QString OVApplication::ov_applicationPreferencesURLForItemWithName(const QString &name)
{
    return itemIn(ov_applicationPreferencesURL(), name);
}

QString OVApplication::ov_applicationPreferencesURLForPlistWithName(const QString &name)
{
    return plistIn(ov_applicationPreferencesURL(), name);
}

QString OVApplication::ov_applicationPreferencesURLForPlistTrackInfoWindow()
{
    return ov_applicationPreferencesURLForPlistWithName(QStringLiteral("Track Info Window"));
}

QString OVApplication::ov_applicationPreferencesURLForPlistLyricsWindow()
{
    return ov_applicationPreferencesURLForPlistWithName(QStringLiteral("Lyrics Window"));
}

QString OVApplication::ov_applicationPreferencesURLForPlistLastFm()
{
    return ov_applicationPreferencesURLForPlistWithName(QStringLiteral("Last.fm"));
}

QString OVApplication::ov_applicationPreferencesURLForPlistGeneral()
{
    return ov_applicationPreferencesURLForPlistWithName(QStringLiteral("General"));
}

QString OVApplication::ov_applicationPreferencesURLForPlistKeyBindings()
{
    return ov_applicationPreferencesURLForPlistWithName(QStringLiteral("Key Bindings"));
}

QString OVApplication::ov_applicationPreferencesURLForPlistRating()
{
    return ov_applicationPreferencesURLForPlistWithName(QStringLiteral("Rating"));
}

QString OVApplication::ov_applicationPreferencesURLForPlistStatusItem()
{
    return ov_applicationPreferencesURLForPlistWithName(QStringLiteral("Status Item"));
}

QString OVApplication::ov_applicationPreferencesURLForPlistCurrentTrackAction()
{
    return ov_applicationPreferencesURLForPlistWithName(QStringLiteral("Current Track Action"));
}

QString OVApplication::ov_applicationOrganizerURL()
{
    return ov_applicationSupportDirectoryURLForVersionWithItem(QStringLiteral("Organizer"));
}

QString OVApplication::ov_applicationOrganizerURLForItemWithName(const QString &name)
{
    return itemIn(ov_applicationOrganizerURL(), name);
}

QString OVApplication::ov_applicationOrganizerURLForPlistWithName(const QString &name)
{
    return plistIn(ov_applicationOrganizerURL(), name);
}

QString OVApplication::ov_applicationOrganizerURLForPlistPreferences()
{
    return ov_applicationOrganizerURLForPlistWithName(QStringLiteral("Preferences"));
}

QString OVApplication::ov_applicationOrganizerURLForPlistSearchAndReplaceSets()
{
    return ov_applicationOrganizerURLForPlistWithName(QStringLiteral("Search And Replace Sets"));
}

QString OVApplication::ov_applicationOrganizerURLForPlistLyricsSources()
{
    return ov_applicationOrganizerURLForPlistWithName(QStringLiteral("Lyrics Sources"));
}

QString OVApplication::ov_applicationOrganizerURLForPlistScripts()
{
    return ov_applicationOrganizerURLForPlistWithName(QStringLiteral("Scripts"));
}

QString OVApplication::ov_applicationInfoURL()
{
    return ov_applicationSupportDirectoryURLForVersionWithItem(QStringLiteral("Info"));
}

QString OVApplication::ov_applicationInfoURLForItemWithName(const QString &name)
{
    return itemIn(ov_applicationInfoURL(), name);
}

QString OVApplication::ov_applicationInfoURLForFileLog()
{
    return ov_applicationInfoURLForItemWithName(QStringLiteral("log.txt"));
}

QString OVApplication::ov_applicationInfoURLForFileHidden()
{
    return ov_applicationInfoURLForItemWithName(QStringLiteral(".orvane"));
}
