#pragma once

#include <QByteArray>
#include <QProcess>
#include <QTemporaryFile>

// A private session bus for one test process, optionally with a gnome-keyring daemon on it
// that serves the Secret Service, its login keyring made and unlocked with a known password.
// The keyring files land in the test's temporary XDG_DATA_HOME. Everything started here ends
// with the object.
class KeyringSession
{
public:
    static constexpr char kPassword[] = "keyring-test-password";

    KeyringSession() = default;
    ~KeyringSession();

    // libsecret keeps its first session bus for the life of the process, so a process can
    // stand up one session only: CTest runs each case in a process of its own.
    static bool usedInThisProcess();

    // Starts the bus and points DBUS_SESSION_BUS_ADDRESS at it; false with a message when
    // dbus-daemon is missing or silent.
    bool startBus(QString *error);
    // Starts the keyring daemon on that bus and waits until it serves the Secret Service.
    bool startKeyring(QString *error);
    // Locks every collection of the keyring, as the screen lock does.
    bool lockKeyring(QString *error);

    QByteArray busAddress() const { return address_; }

private:
    QTemporaryFile configuration_;
    QProcess bus_;
    QProcess keyring_;
    QByteArray address_;
};
