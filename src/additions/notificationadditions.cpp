#include "additions/notificationadditions.h"

#include "additions/appcontext.h"

#include <QCoreApplication>

QObject *OVNotification::ov_objectForClass(const QMetaObject &metaObject) const
{
    QObject *sender = object.data();
    return sender && sender->metaObject()->inherits(&metaObject) ? sender : nullptr;
}

QVariant OVNotification::ov_userInfoObjectForKey(const QString &key, ValueClass valueClass) const
{
    return ov_objectForKey(userInfo, key, valueClass);
}

bool OVNotification::ov_post() const
{
    // Queued on the centre's thread (the main thread) rather than the caller's: a worker thread
    // may never turn an event loop of its own, and the observers live on the main thread.
    AppContext *context = appContext();
    if (!context)
        return false;
    OVNotificationCenter *center = &context->notificationCenter();
    const OVNotification notification = *this;
    return QMetaObject::invokeMethod(
        center, [center, notification] { center->deliver(notification); }, Qt::QueuedConnection);
}

OVNotificationCenter::OVNotificationCenter()
{
    qRegisterMetaType<OVNotification>();
    if (QCoreApplication *application = QCoreApplication::instance())
        moveToThread(application->thread());
}

QMetaObject::Connection OVNotificationCenter::observe(
    const QString &name, const QObject *context, std::function<void(const OVNotification &)> handler)
{
    return connect(this, &OVNotificationCenter::notificationPosted, context,
                   [name, handler = std::move(handler)](const OVNotification &notification) {
                       if (notification.name == name)
                           handler(notification);
                   });
}

void OVNotificationCenter::deliver(const OVNotification &notification)
{
    emit notificationPosted(notification);
}

bool ov_postNotificationWithName(QObject *sender, const QString &name)
{
    return ov_postNotificationWithName(sender, name, {});
}

bool ov_postNotificationWithName(QObject *sender, const QString &name, const QVariantMap &userInfo)
{
    if (name.isEmpty())
        return false;
    return OVNotification{name, sender, userInfo}.ov_post();
}
