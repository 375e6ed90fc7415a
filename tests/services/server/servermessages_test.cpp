#include "services/server/applink.h"
#include "services/server/ovlink.h"
#include "services/server/servermessages.h"

#include "additions/ovapplication.h"
#include "localhttpserver.h"
#include "serverfakes.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QThread>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

const QByteArray kStopDocument = "<Orvane status=\"OK\"><Launch><Run>false</Run><Title>Stop</Title>"
                                 "<Message>Please update</Message><URL>http://example.test/new</URL></Launch></Orvane>";

class ServerMessagesTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        qputenv("ORVANE_SERVER_BASE_URL", server.baseUrl().toUtf8());
        QFile::remove(cache);
    }
    void serve(const QByteArray &document) { server.respond("/3/request.php", ScriptedResponse::text(document)); }
    // The Info folder holds the cache file at most: no temporary file is left behind.
    QStringList infoFolder() const
    {
        return QDir(OVApplication::ov_applicationInfoURL()).entryList(QDir::Files | QDir::Hidden);
    }

    LocalHttpServer server;
    RecordingServerUi ui;
    ServerMessages messages{ui};
    const QString cache = ServerMessages::cachePath();
};

} // namespace

TEST_F(ServerMessagesTest, DownloadCachesOnlyAnAcceptedDocument)
{
    const QByteArray accepted = "<Orvane status=\"OK\"><Update><Version>1.0</Version></Update></Orvane>";
    serve(accepted);
    EXPECT_EQ(messages.checkRequestDownload(), ServerDownload::Cached);
    EXPECT_EQ(readFile(cache), accepted);
    const RecordedRequest request = server.requests().last();
    EXPECT_EQ(request.method, "GET");
    EXPECT_EQ(request.path(), "/3/request.php");
    EXPECT_EQ(request.query().queryItemValue("v"), OVApplication::ov_version());
    EXPECT_EQ(request.query().queryItemValue("a"), "1");
    EXPECT_EQ(request.query().queryItemValue("o"), "1");

    struct Row { const char *what; QByteArray body; ServerDownload expected; };
    QByteArray big = "<Orvane status=\"OK\"><FunctionPool>";
    while (big.size() < 10 * 1024 * 1024)
        big += "<Function><ID>1</ID><Run>true</Run><Message>a message of some length</Message></Function>";
    big += "</FunctionPool></Orvane>";
    QByteArray garbage(10 * 1024 * 1024, '\0');
    for (qsizetype i = 0; i < garbage.size(); ++i)
        garbage[i] = char((i * 7919 + 13) % 251);
    const Row rows[] = {
        {"no OK", "<Orvane status=\"Closed\"/>", ServerDownload::Refused},
        {"HTML", "<!DOCTYPE html><html lang=\"en\"><body>Maintenance</body></html>", ServerDownload::Refused},
        {"empty body", "", ServerDownload::Failed},
        {"binary garbage", garbage, ServerDownload::Failed},
        {"10 MB document", big, ServerDownload::Cached},
    };
    for (const Row &row : rows) {
        writeFile(cache, accepted);
        serve(row.body);
        EXPECT_EQ(messages.checkRequestDownload(), row.expected) << row.what;
        // A reachable server replaces or removes the cached document.
        EXPECT_EQ(readFile(cache), row.expected == ServerDownload::Cached ? row.body : QByteArray()) << row.what;
        EXPECT_LE(infoFolder().size(), 1) << row.what << infoFolder().join(", ").toStdString();
    }
    // A reachable host whose server is down.
    writeFile(cache, accepted);
    qputenv("ORVANE_SERVER_BASE_URL", QByteArray("http://127.0.0.1:") + QByteArray::number(LocalHttpServer::closedPort()));
    EXPECT_EQ(messages.checkRequestDownload(), ServerDownload::Failed);
    EXPECT_FALSE(QFile::exists(cache));
}

TEST_F(ServerMessagesTest, UnreachableServerLeavesTheOldDocumentWhichStillStopsTheProgram)
{
    writeFile(cache, kStopDocument);
    QString askedFor;
    messages.setHostProbe([&](const QString &host) {
        askedFor = host;
        return false;
    });
    EXPECT_EQ(messages.checkRequestDownload(), ServerDownload::Failed);
    EXPECT_EQ(askedFor, "127.0.0.1");
    EXPECT_EQ(server.requestCount(), 0);
    EXPECT_EQ(readFile(cache), kStopDocument);

    EXPECT_EQ(messages.checkApplicationLaunch(), ServerLaunch::Stop);
    EXPECT_EQ(ui.alerts, QStringList{"Stop|Please update|0002.0001"});
    EXPECT_EQ(ui.openedURLs(), QList<QUrl>{QUrl("http://example.test/new")});
}

