#include "additions/configuration.h"

#include "additions/ovapplication.h"
#include "additions/propertylist.h"

#include <QDir>

namespace {

const QVariantMap &builtInDefaults()
{
    // Distribution and release as QSysInfo names them ("debian 12"); a release matches its
    // point releases too.
    static const QVariantMap defaults{
        {QStringLiteral("SupportedSystems"),
         QStringList{QStringLiteral("debian 12"), QStringLiteral("debian 13"), QStringLiteral("ubuntu 22.04"),
                     QStringLiteral("ubuntu 24.04")}},
        // The MPRIS bus name of the player to follow; empty follows the first that appears.
        {QStringLiteral("PlayerBusName"), QString()},

        // Web services. Keys and secrets that are issued to a distributor are not part of the
        // source: a build or a user supplies them through Configuration.plist or the environment,
        // and a service without its key stays quiet.
        {QString::fromLatin1(Configuration::ServerBaseURL), QStringLiteral("https://orvane.org")},
        {QString::fromLatin1(Configuration::StoreBaseURL), QStringLiteral("https://itunes.apple.com")},
        {QString::fromLatin1(Configuration::StoreHost), QStringLiteral("itunes.apple.com")},
        {QString::fromLatin1(Configuration::AffiliateToken), QString()},
        {QString::fromLatin1(Configuration::LastfmBaseURL), QStringLiteral("https://ws.audioscrobbler.com")},
        {QString::fromLatin1(Configuration::LastfmAuthURL), QStringLiteral("https://www.last.fm/api/auth/")},
        {QString::fromLatin1(Configuration::LastfmApiKey), QString()},
        {QString::fromLatin1(Configuration::LastfmApiSecret), QString()},
        {QString::fromLatin1(Configuration::LeoLyricsBaseURL), QStringLiteral("http://api.leoslyrics.com")},
        {QString::fromLatin1(Configuration::LeoLyricsAuth), QString()},
        {QString::fromLatin1(Configuration::LyricWikiBaseURL), QStringLiteral("https://lyrics.fandom.com")},
        {QString::fromLatin1(Configuration::ChartLyricsBaseURL), QStringLiteral("http://api.chartlyrics.com")},
        {QString::fromLatin1(Configuration::CoverParadiesBaseURL), QStringLiteral("https://www.cover-paradies.to")},
        {QString::fromLatin1(Configuration::CoverParadiesKey), QString()},
        {QString::fromLatin1(Configuration::RadioPlaylistURL),
         QStringLiteral("https://itsliveradio.apple.com/streams/hub02/session02/64k/prog.m3u8")},
        {QString::fromLatin1(Configuration::RadioStreamPattern), QStringLiteral("(?i)beats ?1|apple music 1")},
    };
    return defaults;
}

QVariant fileValue(const QString &key)
{
    const QString root = OVApplication::ov_applicationSupportDirectoryURLForApp();
    if (root.isEmpty())
        return {};
    return PropertyList::readMap(QDir(root).filePath(QStringLiteral("Configuration.plist"))).value(key);
}

} // namespace

namespace Configuration {

QByteArray environmentName(const QString &key)
{
    QByteArray name("ORVANE_");
    for (qsizetype i = 0; i < key.size(); ++i) {
        const QChar c = key.at(i);
        if (c.isUpper() && i > 0 && !key.at(i - 1).isUpper())
            name += '_';
        name += c.toUpper().toLatin1();
    }
    return name;
}

QVariant value(const QString &key)
{
    const QByteArray fromEnvironment = qgetenv(environmentName(key).constData());
    if (!fromEnvironment.isNull())
        return QString::fromUtf8(fromEnvironment);
    const QVariant fromFile = fileValue(key);
    if (fromFile.isValid())
        return fromFile;
    return builtInDefaults().value(key);
}

QString text(const QString &key)
{
    return value(key).toString();
}

QString baseURL(const char *key)
{
    QString address = text(QString::fromLatin1(key)).trimmed();
    while (address.endsWith(QLatin1Char('/')))
        address.chop(1);
    return address;
}

QStringList list(const QString &key)
{
    const QVariant found = value(key);
    if (found.typeId() == QMetaType::QString)
        return found.toString().split(QLatin1Char(';'), Qt::SkipEmptyParts);
    return found.toStringList();
}

} // namespace Configuration
