#include "localhttpserver.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>
#include <QTimer>

QString RecordedRequest::path() const
{
    const qsizetype question = target.indexOf('?');
    return QString::fromUtf8(question < 0 ? target : target.left(question));
}

QByteArray RecordedRequest::rawQuery() const
{
    const qsizetype question = target.indexOf('?');
    return question < 0 ? QByteArray() : target.mid(question + 1);
}

QUrlQuery RecordedRequest::query() const
{
    return QUrlQuery(QString::fromUtf8(rawQuery()));
}

QByteArray RecordedRequest::header(const QByteArray &name) const
{
    for (const auto &[key, value] : headers)
        if (key.compare(name, Qt::CaseInsensitive) == 0)
            return value;
    return {};
}

ScriptedResponse ScriptedResponse::text(const QByteArray &body, const QByteArray &contentType)
{
    ScriptedResponse response;
    response.body = body;
    response.contentType = contentType;
    return response;
}

ScriptedResponse ScriptedResponse::redirect(const QString &location, int status)
{
    ScriptedResponse response;
    response.status = status;
    response.headers.append({"Location", location.toUtf8()});
    return response;
}

ScriptedResponse ScriptedResponse::silent()
{
    ScriptedResponse response;
    response.neverAnswer = true;
    return response;
}

// Lives on the server's thread: accepts connections, reads one request from each, answers it
// as scripted and closes.
class LocalHttpServerWorker : public QObject
{
public:
    explicit LocalHttpServerWorker(LocalHttpServer &owner) : owner_(owner) {}

    quint16 listen()
    {
        server_ = new QTcpServer(this);
        connect(server_, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket *socket = server_->nextPendingConnection())
                serve(socket);
        });
        return server_->listen(QHostAddress::LocalHost, 0) ? server_->serverPort() : 0;
    }

private:
    void serve(QTcpSocket *socket)
    {
        auto buffer = std::make_shared<QByteArray>();
        auto answered = std::make_shared<bool>(false);
        connect(socket, &QTcpSocket::readyRead, socket, [this, socket, buffer, answered] {
            buffer->append(socket->readAll());
            if (*answered)
                return;
            RecordedRequest request;
            if (!parse(*buffer, request))
                return;
            *answered = true;
            owner_.record(request);
            answer(socket, owner_.responseFor(request));
        });
        connect(socket, &QTcpSocket::disconnected, socket, [this, socket] {
            if (!socket->property("answerSent").toBool())
                owner_.noteAbandoned();
            socket->deleteLater();
        });
    }

    static bool parse(const QByteArray &buffer, RecordedRequest &request)
    {
        const qsizetype end = buffer.indexOf("\r\n\r\n");
        if (end < 0)
            return false;
        const QList<QByteArray> lines = buffer.left(end).split('\n');
        const QList<QByteArray> requestLine = lines.value(0).trimmed().split(' ');
        request.method = requestLine.value(0);
        request.target = requestLine.value(1);
        qsizetype length = 0;
        for (qsizetype i = 1; i < lines.size(); ++i) {
            const qsizetype colon = lines.at(i).indexOf(':');
            if (colon <= 0)
                continue;
            const QByteArray name = lines.at(i).left(colon).trimmed();
            const QByteArray value = lines.at(i).mid(colon + 1).trimmed();
            request.headers.append({name, value});
            if (name.compare("Content-Length", Qt::CaseInsensitive) == 0)
                length = value.toLongLong();
        }
        if (buffer.size() < end + 4 + length)
            return false;
        request.body = buffer.mid(end + 4, length);
        return true;
    }

    static void answer(QTcpSocket *socket, const ScriptedResponse &response)
    {
        if (response.neverAnswer)
            return;
        QPointer<QTcpSocket> target(socket);
        auto send = [target, response] {
            if (!target)
                return;
            QByteArray head = "HTTP/1.1 " + QByteArray::number(response.status) + " Scripted\r\n";
            head += "Content-Type: " + response.contentType + "\r\n";
            head += "Content-Length: " + QByteArray::number(response.body.size()) + "\r\n";
            head += "Connection: close\r\n";
            for (const auto &[name, value] : response.headers)
                head += name + ": " + value + "\r\n";
            target->setProperty("answerSent", true);
            target->write(head + "\r\n" + response.body);
            target->disconnectFromHost();
        };
        if (response.delayMs > 0)
            QTimer::singleShot(response.delayMs, socket, send);
        else
            send();
    }

    LocalHttpServer &owner_;
    QTcpServer *server_ = nullptr;
};

LocalHttpServer::LocalHttpServer() : thread_(std::make_unique<QThread>())
{
    auto *worker = new LocalHttpServerWorker(*this);
    worker_ = worker;
    worker->moveToThread(thread_.get());
    QObject::connect(thread_.get(), &QThread::finished, worker, &QObject::deleteLater);
    thread_->start();
    QMetaObject::invokeMethod(worker, [this, worker] { port_ = worker->listen(); }, Qt::BlockingQueuedConnection);
}

LocalHttpServer::~LocalHttpServer()
{
    thread_->quit();
    thread_->wait();
}

QString LocalHttpServer::baseUrl() const
{
    return QStringLiteral("http://") + hostAndPort();
}

QString LocalHttpServer::hostAndPort() const
{
    return QStringLiteral("127.0.0.1:%1").arg(port_);
}

void LocalHttpServer::respond(const QString &path, const ScriptedResponse &response)
{
    QMutexLocker lock(&mutex_);
    if (path.isEmpty()) {
        fallback_ = response;
        hasFallback_ = true;
    } else {
        responses_.insert(path, response);
    }
}

void LocalHttpServer::handle(const QString &path, Handler handler)
{
    QMutexLocker lock(&mutex_);
    handlers_.insert(path, std::move(handler));
}

ScriptedResponse LocalHttpServer::responseFor(const RecordedRequest &request) const
{
    const QString path = request.path();
    QMutexLocker lock(&mutex_);
    if (const Handler handler = handlers_.value(path)) {
        lock.unlock();
        return handler(request);
    }
    if (responses_.contains(path))
        return responses_.value(path);
    if (hasFallback_)
        return fallback_;
    ScriptedResponse missing = ScriptedResponse::text("not found");
    missing.status = 404;
    return missing;
}

void LocalHttpServer::record(const RecordedRequest &request)
{
    QMutexLocker lock(&mutex_);
    requests_.append(request);
}

void LocalHttpServer::noteAbandoned()
{
    QMutexLocker lock(&mutex_);
    ++abandoned_;
}

QList<RecordedRequest> LocalHttpServer::requests() const
{
    QMutexLocker lock(&mutex_);
    return requests_;
}

qsizetype LocalHttpServer::requestCount() const
{
    QMutexLocker lock(&mutex_);
    return requests_.size();
}

int LocalHttpServer::abandonedConnections() const
{
    QMutexLocker lock(&mutex_);
    return abandoned_;
}

quint16 LocalHttpServer::closedPort()
{
    // A port the system just handed out and took back: nothing else binds it so soon.
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    const quint16 port = probe.serverPort();
    probe.close();
    return port;
}

bool waitUntil(const std::function<bool()> &condition, int guardMs)
{
    const QDeadlineTimer deadline(guardMs);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::msleep(2);
    }
    return true;
}
