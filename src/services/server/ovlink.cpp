#include "services/server/ovlink.h"

#include "additions/configuration.h"
#include "additions/ovurlconnection.h"
#include "additions/textsearch.h"
#include "services/server/applink.h"
#include "services/server/servermessagesui.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkRequest>

namespace {
constexpr int kSearchTimeoutMs = 3000;
}

QUrl OVLink::iTMSsearchAddressForArtist(const QString &artist)
{
    const QString term = artist.trimmed();
    if (term.isEmpty())
        return {};
    QString plus = term;
    plus.replace(QLatin1Char(' '), QLatin1Char('+'));
    const QByteArray address = Configuration::baseURL(Configuration::StoreBaseURL).toUtf8() + "/search?term="
                               + QUrl::toPercentEncoding(plus, "+")
                               + "&media=music&attribute=artistTerm&entity=musicArtist";
    return QUrl::fromEncoded(address, QUrl::StrictMode);
}

QUrl OVLink::iTMSfindWebAddressForArtist(const QString &artist, const QByteArray &answer)
{
    const QJsonDocument document = QJsonDocument::fromJson(answer);
    if (!document.isObject() || document.object().isEmpty())
        return {};
    for (const QJsonValue &item : document.object().value(QStringLiteral("results")).toArray()) {
        const QJsonObject info = item.toObject();
        if (info.isEmpty() || !isEqualIgnoringCase(info.value(QStringLiteral("artistName")).toString(), artist))
            continue;
        QString address = info.value(QStringLiteral("artistLinkUrl")).toString();
        if (address.isEmpty())
            address = info.value(QStringLiteral("artistViewUrl")).toString();
        return QUrl(address);
    }
    return {};
}

bool OVLink::openStoreForArtist(const QString &artist)
{
    const QUrl search = iTMSsearchAddressForArtist(artist);
    if (!search.isValid() || search.isEmpty())
        return false;
    QNetworkRequest request(search);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setTransferTimeout(kSearchTimeoutMs);
    const QUrl page = iTMSfindWebAddressForArtist(artist, ov_sendSynchronousRequest(request));
    if (page.isEmpty() || !page.isValid())
        return false;
    ui_.openURL(storeAddressForDesktop(page), true);
    return true;
}
