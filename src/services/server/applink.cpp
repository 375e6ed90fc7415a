#include "services/server/applink.h"

#include "additions/configuration.h"
#include "services/server/servermessagesui.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QUrlQuery>

AppLink::AppLink(ServerMessagesUi &ui, QObject *parent)
    : QObject(parent), ui_(ui), manager_(new QNetworkAccessManager(this))
{
}

AppLink::~AppLink()
{
    if (QNetworkReply *running = contentURLSessionDataTask_.data()) {
        contentURLSessionDataTask_ = nullptr;
        running->disconnect(this);
        running->abort();
    }
}

bool AppLink::openURLAddress(const QString &address)
{
    const QUrl url(address, QUrl::StrictMode);
    if (address.isEmpty() || !url.isValid() || url.scheme().isEmpty() || url.host().isEmpty())
        return false;
    QNetworkReply *reply = manager_->get(QNetworkRequest(url));
    contentURLSessionDataTask_ = reply;
    connect(reply, &QNetworkReply::finished, this, [this, reply] { didComplete(reply); });
    return true;
}

void AppLink::didComplete(QNetworkReply *reply)
{
    if (reply != contentURLSessionDataTask_)
        return;
    contentURLSessionDataTask_ = nullptr;
    // Where the redirects ended. A failed request never gets to the store, so it needs no
    // test of its own.
    const QUrl ended = reply->url();
    reply->deleteLater();
    const QString storeHost = Configuration::text(QString::fromLatin1(Configuration::StoreHost));
    const bool atStore = !storeHost.isEmpty() && ended.toString().contains(storeHost, Qt::CaseInsensitive);
    if (atStore)
        ui_.openURL(storeAddressForDesktop(ended), false);
    emit finished(atStore);
}

bool AppLink::isRunning() const
{
    return !contentURLSessionDataTask_.isNull();
}

QUrl storeAddressForDesktop(const QUrl &address)
{
    QUrl url = address;
    const QString token = Configuration::text(QString::fromLatin1(Configuration::AffiliateToken));
    if (!token.isEmpty()) {
        QUrlQuery query(url);
        query.addQueryItem(QStringLiteral("at"), token);
        url.setQuery(query);
    }
    url.setScheme(QStringLiteral("itms"));
    return url;
}
