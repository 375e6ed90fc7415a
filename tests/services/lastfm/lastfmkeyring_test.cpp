// The session key in a real gnome-keyring on a private bus, stored by orvane-cli and used by
// the scrobbler as the desktop program makes it; and a session with no Secret Service at all.
#include "services/lastfm/lastfmwebscrobbler.h"

#include "../keychain/keyringsession.h"
#include "additions/appcontext.h"
#include "lastfmserver.h"

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <gtest/gtest.h>

namespace {

constexpr int kGuardMs = 60000;

struct CliRun
{
    int exitCode = -1;
    QByteArray out, err;
};

// orvane-cli with the given arguments; "connect" gets its Enter once it has printed the address.
CliRun cli(const QStringList &arguments)
{
    QProcess process;
    process.start(ORVANE_CLI_PATH, QStringList{"--offline", "lastfm"} + arguments);
    CliRun run;
    if (!process.waitForStarted(kGuardMs))
        return run;
    if (arguments.value(0) == "connect") {
        while (!process.canReadLine() && process.state() == QProcess::Running)
            process.waitForReadyRead(kGuardMs);
        run.out = process.readLine();
        process.write("\n");
    }
    process.closeWriteChannel();
    process.waitForFinished(kGuardMs);
    run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out += process.readAllStandardOutput();
    run.err = process.readAllStandardError();
    return run;
}

// The status object, compact with its keys in order.
QByteArray status()
{
    const CliRun run = cli({"status"});
    EXPECT_EQ(run.exitCode, 0) << run.err.constData();
    return QJsonDocument(QJsonDocument::fromJson(run.out).object()).toJson(QJsonDocument::Compact);
}

LastFMWebScrobbler::Environment onTheSessionKeyring()
{
    LastFMWebScrobbler::Environment environment;
    environment.keychain = std::make_shared<SecretServiceKeychain>();
    return environment;
}

} // namespace

TEST(LastFMKeyringTest, ConnectStoresTheSessionThatTheScrobblerUsesUntilTheServiceEndsIt)
{
    if (KeyringSession::usedInThisProcess())
        GTEST_SKIP() << "one keyring session per process: run the cases one by one (as CTest does)";
    KeyringSession session;
    QString error;
    ASSERT_TRUE(session.startBus(&error) && session.startKeyring(&error)) << error.toStdString();
    LastFmServer server;

    const CliRun connected = cli({"connect", "--user", "listener"});
    EXPECT_EQ(connected.exitCode, 0) << connected.err.constData();
    EXPECT_EQ(connected.out.trimmed(), (server.http.baseUrl() + "/api/auth/?api_key=" + LastFmServer::kApiKey
                                        + "&token=" + LastFmServer::kToken).toUtf8());
    EXPECT_EQ(status(), R"({"sessionKey":true,"state":1,"userName":"listener"})");

    // The scrobbler finds the key in the keyring and signs with it; the service's code 9
    // ends the session, in the keyring too.
    {
        LastFMWebScrobbler scrobbler(onTheSessionKeyring());
        EXPECT_EQ(scrobbler.yourScrobbleState(), LastFMWebScrobbler::Connected);
        server.respond("track.love", LastFmServer::failed(9, "Invalid session key"));
        scrobbler.loveTrackWithName("Song", "Artist");
        EXPECT_EQ(server.calls("track.love").value(0).parameters.value("sk"), LastFmServer::kSessionKey);
        EXPECT_EQ(scrobbler.yourScrobbleState(), LastFMWebScrobbler::AuthorisationNeeded);
    }
    EXPECT_EQ(status(), R"({"sessionKey":false,"state":2,"userName":"listener"})");

    // A refused consent: no session, and the reason on standard error.
    server.respond("auth.getSession", LastFmServer::failed(14, "Unauthorized Token - This token has not been authorized"));
    const CliRun refused = cli({"connect"});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_TRUE(refused.err.contains("auth.getSession: 14 | Unauthorized Token")) << refused.err.constData();

    server.respond("auth.getSession", LastFmServer::xml(QByteArray("<lfm status=\"ok\"><session><key>")
                                                        + LastFmServer::kSessionKey + "</key></session></lfm>"));
    ASSERT_EQ(cli({"connect"}).exitCode, 0);
    EXPECT_EQ(cli({"disconnect"}).exitCode, 0);
    EXPECT_EQ(status(), R"({"sessionKey":false,"state":2,"userName":"listener"})");
    EXPECT_EQ(cli({"fly"}).exitCode, 2);
}

TEST(LastFMKeyringTest, WithoutSecretServiceTheScrobblerHasNoSessionWithinFiveSeconds)
{
    if (KeyringSession::usedInThisProcess())
        GTEST_SKIP() << "one keyring session per process: run the cases one by one (as CTest does)";
    KeyringSession session;
    QString error;
    ASSERT_TRUE(session.startBus(&error)) << error.toStdString();
    LastFmServer server;

    QElapsedTimer clock;
    clock.start();
    LastFMWebScrobbler scrobbler(onTheSessionKeyring());
    EXPECT_FALSE(scrobbler.isSessionKeyValid());
    EXPECT_LT(clock.elapsed(), 5000);
    // The session still holds for this run; only storing it fails.
    scrobbler.fetchAuthToken();
    EXPECT_TRUE(scrobbler.fetchNewSessionKey());
    EXPECT_EQ(scrobbler.yourScrobbleState(), LastFMWebScrobbler::Connected);

    const CliRun connected = cli({"connect"});
    EXPECT_EQ(connected.exitCode, 1);
    EXPECT_TRUE(connected.err.contains("keyring")) << connected.err.constData();
}
