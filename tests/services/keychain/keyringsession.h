#pragma once

#include <QProcess>
#include <QTemporaryFile>

// A private session bus without service activation for one test process, optionally with a
// gnome-keyring daemon on it serving the Secret Service, its login keyring made and unlocked
// with a known password in the test's XDG_DATA_HOME. What it starts ends with it.
class KeyringSession
{
public:
    ~KeyringSession();
    // libsecret keeps its first bus for the life of the process, so a process stands up one
    // session only: CTest runs each case in a process of its own.
    static bool usedInThisProcess();
    // Points DBUS_SESSION_BUS_ADDRESS at a new bus; false with a message on failure.
    bool startBus(QString *error);
    bool startKeyring(QString *error);

private:
    QTemporaryFile configuration_;
    QProcess bus_;
    QProcess keyring_;
};
