#pragma once

#include "additions/collectionadditions.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QVariantMap>

#include <functional>

// A named notification with its sender and user information.
struct OVNotification
{
    QString name;
    QPointer<QObject> object; // null once the sender is gone
    QVariantMap userInfo;

    // The sender if it is of that class (or derives from it).
    QObject *ov_objectForClass(const QMetaObject &metaObject) const;
    template <class T> T *ov_objectForClass() const { return qobject_cast<T *>(object.data()); }
    QVariant ov_userInfoObjectForKey(const QString &key, ValueClass valueClass) const;

    // Queues the notification on the centre of the installed AppContext: it is delivered when
    // the main thread's event loop next gets to its queued work, never during this call. False
    // without a context.
    bool ov_post() const;
};

Q_DECLARE_METATYPE(OVNotification)

// Where notifications posted by name arrive. Observers connect with observe(); delivery to an
// observer happens in the observer's (the context's) thread. Lives on the main thread; the
// program's one centre is owned by the AppContext.
class OVNotificationCenter : public QObject
{
    Q_OBJECT

public:
    OVNotificationCenter();

    // Calls the handler for every notification of that name while the context lives.
    QMetaObject::Connection observe(const QString &name, const QObject *context,
                                    std::function<void(const OVNotification &)> handler);

    // Delivers at once; the posting helpers below queue instead.
    void deliver(const OVNotification &notification);

signals:
    void notificationPosted(const OVNotification &notification);
};

// False for an empty name; otherwise queues a notification with the sender as its object.
bool ov_postNotificationWithName(QObject *sender, const QString &name);
bool ov_postNotificationWithName(QObject *sender, const QString &name, const QVariantMap &userInfo);