TEST_F(ServerMessagesTest, LaunchCheckStopsOnlyForAnIntactFalseRun)
{
    EXPECT_EQ(messages.checkApplicationLaunch(), ServerLaunch::Run); // no document

    writeFile(cache, "<Orvane status=\"OK\"><Launch><Title>t</Title></Launch></Orvane>");
    EXPECT_EQ(messages.checkApplicationLaunch(), ServerLaunch::Run);
    writeFile(cache, "<Orvane status=\"OK\"><Launch><Run/><URL>ftp://example.test/</URL></Launch></Orvane>");
    EXPECT_EQ(messages.checkApplicationLaunch(), ServerLaunch::Stop);
    EXPECT_EQ(ui.alerts.size(), 1);
    EXPECT_TRUE(ui.openedURLs().isEmpty()); // not an http address

    writeFile(cache, QByteArray("\x1f\x8b\x08\x00 not a document", 19));
    EXPECT_EQ(messages.checkApplicationLaunch(), ServerLaunch::Unreadable);
    EXPECT_FALSE(QFile::exists(cache)); // damaged: dropped, and the program goes on
    EXPECT_EQ(ui.alerts.size(), 1);
}

TEST_F(ServerMessagesTest, UpdateAlertOpensTheAddressWhicheverButtonIsChosen)
{
    // The settings tree follows the version, and so does the cached document's place.
    QCoreApplication::setApplicationVersion("3.9");
    const QString cache = ServerMessages::cachePath();
    const auto announce = [&](const QByteArray &version) {
        writeFile(cache, "<Orvane status=\"OK\"><Update><Version>" + version
                             + "</Version><Title>Orvane " + version + "</Title><Message>Get it</Message>"
                               "<URL>https://example.test/download</URL></Update></Orvane>");
    };
    announce("3.9");
    EXPECT_EQ(messages.checkApplicationUpdate(), ServerUpdate::None);
    EXPECT_TRUE(ui.alerts.isEmpty());

    announce("3.10");
    ui.answer = 1; // the second button
    EXPECT_EQ(messages.checkApplicationUpdate(), ServerUpdate::Announced);
    EXPECT_EQ(ui.alerts, QStringList{"Orvane 3.10|Get it|0002.0001,0002.0002"});
    EXPECT_EQ(ui.openedURLs(), QList<QUrl>{QUrl("https://example.test/download")});

    writeFile(cache, "\x01\x02\x03");
    EXPECT_EQ(messages.checkApplicationUpdate(), ServerUpdate::Unreadable);
    QCoreApplication::setApplicationVersion(QString());
}

TEST_F(ServerMessagesTest, WebsiteAddresses)
{
    messages.openWebsite({}, WebsiteOption::Help);
    messages.openWebsite({}, WebsiteOption::None);
    messages.openWebsite("https://www.last.fm/user/someone", WebsiteOption::LastFmUser);
    const QList<QUrl> opened = ui.openedURLs();
    ASSERT_EQ(opened.size(), 3);
    EXPECT_EQ(opened[0].path(), "/3/link.php");
    EXPECT_EQ(QUrlQuery(opened[0]).queryItemValue("a"), "3");
    EXPECT_EQ(QUrlQuery(opened[0]).queryItemValue("o"), "0");
    EXPECT_EQ(QUrlQuery(opened[0]).queryItemValue("l"), "English");
    EXPECT_FALSE(QUrlQuery(opened[1]).hasQueryItem("a"));
    EXPECT_EQ(opened[2], QUrl("https://www.last.fm/user/someone"));
}

