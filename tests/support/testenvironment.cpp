#include "testenvironment.h"

#include "additions/appcontext.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace {
const QList<QByteArray> kVariables = {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME",
                                      "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"};
} // namespace

const QList<QByteArray> &webServiceVariables()
{
    static const QList<QByteArray> names = {
        "ORVANE_SERVER_BASE_URL",     "ORVANE_STORE_BASE_URL",       "ORVANE_LASTFM_BASE_URL",
        "ORVANE_LASTFM_AUTH_URL",     "ORVANE_LEO_LYRICS_BASE_URL",  "ORVANE_LYRIC_WIKI_BASE_URL",
        "ORVANE_CHART_LYRICS_BASE_URL", "ORVANE_COVER_PARADIES_BASE_URL", "ORVANE_RADIO_PLAYLIST_URL"};
    return names;
}

QByteArray unreachableServiceAddress()
{
    return QByteArrayLiteral("http://127.0.0.1:1");
}

TestEnvironment::TestEnvironment() : dir_(std::make_unique<QTemporaryDir>())
{
    for (const QByteArray &name : kVariables + webServiceVariables())
        saved_.append({name, qgetenv(name.constData())});
    // No test reaches beyond loopback: a service that a test does not stand up itself is a
    // closed port.
    for (const QByteArray &name : webServiceVariables())
        qputenv(name.constData(), unreachableServiceAddress());
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

namespace {

class FreshEnvironmentPerTest : public ::testing::EmptyTestEventListener
{
public:
    void OnTestStart(const ::testing::TestInfo &) override
    {
        environment_ = std::make_unique<TestEnvironment>();
        context_ = std::make_unique<AppContext>();
        context_->install();
    }
    void OnTestEnd(const ::testing::TestInfo &) override
    {
        // Queued calls of the finished case (deferred deletes, releases) run while its
        // context and folders still exist.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
        context_.reset();
        environment_.reset();
    }

private:
    std::unique_ptr<TestEnvironment> environment_;
    std::unique_ptr<AppContext> context_;
};

} // namespace

void useFreshEnvironmentPerTest()
{
    // GoogleTest owns the listener from here on.
    ::testing::UnitTest::GetInstance()->listeners().Append(new FreshEnvironmentPerTest);
}

QString sourceDirectory()
{
    return qEnvironmentVariable("ORVANE_SOURCE_DIR");
}
