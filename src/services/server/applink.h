#pragma once

#include <QObject>
#include <QPointer>
#include <QUrl>

class QNetworkAccessManager;
class QNetworkReply;
class ServerMessagesUi;

// Follows an address through its redirects and, when it ends at the store, hands the store's
// address (with the affiliate token, scheme "itms") to the desktop's handler for that scheme.
// Anywhere else it stops quietly. Lives on the thread that made it; destroying it cancels a
// request still running.
class AppLink : public QObject
{
    Q_OBJECT
public:
    explicit AppLink(ServerMessagesUi &ui, QObject *parent = nullptr);
    ~AppLink() override;

    // False for an empty or invalid address; otherwise the request is under way.
    bool openURLAddress(const QString &address);
    bool isRunning() const;

signals:
    // The request ended; "opened" tells whether the store was asked to show the address.
    void finished(bool opened);

private:
    void didComplete(QNetworkReply *reply);

    ServerMessagesUi &ui_;
    QNetworkAccessManager *manager_ = nullptr;
    QPointer<QNetworkReply> contentURLSessionDataTask_;
};

// The store's address for the desktop: the affiliate token added as "at" (when one is
// configured) and the scheme set to "itms".
QUrl storeAddressForDesktop(const QUrl &address);
