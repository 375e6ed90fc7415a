#include "keyringsession.h"

#include "localhttpserver.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>

#include <dlfcn.h>

namespace {

constexpr int kGuardMs = 30000;
bool sessionStarted = false;

// No <servicedir>: the standard session bus would start a keyring daemon, or a password
// prompt, on demand, and nothing may answer here but what the test starts.
const char kBusConfiguration[] = R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen><auth>EXTERNAL</auth>
  <policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/>
  <allow own="*"/></policy></busconfig>
)";

// GLib's shared session connection (libsecret's) raises SIGTERM in the process when its bus
// goes away, as a test's bus does at the end. GLib's headers are not installed, so the switch
// is reached through the loaded library; the reference is kept, or the connection would go.
void keepProcessWhenBusCloses()
{
    void *gio = dlopen("libgio-2.0.so.0", RTLD_NOW | RTLD_GLOBAL);
    const auto getBus = reinterpret_cast<void *(*)(int, void *, void **)>(gio ? dlsym(gio, "g_bus_get_sync") : nullptr);
    const auto setExitOnClose =
        reinterpret_cast<void (*)(void *, int)>(gio ? dlsym(gio, "g_dbus_connection_set_exit_on_close") : nullptr);
    constexpr int kSessionBus = 2; // G_BUS_TYPE_SESSION
    if (void *connection = getBus && setExitOnClose ? getBus(kSessionBus, nullptr, nullptr) : nullptr)
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

} // namespace

bool KeyringSession::usedInThisProcess()
{
    return sessionStarted;
}

KeyringSession::~KeyringSession()
{
    stop(keyring_);
    QDBusConnection::disconnectFromBus(QStringLiteral("keyring-session"));
    stop(bus_);
}

bool KeyringSession::startBus(QString *error)
{
    sessionStarted = true;
    configuration_.open();
    configuration_.write(kBusConfiguration);
    configuration_.flush();
    bus_.start(QStringLiteral("dbus-daemon"), {"--config-file=" + configuration_.fileName(), "--nofork", "--print-address"});
    while (!bus_.canReadLine()) {
        if (!bus_.waitForReadyRead(kGuardMs)) {
            *error = QStringLiteral("dbus-daemon printed no address: ") + bus_.errorString();
            return false;
        }
    }
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus_.readLine().trimmed());
    keepProcessWhenBusCloses();
    return true;
}

bool KeyringSession::startKeyring(QString *error)
{
    keyring_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    keyring_.start(QStringLiteral("gnome-keyring-daemon"), {"--foreground", "--unlock", "--components=secrets"});
    // --unlock reads the password up to the end of its input.
    keyring_.write("keyring-test-password");
    keyring_.closeWriteChannel();
    QDBusConnection bus =
        QDBusConnection::connectToBus(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("keyring-session"));
    const auto serving = [&] { return bus.interface()->isServiceRegistered(QStringLiteral("org.freedesktop.secrets")).value(); };
    if (!waitUntil([&] { return keyring_.state() == QProcess::NotRunning || serving(); }, kGuardMs) || !serving()) {
        *error = QStringLiteral("gnome-keyring-daemon does not serve the Secret Service: ") + keyring_.errorString();
        return false;
    }
    return true;
}
