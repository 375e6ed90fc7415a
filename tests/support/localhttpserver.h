#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QMutex>
#include <QObject>
#include <QPair>
#include <QString>
#include <QUrlQuery>

#include <functional>
#include <memory>

class QThread;

// One request as the server received it.
struct RecordedRequest
{
    QByteArray method;
    QByteArray target; // path and query exactly as sent, percent escapes and all
    QList<QPair<QByteArray, QByteArray>> headers;
    QByteArray body;

    QString path() const;
    // The query's raw text (after "?"), and its items decoded as UTF-8.
    QByteArray rawQuery() const;
    QUrlQuery query() const;
    QByteArray header(const QByteArray &name) const;
};

// What the server answers to a path.
struct ScriptedResponse
{
    int status = 200;
    QByteArray body;
    QByteArray contentType = "text/plain; charset=utf-8";
    QList<QPair<QByteArray, QByteArray>> headers;
    int delayMs = 0;          // the answer starts this late
    bool neverAnswer = false; // the connection stays open and silent until the client gives up

    static ScriptedResponse text(const QByteArray &body, const QByteArray &contentType = "text/plain; charset=utf-8");
    static ScriptedResponse redirect(const QString &location, int status = 302);
    static ScriptedResponse silent();
};

// A small HTTP/1.1 server on 127.0.0.1 and a free port for tests of web services: scripted
// answers per path, delays, a mode that never answers, and a record of every request. It runs
// on a thread of its own, so it answers while the test's thread is blocked in a synchronous
// request or waits for another thread. Paths without a scripted answer get 404. Every method
// may be called from the test's thread at any time.
class LocalHttpServer
{
public:
    LocalHttpServer();
    ~LocalHttpServer();
    LocalHttpServer(const LocalHttpServer &) = delete;
    LocalHttpServer &operator=(const LocalHttpServer &) = delete;

    quint16 port() const { return port_; }
    // "http://127.0.0.1:PORT", no trailing slash, as the configuration's base URLs are written.
    QString baseUrl() const;
    // "127.0.0.1:PORT"
    QString hostAndPort() const;

    // The answer for a path (without the query); an empty path sets the answer to all others.
    void respond(const QString &path, const ScriptedResponse &response);
    // An answer made per request, for servers whose answer depends on what was asked. The
    // handler runs on the server's thread; it takes precedence over respond() for that path.
    using Handler = std::function<ScriptedResponse(const RecordedRequest &request)>;
    void handle(const QString &path, Handler handler);

    QList<RecordedRequest> requests() const;
    qsizetype requestCount() const;
    // Connections that the client closed before it had an answer.
    int abandonedConnections() const;

    // A port on 127.0.0.1 that nothing listens on, for a server that cannot be reached.
    static quint16 closedPort();

private:
    friend class LocalHttpServerWorker;
    ScriptedResponse responseFor(const RecordedRequest &request) const;
    void record(const RecordedRequest &request);
    void noteAbandoned();

    mutable QMutex mutex_;
    QHash<QString, ScriptedResponse> responses_;
    QHash<QString, Handler> handlers_;
    ScriptedResponse fallback_;
    bool hasFallback_ = false;
    QList<RecordedRequest> requests_;
    int abandoned_ = 0;
    quint16 port_ = 0;
    std::unique_ptr<QThread> thread_;
    QObject *worker_ = nullptr;
};

// Turns the calling thread's event loop until the condition holds; the deadline is only a guard
// against a hang, generous enough for a busy machine. False when it passed.
bool waitUntil(const std::function<bool()> &condition, int guardMs = 30000);
