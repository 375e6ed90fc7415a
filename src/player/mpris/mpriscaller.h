#pragma once

#include "player/remoteobject.h"

#include <QDBusConnection>
#include <QDBusError>

#include <atomic>

// Blocking D-Bus calls with a deadline, from any thread. A call that fails throws
// BridgeFailure whose domain is the D-Bus error name, so a handle tells its delegate.
class MprisCaller
{
public:
    static constexpr int kDefaultTimeoutMilliseconds = 3000;

    explicit MprisCaller(QDBusConnection bus);

    const QDBusConnection &bus() const { return bus_; }
    void setTimeout(int milliseconds) { timeout_ = milliseconds; }
    int timeout() const { return timeout_; }

    QVariantList call(const QString &service, const QString &path, const QString &interface,
                      const QString &method, const QVariantList &arguments = {}) const;
    // A call to the bus itself (org.freedesktop.DBus).
    QVariantList callBus(const QString &method, const QVariantList &arguments = {}) const;

private:
    QDBusConnection bus_;
    std::atomic<int> timeout_{kDefaultTimeoutMilliseconds};
};

BridgeError bridgeError(const QDBusError &error);
