#include "player/mpris/mpriscaller.h"

#include <QDBusMessage>

MprisCaller::MprisCaller(QDBusConnection bus) : bus_(std::move(bus)) {}

QVariantList MprisCaller::call(const QString &service, const QString &path,
                               const QString &interface, const QString &method,
                               const QVariantList &arguments) const
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    const QDBusMessage reply = bus_.call(message, QDBus::Block, timeout_);
    if (reply.type() != QDBusMessage::ReplyMessage)
        throw BridgeFailure(bridgeError(QDBusError(reply)));
    return reply.arguments();
}

QVariantList MprisCaller::callBus(const QString &method, const QVariantList &arguments) const
{
    return call(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                QStringLiteral("org.freedesktop.DBus"), method, arguments);
}

BridgeError bridgeError(const QDBusError &error)
{
    // D-Bus errors carry a name but no number; the code sorts them the bridge's way.
    int code = 0;
    switch (error.type()) {
    case QDBusError::ServiceUnknown:
    case QDBusError::Disconnected:
        code = kBridgeErrorNotRunning;
        break;
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
        code = kBridgeErrorTimeout;
        break;
    case QDBusError::UnknownMethod:
    case QDBusError::UnknownProperty:
    case QDBusError::UnknownInterface:
    case QDBusError::NotSupported:
        code = kBridgeErrorUnsupported;
        break;
    default:
        break;
    }
    const QString name = error.name().isEmpty() ? QStringLiteral("org.freedesktop.DBus.Error.Failed")
                                                : error.name();
    return BridgeError{name, code, error.message()};
}
