#include "additions/ovurlconnection.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>
#include <QThread>
#include <QThreadStorage>

#include <memory>

namespace {

// A manager belongs to the thread that made it. On the application's thread the application
// object owns it and deletes it with itself (a QObject cannot be deleted safely once the
// application is gone); on any other thread the storage deletes it when that thread ends.
struct ManagerHolder
{
    QPointer<QNetworkAccessManager> manager;
    ~ManagerHolder()
    {
        if (manager && !manager->parent())
            delete manager.data();
    }
};

QNetworkAccessManager &threadManager()
{
    static QThreadStorage<ManagerHolder *> managers;
    if (!managers.hasLocalData())
        managers.setLocalData(new ManagerHolder);
    ManagerHolder *holder = managers.localData();
    if (!holder->manager) {
        QCoreApplication *application = QCoreApplication::instance();
        const bool applicationThread = application && application->thread() == QThread::currentThread();
        holder->manager = new QNetworkAccessManager(applicationThread ? application : nullptr);
    }
    return *holder->manager;
}

// Qt reports an HTTP error status as an error of the reply; the status is not ours to judge,
// so an answer that arrived with one still counts. Transport failures, timeouts and aborts don't.
bool isStatusOnlyError(const QNetworkReply &reply)
{
    const int code = reply.error();
    const bool statusError = (code >= QNetworkReply::ContentAccessDenied && code <= QNetworkReply::UnknownContentError)
                             || (code >= QNetworkReply::InternalServerError && code <= QNetworkReply::UnknownServerError);
    return statusError && reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid();
}

} // namespace

QByteArray OVURLConnection::sendSynchronousRequest(const QNetworkRequest &request, const QByteArray &verb,
                                                   const QByteArray &body)
{
    contentData_.clear();
    if (request.url().isEmpty() || !request.url().isValid())
        return {};

    QNetworkAccessManager &manager = threadManager();
    std::unique_ptr<QNetworkReply> reply(body.isEmpty() ? manager.sendCustomRequest(request, verb)
                                                        : manager.sendCustomRequest(request, verb, body));
    if (!reply)
        return {};
    if (!reply->isFinished()) {
        QEventLoop loop;
        QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
        loop.exec();
        // Only the reply ends the wait, except that an application that quits ends every loop of
        // the main thread: the request is given up then.
        if (!reply->isFinished())
            reply->abort();
    }
    if (reply->error() == QNetworkReply::NoError || isStatusOnlyError(*reply))
        contentData_ = reply->readAll();
    return contentData_;
}

QByteArray OVURLConnection::sendSynchronousRequestWith(const QNetworkRequest &request, const QByteArray &verb,
                                                       const QByteArray &body)
{
    OVURLConnection connection;
    return connection.sendSynchronousRequest(request, verb, body);
}

QByteArray ov_sendSynchronousRequest(const QNetworkRequest &request, const QByteArray &verb, const QByteArray &body)
{
    return OVURLConnection::sendSynchronousRequestWith(request, verb, body);
}

void ov_abandonReply(QNetworkReply *reply, const QObject *receiver)
{
    if (!reply)
        return;
    reply->disconnect(receiver);
    reply->abort();
    reply->deleteLater();
}
