#include "keyringsession.h"

#include "localhttpserver.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMetaType>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include <dlfcn.h>

namespace {

constexpr int kGuardMs = 30000;
const QString kConnectionName = QStringLiteral("keyring-session");
const QString kSecrets = QStringLiteral("org.freedesktop.secrets");

// A bus with no service activation: nothing answers on it but what a test starts itself (the
// standard session bus would start a keyring daemon, or a password prompt, on demand).
const char kBusConfiguration[] = R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=/tmp</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

// GLib's shared session connection (libsecret's) ends the process with SIGTERM when its bus
// goes away, which the bus of a test does at the end of the test. Its headers are not
// installed, so the one switch is reached through the loaded library.
void keepProcessWhenBusCloses()
{
    using GetBus = void *(*)(int busType, void *cancellable, void **error);
    using SetExitOnClose = void (*)(void *connection, int exitOnClose);
    void *gio = dlopen("libgio-2.0.so.0", RTLD_NOW | RTLD_GLOBAL);
    if (!gio)
        return;
    const auto getBus = reinterpret_cast<GetBus>(dlsym(gio, "g_bus_get_sync"));
    const auto setExitOnClose = reinterpret_cast<SetExitOnClose>(dlsym(gio, "g_dbus_connection_set_exit_on_close"));
    if (!getBus || !setExitOnClose)
        return;
    // The reference is kept: the shared connection lives only while someone holds it.
    constexpr int kSessionBus = 2; // G_BUS_TYPE_SESSION
    if (void *connection = getBus(kSessionBus, nullptr, nullptr))
        setExitOnClose(connection, 0);
}

void stop(QProcess &process)
{
    if (process.state() == QProcess::NotRunning)
        return;
    process.terminate();
    if (!process.waitForFinished(kGuardMs))
        process.kill();
    process.waitForFinished();
}

bool sessionStarted = false;

} // namespace

bool KeyringSession::usedInThisProcess()
{
    return sessionStarted;
}

KeyringSession::~KeyringSession()
{
    stop(keyring_);
    QDBusConnection::disconnectFromBus(kConnectionName);
    stop(bus_);
}

bool KeyringSession::startBus(QString *error)
{
    if (!configuration_.open()) {
        *error = QStringLiteral("no temporary file for the bus configuration");
        return false;
    }
    configuration_.write(kBusConfiguration);
    configuration_.flush();
    bus_.start(QStringLiteral("dbus-daemon"),
               {"--config-file=" + configuration_.fileName(), "--nofork", "--print-address"});
    if (!bus_.waitForStarted()) {
        *error = QStringLiteral("dbus-daemon did not start: ") + bus_.errorString();
        return false;
    }
    while (!bus_.canReadLine()) {
        if (!bus_.waitForReadyRead(kGuardMs)) {
            *error = QStringLiteral("dbus-daemon printed no address");
            return false;
        }
    }
    sessionStarted = true;
    address_ = bus_.readLine().trimmed();
    qputenv("DBUS_SESSION_BUS_ADDRESS", address_);
    keepProcessWhenBusCloses();
    return true;
}

bool KeyringSession::startKeyring(QString *error)
{
    keyring_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    keyring_.start(QStringLiteral("gnome-keyring-daemon"), {"--foreground", "--unlock", "--components=secrets"});
    if (!keyring_.waitForStarted()) {
        *error = QStringLiteral("gnome-keyring-daemon did not start: ") + keyring_.errorString();
        return false;
    }
    // --unlock reads the password up to the end of its input.
    keyring_.write(kPassword);
    keyring_.closeWriteChannel();
    QDBusConnection bus = QDBusConnection::connectToBus(QString::fromUtf8(address_), kConnectionName);
    const bool serving = waitUntil(
        [&] { return keyring_.state() == QProcess::NotRunning || bus.interface()->isServiceRegistered(kSecrets); },
        kGuardMs);
    if (!serving || keyring_.state() == QProcess::NotRunning) {
        *error = QStringLiteral("gnome-keyring-daemon does not serve the Secret Service");
        return false;
    }
    return true;
}

bool KeyringSession::lockKeyring(QString *error)
{
    QDBusConnection bus = QDBusConnection::connectToBus(QString::fromUtf8(address_), kConnectionName);
    QDBusMessage collections = QDBusMessage::createMethodCall(kSecrets, "/org/freedesktop/secrets",
                                                              "org.freedesktop.DBus.Properties", "Get");
    collections << QStringLiteral("org.freedesktop.Secret.Service") << QStringLiteral("Collections");
    const QDBusMessage found = bus.call(collections);
    if (found.type() != QDBusMessage::ReplyMessage) {
        *error = found.errorMessage();
        return false;
    }
    QDBusMessage lock = QDBusMessage::createMethodCall(kSecrets, "/org/freedesktop/secrets",
                                                       "org.freedesktop.Secret.Service", "Lock");
    const QDBusArgument paths = found.arguments().value(0).value<QDBusVariant>().variant().value<QDBusArgument>();
    lock << QVariant::fromValue(qdbus_cast<QList<QDBusObjectPath>>(paths));
    const QDBusMessage locked = bus.call(lock);
    if (locked.type() != QDBusMessage::ReplyMessage) {
        *error = locked.errorMessage();
        return false;
    }
    return true;
}
