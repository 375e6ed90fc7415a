// The session key in a real gnome-keyring on a private bus, stored by orvane-cli and used by a
// scrobbler as the desktop program makes it; and a bus with no Secret Service at all.
#include "services/lastfm/lastfmwebscrobbler.h"

#include "../keychain/keyringsession.h"
#include "lastfmserver.h"

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <gtest/gtest.h>

namespace {

struct CliRun
{
    int exitCode = -1;
    QByteArray out, err;
};

// orvane-cli lastfm ...; "connect" gets its Enter once it has printed the address.
CliRun cli(const QStringList &arguments)
{
    QProcess process;
    process.start(ORVANE_CLI_PATH, QStringList{"--offline", "lastfm"} + arguments);
    CliRun run;
    while (arguments.value(0) == "connect" && !process.canReadLine() && process.waitForReadyRead(60000)) {
    }
    run.out = process.readLine();
    process.write("\n");
    process.closeWriteChannel();
    process.waitForFinished(60000);
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

class LastFMKeyringTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (KeyringSession::usedInThisProcess())
            GTEST_SKIP() << "one keyring session per process: run the cases one by one, as CTest does";
        ASSERT_TRUE(session.startBus(&error)) << error.toStdString();
        environment.keychain = std::make_shared<SecretServiceKeychain>();
    }
    KeyringSession session;
    QString error;
    LastFmServer server;
    LastFMWebScrobbler::Environment environment;
};

} // namespace

TEST_F(LastFMKeyringTest, ConnectStoresTheSessionThatTheScrobblerUsesUntilTheServiceEndsIt)
{
    ASSERT_TRUE(session.startKeyring(&error)) << error.toStdString();
    const CliRun connected = cli({"connect", "--user", "listener"});
    EXPECT_EQ(connected.exitCode, 0) << connected.err.constData();
    EXPECT_EQ(connected.out.trimmed(), (server.http.baseUrl() + "/api/auth/?api_key=" + LastFmServer::kApiKey
                                        + "&token=" + LastFmServer::kToken).toUtf8());
    EXPECT_EQ(status(), R"({"sessionKey":true,"state":1,"userName":"listener"})");
    {
        // The key from the keyring signs the calls; the service's code 9 ends the session there too.
        LastFMWebScrobbler scrobbler(environment);
        EXPECT_EQ(scrobbler.yourScrobbleState(), LastFMWebScrobbler::Connected);
        server.respond("track.love", LastFmServer::failed(9, "Invalid session key"));
        scrobbler.loveTrackWithName("Song", "Artist");
        EXPECT_EQ(server.calls("track.love").value(0).parameters.value("sk"), LastFmServer::kSessionKey);
    }
    EXPECT_EQ(status(), R"({"sessionKey":false,"state":2,"userName":"listener"})");

    server.respond("auth.getSession", LastFmServer::failed(14, "Unauthorized Token"));
    const CliRun refused = cli({"connect"});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_TRUE(refused.err.contains("auth.getSession: 14 | Unauthorized Token")) << refused.err.constData();
    server.respond("auth.getSession", LastFmServer::session(LastFmServer::kSessionKey));
    ASSERT_EQ(cli({"connect"}).exitCode, 0);
    EXPECT_EQ(cli({"disconnect"}).exitCode, 0);
    EXPECT_EQ(status(), R"({"sessionKey":false,"state":2,"userName":"listener"})");
    EXPECT_EQ(cli({"fly"}).exitCode, 2);
}

TEST_F(LastFMKeyringTest, WithoutSecretServiceTheScrobblerHasNoSessionWithinFiveSeconds)
{
    QElapsedTimer clock;
    clock.start();
    const KeychainStore::Answer answer = environment.keychain->read("Last.fm", "Orvane");
    EXPECT_EQ(answer.status, KeychainStatus::Unavailable) << answer.message.toStdString();
    LastFMWebScrobbler scrobbler(environment);
    EXPECT_FALSE(scrobbler.isSessionKeyValid());
    EXPECT_LT(clock.elapsed(), 5000);
    // The session still holds for this run; only storing it fails, which connect reports.
    scrobbler.fetchAuthToken();
    EXPECT_TRUE(scrobbler.fetchNewSessionKey());
    EXPECT_EQ(scrobbler.yourScrobbleState(), LastFMWebScrobbler::Connected);
    const CliRun connected = cli({"connect"});
    EXPECT_EQ(connected.exitCode, 1);
    EXPECT_TRUE(connected.err.contains("keyring")) << connected.err.constData();
}
