#include "services/server/servermessages.h"

#include "localhttpserver.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <gtest/gtest.h>

namespace {

struct CliRun
{
    int exitCode = -1;
    QJsonObject results;
    QString errors;
};

CliRun serverCheck(const QStringList &options)
{
    QProcess cli;
    cli.start(QStringLiteral(ORVANE_CLI_PATH), options + QStringList{"server", "check"});
    EXPECT_TRUE(cli.waitForFinished(60000));
    return {cli.exitCode(), QJsonDocument::fromJson(cli.readAllStandardOutput()).object(),
            QString::fromUtf8(cli.readAllStandardError())};
}

} // namespace

TEST(ServerCommand, RefreshesAtStartUnlessOfflineAndPrintsTheThreeResults)
{
    LocalHttpServer server;
    qputenv("ORVANE_SERVER_BASE_URL", server.baseUrl().toUtf8());
    const QByteArray announcing = "<Orvane status=\"OK\"><Update><Version>999.1</Version><Title>Orvane 999.1</Title>"
                                  "<URL>https://example.test/get</URL></Update></Orvane>";
    server.respond("/3/request.php", ScriptedResponse::text(announcing));

    CliRun run = serverCheck({});
    EXPECT_EQ(run.exitCode, 0) << run.errors.toStdString();
    EXPECT_EQ(run.results, (QJsonObject{{"download", 1}, {"launch", 1}, {"update", 1}}));
    EXPECT_TRUE(run.errors.contains("Orvane 999.1")) << run.errors.toStdString();
    EXPECT_EQ(server.requestCount(), 1);

    // Offline: no request, the cached document as it stands.
    server.respond("/3/request.php", ScriptedResponse::text("<Orvane status=\"Closed\"/>"));
    run = serverCheck({"--offline"});
    EXPECT_EQ(run.results, (QJsonObject{{"download", QJsonValue()}, {"launch", 1}, {"update", 1}}));
    EXPECT_EQ(server.requestCount(), 1);

    // A refusing server: said so, the document is gone, and the command still answers.
    run = serverCheck({});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.results, (QJsonObject{{"download", 0}, {"launch", 1}, {"update", 0}}));
    EXPECT_TRUE(run.errors.contains("--offline")) << run.errors.toStdString();
    EXPECT_FALSE(QFile::exists(ServerMessages::cachePath()));
}
