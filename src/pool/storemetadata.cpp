#include "pool/storemetadata.h"

#include "additions/ovexception.h"
#include "player/itunes.h"

#include <QFile>
#include <QLocale>
#include <QtEndian>

#include <unicode/udat.h>

#include <iterator>
#include <memory>

namespace {

QString fileLocation(const ITunesTrack &track)
{
    return track.as<ITunesFileTrack>().location();
}

// The text an item gives for its value: texts and numbers have one, anything else has none.
QString stringValue(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QString:
        return value.toString();
    case QMetaType::Bool:
        return QString::number(value.toBool() ? 1 : 0);
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
        return value.toString();
    default:
        return {};
    }
}

enum class Search { NotFound, Found, Stopped };

Search searchInfo(const QString &key, const QVariantMap &info, QVariant &result);

Search searchItems(const QString &key, const QVariantList &items, QVariant &result)
{
    for (const QVariant &element : items) {
        Search search = Search::NotFound;
        if (element.typeId() == QMetaType::QVariantList) {
            const QVariantList list = element.toList();
            if (list.isEmpty())
                return Search::Stopped;
            search = searchItems(key, list, result);
        } else if (element.typeId() == QMetaType::QVariantMap) {
            const QVariantMap info = element.toMap();
            if (!info.isEmpty())
                search = searchInfo(key, info, result);
        }
        if (search != Search::NotFound)
            return search;
    }
    return Search::NotFound;
}

Search searchInfo(const QString &key, const QVariantMap &info, QVariant &result)
{
    const QVariant value = info.value(key);
    if (value.typeId() == QMetaType::QVariantList) {
        const QVariantList list = value.toList();
        return list.isEmpty() ? Search::NotFound : searchItems(key, list, result);
    }
    if (value.typeId() == QMetaType::QVariantMap) {
        const QVariantMap map = value.toMap();
        return map.isEmpty() ? Search::NotFound : searchInfo(key, map, result);
    }
    if (!value.isValid())
        return Search::NotFound;
    result = value;
    return Search::Found;
}

QString storeText(const QString &key, const ITunesTrack &track)
{
    const QVariant value = ov_metadataObjectForKey(key, track);
    return value.typeId() == QMetaType::QString ? value.toString() : QString();
}

} // namespace

QVariantList ov_metadataItemsFromTrack(const ITunesTrack &track)
{
    if (fileLocation(track).isEmpty())
        return {};
    // The bridge reads the file's store atoms into one map: that is the one format there is.
    QVariantList items;
    const QVariantMap metadata = track.storeMetadata();
    for (auto item = metadata.cbegin(); item != metadata.cend(); ++item) {
        const QString text = stringValue(item.value());
        if (!item.key().isEmpty() && !text.isNull())
            items.append(QVariantMap{{item.key(), text}});
    }
    if (items.isEmpty())
        return {};
    return {QVariant(items)};
}

QVariant ov_findObjectForKeyInItems(const QString &key, const QVariantList &items)
{
    QVariant result;
    return searchItems(key, items, result) == Search::Found ? result : QVariant();
}

QVariant ov_findObjectForKeyInInfo(const QString &key, const QVariantMap &info)
{
    QVariant result;
    return searchInfo(key, info, result) == Search::Found ? result : QVariant();
}

QVariant ov_metadataObjectForKey(const QString &key, const ITunesTrack &fromTrack)
{
    const QVariantList items = ov_metadataItemsFromTrack(fromTrack);
    return items.isEmpty() ? QVariant() : ov_findObjectForKeyInItems(key, items);
}

// The identifier follows the "song" atom near the start of the file: the atom's name is
// followed by four big-endian bytes. The search leaves the last eight bytes out, which cannot
// be done on fewer than eight.
QString ov_iTunesStoreIdentifierFromTrack(const ITunesTrack &track)
{
    const QString path = fileLocation(track);
    if (path.isEmpty())
        return {};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray head = file.read(1024);
    if (head.isEmpty())
        return {};
    if (head.size() < 8) {
        const quint64 rangeLength = quint64(head.size()) - 8;
        throw OVException(QStringLiteral("NSRangeException"),
                          QStringLiteral("search range {0, %1} exceeds data length %2")
                              .arg(rangeLength)
                              .arg(head.size()),
                          {{QStringLiteral("Path"), path}});
    }
    const qsizetype at = head.left(head.size() - 8).indexOf("song");
    if (at < 0)
        return {};
    const quint32 identifier = qFromBigEndian<quint32>(head.constData() + at + 4);
    return identifier == 0 ? QString() : QString::number(identifier);
}

QString ov_iTunesStoreAppleIdFromTrack(const ITunesTrack &track)
{
    return storeText(QStringLiteral("itsk/apID"), track);
}

QString ov_iTunesStorePurchasedByFromTrack(const ITunesTrack &track)
{
    return storeText(QStringLiteral("itsk/ownr"), track);
}

QString ov_iTunesStoreAdvisoryFromTrack(const ITunesTrack &track)
{
    return storeText(QStringLiteral("itsk/rtng"), track);
}

// Purchase dates are written in local time.
QDateTime ov_iTunesStorePurchaseDateFromTrack(const ITunesTrack &track)
{
    const QString text = storeText(QStringLiteral("itsk/purd"), track);
    if (text.isEmpty())
        return {};
    return QDateTime::fromString(text, QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

// Qt has no medium date style, ICU has: "Jan 5, 2015, 3:04:05 PM", "05.01.2015, 15:04:05".
QString ov_iTunesStorePurchaseDateDescriptionFromTrack(const ITunesTrack &track)
{
    const QDateTime date = ov_iTunesStorePurchaseDateFromTrack(track);
    if (!date.isValid())
        return {};
    const QByteArray locale = QLocale().name().toLatin1();
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<UDateFormat, decltype(&udat_close)> format(
        udat_open(UDAT_MEDIUM, UDAT_MEDIUM, locale.constData(), nullptr, -1, nullptr, -1, &status),
        udat_close);
    if (U_FAILURE(status))
        return {};
    UChar buffer[128];
    const int32_t length = udat_format(format.get(), UDate(date.toMSecsSinceEpoch()), buffer,
                                       int32_t(std::size(buffer)), nullptr, &status);
    if (U_FAILURE(status))
        return {};
    return QString(reinterpret_cast<const QChar *>(buffer), length);
}