TEST_F(ServerMessagesTest, AffiliateLinkOpensOnlyAnAddressThatEndsAtTheStore)
{
    LocalHttpServer store;
    store.respond("", ScriptedResponse::text("store page"));
    qputenv("ORVANE_STORE_HOST", store.hostAndPort().toUtf8());
    qputenv("ORVANE_AFFILIATE_TOKEN", "token1");
    server.respond("/index.php", ScriptedResponse::redirect(store.baseUrl() + "/app/orvane?mt=8"));

    messages.setAffiliateDelay(0.01);
    messages.openAffLinkWithOption(AffiliateOption::PlayerAlreadyRunning);
    ASSERT_TRUE(waitUntil([&] { return !ui.openedURLs().isEmpty(); }));
    EXPECT_EQ(server.requests().last().query().queryItemValue("o"), "2");
    EXPECT_FALSE(server.requests().last().query().hasQueryItem("a"));
    const QUrl opened = ui.openedURLs().first();
    EXPECT_EQ(opened.scheme(), "itms");
    EXPECT_EQ(opened.path(), "/app/orvane");
    EXPECT_EQ(QUrlQuery(opened).queryItemValue("mt"), "8");
    EXPECT_EQ(QUrlQuery(opened).queryItemValue("at"), "token1");

    // Elsewhere: the link stops quietly.
    LocalHttpServer elsewhere;
    elsewhere.respond("", ScriptedResponse::text("not the store"));
    server.respond("/index.php", ScriptedResponse::redirect(elsewhere.baseUrl() + "/app/orvane"));
    AppLink link(ui);
    bool done = false, openedThere = true;
    QObject::connect(&link, &AppLink::finished, [&](bool opened) { done = true; openedThere = opened; });
    ASSERT_TRUE(link.openURLAddress(server.baseUrl() + "/index.php"));
    ASSERT_TRUE(waitUntil([&] { return done; }));
    EXPECT_FALSE(openedThere);
    EXPECT_EQ(elsewhere.requestCount(), 1);
    EXPECT_EQ(ui.openedURLs().size(), 1);
    EXPECT_FALSE(link.openURLAddress(""));
    EXPECT_FALSE(link.openURLAddress("not an address"));

    // Destroyed while its request runs: the request is cancelled.
    server.respond("/index.php", ScriptedResponse::silent());
    {
        AppLink waiting(ui);
        ASSERT_TRUE(waiting.openURLAddress(server.baseUrl() + "/index.php"));
        ASSERT_TRUE(waitUntil([&] { return server.requests().size() == 3; }));
    }
    EXPECT_TRUE(waitUntil([&] { return server.abandonedConnections() == 1; }));
    qunsetenv("ORVANE_STORE_HOST");
    qunsetenv("ORVANE_AFFILIATE_TOKEN");
}

TEST_F(ServerMessagesTest, StoreForArtistFromAWorkerThread)
{
    LocalHttpServer store;
    store.respond("/search", ScriptedResponse::text(
                                 R"({"resultCount":1,"results":[{"artistName":"Nina Simone","artistLinkUrl":"https://store.test/artist/nina-simone/1"}]})",
                                 "application/json"));
    qputenv("ORVANE_STORE_BASE_URL", store.baseUrl().toUtf8());
    bool opened = false, missing = true;
    std::unique_ptr<QThread> worker(QThread::create([&] {
        opened = OVLink(ui).openStoreForArtist("nina simone");
        missing = OVLink(ui).openStoreForArtist("Someone Else");
    }));
    worker->start();
    ASSERT_TRUE(waitUntil([&] { return worker->isFinished(); }));
    EXPECT_TRUE(opened);
    EXPECT_FALSE(missing);
    EXPECT_EQ(store.requests().first().query().queryItemValue("term"), "nina+simone");
    EXPECT_EQ(store.requests().first().query().queryItemValue("entity"), "musicArtist");
    EXPECT_EQ(ui.openedURLs(), QList<QUrl>{QUrl("itms://store.test/artist/nina-simone/1")});
}

TEST(Relaunch, TheHelperStartsTheProgramOnceTheOldProcessHasEnded)
{
    QTemporaryDir folder;
    const QString marker = folder.filePath("started");
    QProcess old;
    old.start("sleep", {"0.5"});
    ASSERT_TRUE(old.waitForStarted());
    const QString pid = QString::number(old.processId());
    // The new program notes whether the old process was still there when it started.
    ASSERT_TRUE(startRelaunchHelper(old.processId(), "/bin/sh",
                                    {"-c", "if kill -0 " + pid + " 2>/dev/null; then echo early; else echo after; fi > " + marker}));
    ASSERT_TRUE(old.waitForFinished(30000));
    ASSERT_TRUE(waitUntil([&] { return QFile::exists(marker) && QFile(marker).size() > 0; }));
    EXPECT_EQ(readFile(marker).trimmed(), "after");
}
