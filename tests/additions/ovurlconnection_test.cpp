#include "additions/ovurlconnection.h"

#include "localhttpserver.h"

#include <QElapsedTimer>
#include <QThread>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

QNetworkRequest requestTo(const LocalHttpServer &server, const QString &path, int timeoutMs = 0)
{
    QNetworkRequest request(QUrl(server.baseUrl() + path));
    if (timeoutMs > 0)
        request.setTransferTimeout(timeoutMs);
    return request;
}

} // namespace

TEST(OVURLConnection, GivesTheBodyOrNone)
{
    LocalHttpServer server;
    server.respond("/body", ScriptedResponse::text("hello"));
    server.respond("/empty", ScriptedResponse::text(""));
    ScriptedResponse missing = ScriptedResponse::text("the error page");
    missing.status = 404;
    server.respond("/missing", missing);

    EXPECT_EQ(ov_sendSynchronousRequest(requestTo(server, "/body")), "hello");
    EXPECT_TRUE(ov_sendSynchronousRequest(requestTo(server, "/empty")).isEmpty());
    // The status is not looked at: an error page is an answer.
    EXPECT_EQ(ov_sendSynchronousRequest(requestTo(server, "/missing")), "the error page");
    EXPECT_TRUE(ov_sendSynchronousRequest(QNetworkRequest()).isEmpty());
    const QNetworkRequest refused(QUrl(QStringLiteral("http://127.0.0.1:%1/").arg(LocalHttpServer::closedPort())));
    EXPECT_TRUE(ov_sendSynchronousRequest(refused).isEmpty());

    OVURLConnection connection;
    QNetworkRequest post = requestTo(server, "/body");
    post.setHeader(QNetworkRequest::ContentTypeHeader, "application/x-www-form-urlencoded");
    EXPECT_EQ(connection.sendSynchronousRequest(post, "POST", "a=1&b=2"), "hello");
    EXPECT_EQ(connection.contentData(), "hello");
    EXPECT_EQ(server.requests().last().method, "POST");
    EXPECT_EQ(server.requests().last().body, "a=1&b=2");
    connection.sendSynchronousRequest(requestTo(server, "/empty"));
    EXPECT_TRUE(connection.contentData().isEmpty());
}

TEST(OVURLConnection, TimersOfTheWaitingThreadFireDuringTheWait)
{
    LocalHttpServer server;
    ScriptedResponse slow = ScriptedResponse::text("late");
    slow.delayMs = 400;
    server.respond("/slow", slow);

    bool fired = false;
    bool answeredBeforeTimer = false;
    QByteArray answer;
    QTimer::singleShot(50, [&] {
        fired = true;
        answeredBeforeTimer = !answer.isEmpty();
    });
    answer = ov_sendSynchronousRequest(requestTo(server, "/slow"));
    EXPECT_TRUE(fired);
    EXPECT_FALSE(answeredBeforeTimer);
    EXPECT_EQ(answer, "late");
}

TEST(OVURLConnection, OnlyTheRequestsOwnTimeoutEndsTheWait)
{
    LocalHttpServer server;
    server.respond("/never", ScriptedResponse::silent());
    ScriptedResponse late = ScriptedResponse::text("worth the wait");
    late.delayMs = 1500;
    server.respond("/late", late);

    // No timeout of its own: a slow answer still arrives.
    EXPECT_EQ(ov_sendSynchronousRequest(requestTo(server, "/late")), "worth the wait");

    constexpr int limitMs = 1000;
    QElapsedTimer clock;
    clock.start();
    EXPECT_TRUE(ov_sendSynchronousRequest(requestTo(server, "/never", limitMs)).isEmpty());
    // Qt's coarse timers may fire up to 5 % early; an upper bound would only measure the machine.
    EXPECT_GE(clock.elapsed(), limitMs * 95 / 100);
    EXPECT_TRUE(waitUntil([&] { return server.abandonedConnections() == 1; }));
}

TEST(OVURLConnection, WorksOnWorkerThreadsEachWithItsOwnManager)
{
    LocalHttpServer server;
    ScriptedResponse slow = ScriptedResponse::text("from a worker");
    slow.delayMs = 200;
    server.respond("/work", slow);

    QByteArray first, second;
    bool workerTimerFired = false;
    std::unique_ptr<QThread> one(QThread::create([&] {
        QTimer timer;
        timer.setSingleShot(true);
        QObject::connect(&timer, &QTimer::timeout, [&] { workerTimerFired = true; });
        timer.start(20);
        first = ov_sendSynchronousRequest(requestTo(server, "/work"));
    }));
    std::unique_ptr<QThread> two(QThread::create([&] { second = ov_sendSynchronousRequest(requestTo(server, "/work")); }));
    one->start();
    two->start();
    ASSERT_TRUE(waitUntil([&] { return one->isFinished() && two->isFinished(); }));
    EXPECT_EQ(first, "from a worker");
    EXPECT_EQ(second, "from a worker");
    EXPECT_TRUE(workerTimerFired);
    // The main thread still has its own.
    EXPECT_EQ(ov_sendSynchronousRequest(requestTo(server, "/work")), "from a worker");
}
