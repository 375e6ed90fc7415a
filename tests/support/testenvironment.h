#pragma once

#include <QString>
#include <QTemporaryDir>

#include <memory>

// The environment variables of every web service's address (see Configuration), and the closed
// loopback address that TestEnvironment gives them all.
const QList<QByteArray> &webServiceVariables();
QByteArray unreachableServiceAddress();

// A private home for one test: HOME, XDG_CONFIG_HOME, XDG_DATA_HOME, XDG_CACHE_HOME,
// XDG_MUSIC_DIR's parent and XDG_RUNTIME_DIR (mode 0700) point into a fresh temporary folder for
// the lifetime of the object, and back to the previous values afterwards. Every web service
// points at a closed port on 127.0.0.1 meanwhile. The test main makes
// one for the whole process, so no test ever touches the real user's folders.
class TestEnvironment
{
public:
    TestEnvironment();
    ~TestEnvironment();
    TestEnvironment(const TestEnvironment &) = delete;
    TestEnvironment &operator=(const TestEnvironment &) = delete;

    QString root() const;
    QString home() const;
    QString configHome() const; // XDG_CONFIG_HOME
    QString dataHome() const;   // XDG_DATA_HOME
    QString cacheHome() const;  // XDG_CACHE_HOME
    QString runtimeDir() const; // XDG_RUNTIME_DIR

    // A new folder below the root, made with its parents.
    QString makeFolder(const QString &relativePath) const;

private:
    std::unique_ptr<QTemporaryDir> dir_;
    QList<QPair<QByteArray, QByteArray>> saved_;
};

// Gives every test case of the executable a fresh TestEnvironment and a fresh AppContext,
// installed on the application object, from before the fixture is made until after it is gone,
// so that no case sees what an earlier one left behind when the executable runs whole. Called
// by the test mains after the application object exists.
void useFreshEnvironmentPerTest();

// The folder of the source tree, for test data shipped with it.
QString sourceDirectory();
