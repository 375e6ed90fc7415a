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

QStringList list(const QString &key)
{
    const QVariant found = value(key);
    if (found.typeId() == QMetaType::QString)
        return found.toString().split(QLatin1Char(';'), Qt::SkipEmptyParts);
    return found.toStringList();
}

} // namespace Configuration
