#include "testenvironment.h"

#include <QDir>
#include <QFile>

namespace {
const QList<QByteArray> kVariables = {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME",
                                      "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"};
}

TestEnvironment::TestEnvironment() : dir_(std::make_unique<QTemporaryDir>())
{
    for (const QByteArray &name : kVariables)
        saved_.append({name, qgetenv(name.constData())});
    QDir(root()).mkpath(QStringLiteral("home"));
    qputenv("HOME", home().toUtf8());
    qputenv("XDG_CONFIG_HOME", makeFolder(QStringLiteral("home/.config")).toUtf8());
    qputenv("XDG_DATA_HOME", makeFolder(QStringLiteral("home/.local/share")).toUtf8());
    qputenv("XDG_CACHE_HOME", makeFolder(QStringLiteral("home/.cache")).toUtf8());
    const QString runtime = makeFolder(QStringLiteral("runtime"));
    QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("XDG_RUNTIME_DIR", runtime.toUtf8());
}

TestEnvironment::~TestEnvironment()
{
    for (const auto &[name, value] : saved_) {
        if (value.isNull())
            qunsetenv(name.constData());
        else
            qputenv(name.constData(), value);
    }
}

QString TestEnvironment::root() const { return dir_->path(); }
QString TestEnvironment::home() const { return root() + QStringLiteral("/home"); }
QString TestEnvironment::configHome() const { return qEnvironmentVariable("XDG_CONFIG_HOME"); }
QString TestEnvironment::dataHome() const { return qEnvironmentVariable("XDG_DATA_HOME"); }
QString TestEnvironment::cacheHome() const { return qEnvironmentVariable("XDG_CACHE_HOME"); }
QString TestEnvironment::runtimeDir() const { return qEnvironmentVariable("XDG_RUNTIME_DIR"); }

QString TestEnvironment::makeFolder(const QString &relativePath) const
{
    const QString path = root() + QLatin1Char('/') + relativePath;
    QDir().mkpath(path);
    return path;
}

QString sourceDirectory()
{
    return qEnvironmentVariable("ORVANE_SOURCE_DIR");
}
