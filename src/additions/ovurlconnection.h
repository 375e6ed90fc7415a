#pragma once

#include <QByteArray>
#include <QNetworkRequest>

class QNetworkReply;
class QObject;

// The one way the program fetches a web address and waits for the answer. The caller's thread
// keeps its event loop turning while it waits (a nested QEventLoop), so timers and queued calls
// of that thread run during the call: callers on the main thread must bear re-entry. The only
// limit is the request's own transfer timeout; nothing here adds one, nor any header. The status
// code is not looked at, so an error page's body counts as an answer. Any thread with a Qt
// thread object may call it (main, launch, pool worker); each gets a network manager of its own.
class OVURLConnection
{
public:
    // The body of the last answer; empty after a failure.
    const QByteArray &contentData() const { return contentData_; }

    // A request with no address, a transport error, a timeout and an empty body all give an
    // empty result. "verb" is the HTTP method; "body" is sent with it when not empty.
    QByteArray sendSynchronousRequest(const QNetworkRequest &request, const QByteArray &verb = "GET",
                                      const QByteArray &body = {});

    static QByteArray sendSynchronousRequestWith(const QNetworkRequest &request, const QByteArray &verb = "GET",
                                                 const QByteArray &body = {});

private:
    QByteArray contentData_;
};

// The name every caller uses: the body, or an empty array for none.
QByteArray ov_sendSynchronousRequest(const QNetworkRequest &request, const QByteArray &verb = "GET",
                                     const QByteArray &body = {});

// Gives up a running reply: the receiver hears nothing more of it, the transfer stops and the
// reply is deleted once control returns to the event loop. A null reply is left alone.
void ov_abandonReply(QNetworkReply *reply, const QObject *receiver);
