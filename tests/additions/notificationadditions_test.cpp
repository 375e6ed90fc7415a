#include "additions/appcontext.h"
#include "qtprinting.h"

#include "additions/notificationadditions.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

// Collects the notifications of one name delivered to the main thread.
struct Observer
{
    explicit Observer(const QString &name)
    {
        appContext()->notificationCenter().observe(
            name, &context, [this](const OVNotification &n) { received.append(n); });
    }

    bool waitFor(qsizetype count)
    {
        QDeadlineTimer deadline(60000); // a guard against a hang
        while (received.size() < count && !deadline.hasExpired())
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        return received.size() >= count;
    }

    QObject context;
    QList<OVNotification> received;
};

} // namespace

TEST(NotificationAdditions, PostingDeliversLaterWithSenderAndUserInfo)
{
    Observer observer("Test.Update");
    QTimer sender;
    EXPECT_FALSE(ov_postNotificationWithName(&sender, ""));
    ASSERT_TRUE(ov_postNotificationWithName(&sender, "Test.Update", {{"state", QStringLiteral("Playing")}}));
    ASSERT_TRUE(ov_postNotificationWithName(&sender, "Test.Other"));
    EXPECT_TRUE(observer.received.isEmpty());

    ASSERT_TRUE(observer.waitFor(1));
    const OVNotification &notification = observer.received.first();
    EXPECT_EQ(notification.ov_objectForClass<QTimer>(), &sender);
    EXPECT_EQ(notification.ov_objectForClass(QObject::staticMetaObject), &sender);
    EXPECT_EQ(notification.ov_objectForClass(QThread::staticMetaObject), nullptr);
    EXPECT_EQ(notification.ov_userInfoObjectForKey("state", ValueClass::Text), QStringLiteral("Playing"));
    EXPECT_FALSE(notification.ov_userInfoObjectForKey("state", ValueClass::Number).isValid());
    QCoreApplication::processEvents();
    EXPECT_EQ(observer.received.size(), 1);
}

TEST(NotificationAdditions, WorkerThreadsPostToTheMainThreadAndGoneSendersReadAsNull)
{
    Observer observer("Test.Worker");
    auto *sender = new QObject;
    std::unique_ptr<QThread> worker(QThread::create([sender] {
        ov_postNotificationWithName(sender, "Test.Worker", {{"n", 1}});
    }));
    worker->start();
    worker->wait();
    delete sender;
    ASSERT_TRUE(observer.waitFor(1));
    EXPECT_EQ(observer.received.first().userInfo.value("n"), 1);
    EXPECT_EQ(observer.received.first().ov_objectForClass(QObject::staticMetaObject), nullptr);
}
