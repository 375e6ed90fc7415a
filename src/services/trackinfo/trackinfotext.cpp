#include "services/trackinfo/trackinfotext.h"

#include "additions/configuration.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QUrlQuery>

#include <cmath>

namespace TrackInfoText {

QString playerPositionDescription(double seconds)
{
    if (!(seconds > 0))
        return {};
    if (seconds <= 3600.0) {
        const qint64 whole = qint64(seconds);
        return QStringLiteral("%1:%2").arg(whole / 60, 2, 10, QLatin1Char('0')).arg(whole % 60, 2, 10, QLatin1Char('0'));
    }
    const double hours = seconds / 3600.0;
    if (hours > 1000.0)
        return {};
    return QStringLiteral("> %1 h").arg(qint64(hours));
}

QUrl storeSearchUrl(const QString &artist, const QString &album)
{
    if (artist.isEmpty() || album.isEmpty())
        return {};
    QString term = artist + QLatin1Char(' ') + album;
    term.replace(QLatin1Char(' '), QLatin1Char('+'));
    QUrl url(Configuration::text(QLatin1String(Configuration::StoreBaseURL)) + QLatin1String("/search"));
    // "+" stands for the blanks; everything else the query can't hold is percent-encoded.
    const QByteArray encoded = QUrl::toPercentEncoding(term, "+");
    url.setQuery(QStringLiteral("term=") + QString::fromLatin1(encoded) + QStringLiteral("&entity=album"),
                 QUrl::StrictMode);
    return url;
}

namespace {

const QJsonObject *findEntry(const QString &artist, const QString &album, const QJsonArray &results,
                             QJsonObject &holder)
{
    auto sameArtist = [&](const QJsonObject &entry) {
        const QString name = entry.value(QLatin1String("artistName")).toString();
        return !name.isEmpty() && name.compare(artist, Qt::CaseInsensitive) == 0;
    };
    for (const QJsonValue &value : results) {
        if (!value.isObject())
            continue;
        const QJsonObject entry = value.toObject();
        const QString collection = entry.value(QLatin1String("collectionName")).toString();
        if (sameArtist(entry) && !collection.isEmpty() && collection.compare(album, Qt::CaseInsensitive) == 0) {
            holder = entry;
            return &holder;
        }
    }
    for (const QJsonValue &value : results) {
        if (!value.isObject())
            continue;
        const QJsonObject entry = value.toObject();
        if (sameArtist(entry)
            && entry.value(QLatin1String("collectionName")).toString().contains(album, Qt::CaseInsensitive)) {
            holder = entry;
            return &holder;
        }
    }
    return nullptr;
}

} // namespace

QString storeArtworkAddress(const QString &artist, const QString &album, const QJsonArray &results)
{
    if (artist.isEmpty() || album.isEmpty())
        return {};
    QJsonObject holder;
    const QJsonObject *entry = findEntry(artist, album, results, holder);
    if (!entry)
        return {};
    QString address = entry->value(QLatin1String("artworkUrl100")).toString();
    address.replace(QLatin1String("100x100"), QLatin1String("1000x1000"));
    return address;
}

QString storeArtworkAddressFromAnswer(const QString &artist, const QString &album, const QByteArray &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject())
        return {};
    const QJsonArray results = document.object().value(QLatin1String("results")).toArray();
    if (results.isEmpty())
        return {};
    return storeArtworkAddress(artist, album, results);
}

} // namespace TrackInfoText
