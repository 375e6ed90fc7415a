#include "player/mpris/mprismetadata.h"

#include <QCryptographicHash>
#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QUrl>

#include <cmath>

namespace Mpris {

namespace {

QVariant plainArgument(const QDBusArgument &argument)
{
    switch (argument.currentType()) {
    case QDBusArgument::MapType: {
        QVariantMap map;
        argument.beginMap();
        while (!argument.atEnd()) {
            argument.beginMapEntry();
            const QString key = plainValue(argument.asVariant()).toString();
            map.insert(key, plainValue(argument.asVariant()));
            argument.endMapEntry();
        }
        argument.endMap();
        return map;
    }
    case QDBusArgument::ArrayType: {
        QVariantList list;
        argument.beginArray();
        while (!argument.atEnd())
            list.append(plainValue(argument.asVariant()));
        argument.endArray();
        return list;
    }
    case QDBusArgument::StructureType: {
        QVariantList fields;
        argument.beginStructure();
        while (!argument.atEnd())
            fields.append(plainValue(argument.asVariant()));
        argument.endStructure();
        return fields;
    }
    default:
        return plainValue(argument.asVariant());
    }
}

} // namespace

QVariant plainValue(const QVariant &value)
{
    const int type = value.userType();
    if (type == qMetaTypeId<QDBusVariant>())
        return plainValue(value.value<QDBusVariant>().variant());
    if (type == qMetaTypeId<QDBusObjectPath>())
        return value.value<QDBusObjectPath>().path();
    if (type == qMetaTypeId<QDBusArgument>())
        return plainArgument(value.value<QDBusArgument>());
    return value;
}

FourCharCode playerStateFromStatus(const QString &status)
{
    if (status == QLatin1String("Playing"))
        return kPSP;
    if (status == QLatin1String("Paused"))
        return kPSp;
    return kPSS;
}

QString statusText(FourCharCode playerState)
{
    switch (playerState) {
    case kPSP: return QStringLiteral("Playing");
    case kPSp: return QStringLiteral("Paused");
    default: return QStringLiteral("Stopped");
    }
}

QString Metadata::url() const
{
    return values_.value(QStringLiteral("xesam:url")).toString();
}

QString Metadata::filePath() const
{
    const QUrl address(url());
    return address.isLocalFile() ? address.toLocalFile() : QString();
}

QString Metadata::trackId() const
{
    return values_.value(QStringLiteral("mpris:trackid")).toString();
}

QString Metadata::title() const
{
    return text(QStringLiteral("xesam:title"));
}

QString Metadata::text(const QString &key) const
{
    return values_.value(key).toStringList().join(QStringLiteral(", "));
}

qint64 Metadata::integer(const QString &key) const
{
    return values_.value(key).toLongLong();
}

qint64 Metadata::year() const
{
    // An ISO 8601 date or just a year; only the year is wanted.
    return text(QStringLiteral("xesam:contentCreated")).left(4).toLongLong();
}

qint64 Metadata::lengthMicroseconds() const
{
    return integer(QStringLiteral("mpris:length"));
}

QString Metadata::derivedPersistentID() const
{
    if (isEmpty())
        return {};
    const QByteArray digest = QCryptographicHash::hash(url().toUtf8(), QCryptographicHash::Md5);
    return QString::fromLatin1(digest.left(8).toHex()).toUpper();
}

QVariantMap playerInfo(FourCharCode playerState, const Metadata &metadata)
{
    QVariantMap info{{QStringLiteral("Player State"), statusText(playerState)}};
    if (playerState == kPSS || metadata.isEmpty())
        return info;

    const auto addText = [&](const QString &key, const QString &value) {
        if (!value.isEmpty())
            info.insert(key, value);
    };
    const auto addNumber = [&](const QString &key, qint64 value) {
        if (value > 0)
            info.insert(key, value);
    };
    addText(QStringLiteral("Name"), metadata.title());
    addText(QStringLiteral("Artist"), metadata.text(QStringLiteral("xesam:artist")));
    addText(QStringLiteral("Album"), metadata.text(QStringLiteral("xesam:album")));
    addText(QStringLiteral("Album Artist"), metadata.text(QStringLiteral("xesam:albumArtist")));
    addText(QStringLiteral("Composer"), metadata.text(QStringLiteral("xesam:composer")));
    addText(QStringLiteral("Genre"), metadata.text(QStringLiteral("xesam:genre")));
    addNumber(QStringLiteral("Track Number"), metadata.integer(QStringLiteral("xesam:trackNumber")));
    addNumber(QStringLiteral("Disc Number"), metadata.integer(QStringLiteral("xesam:discNumber")));
    addNumber(QStringLiteral("Year"), metadata.year());
    addNumber(QStringLiteral("Total Time"), metadata.lengthMicroseconds() / 1000);
    if (metadata.filePath().isEmpty())
        addText(QStringLiteral("Stream URL"), metadata.url());
    else
        addText(QStringLiteral("Location"), metadata.url());
    addText(QStringLiteral("Persistent ID"), metadata.derivedPersistentID());
    return info;
}

} // namespace Mpris
