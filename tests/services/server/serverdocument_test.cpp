#include "services/server/ovlink.h"
#include "services/server/serverdocument.h"

#include "additions/ovurlconnection.h"
#include "localhttpserver.h"

#include <gtest/gtest.h>

namespace {
const ServerQueryValues kFrench{"3.9", "391", QStringLiteral("Français"), "12.0.0"};
}

TEST(ServerDocument, EachEndpointCarriesItsKeysInItsEncoding)
{
    EXPECT_EQ(serverRequestAddress("http://h", kFrench),
              "http://h/3/request.php?v=3.9&b=391&l=Fran%E7ais&s=12.0.0&a=1&o=1");
    EXPECT_EQ(serverLinkAddress("http://h", kFrench, WebsiteOption::Feedback),
              "http://h/3/link.php?s=12.0.0&v=3.9&b=391&l=Fran%C3%A7ais&a=2&o=0");
    EXPECT_EQ(serverLinkAddress("http://h", kFrench, WebsiteOption::None), "http://h/3/link.php?s=12.0.0&v=3.9&b=391&l=Fran%C3%A7ais");
    EXPECT_EQ(serverAffiliateAddress("http://h", kFrench, AffiliateOption::PlayerStartedInOrganizeMode),
              "http://h/index.php?v=3.9&b=391&l=Fran%C3%A7ais&s=12.0.0&o=3");
    ServerQueryValues noSystem = kFrench;
    noSystem.system.clear();
    EXPECT_EQ(serverRequestAddress("http://h", noSystem), "http://h/3/request.php?v=3.9&b=391&l=Fran%E7ais&a=1&o=1");

    // The Latin 1 escape reaches the server as it was built.
    LocalHttpServer server;
    ov_sendSynchronousRequest(QNetworkRequest(QUrl(serverRequestAddress(server.baseUrl(), kFrench))));
    ASSERT_EQ(server.requestCount(), 1);
    EXPECT_EQ(server.requests().first().target, "/3/request.php?v=3.9&b=391&l=Fran%E7ais&s=12.0.0&a=1&o=1");
}

TEST(ServerDocument, OnlyADocumentWhoseRootSaysOKIsAccepted)
{
    EXPECT_EQ(serverDocumentState("<Orvane status=\"OK\"/>"), ServerDocumentState::Accepted);
    EXPECT_EQ(serverDocumentState("<Orvane x=\"1\" status=\"OK\"/>"), ServerDocumentState::Refused);
    EXPECT_EQ(serverDocumentState("<Orvane status=\"Error\"/>"), ServerDocumentState::Refused);
    EXPECT_EQ(serverDocumentState("<Orvane/>"), ServerDocumentState::Refused);
    EXPECT_EQ(serverDocumentState("<!DOCTYPE html><html lang=\"en\"><body><p>Oops</body></html>"),
              ServerDocumentState::Refused);
    EXPECT_EQ(serverDocumentState(QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\xff\xfe", 18)),
              ServerDocumentState::Unreadable);
    EXPECT_EQ(serverDocumentState(""), ServerDocumentState::Unreadable);
    // Damaged but tidied: still a root that says OK.
    EXPECT_EQ(serverDocumentState("<Orvane status=\"OK\"><Launch><Run>yes</Launch>"), ServerDocumentState::Accepted);
}

TEST(ServerDocument, LaunchRunDecides)
{
    const auto launch = [](const QByteArray &inner) {
        return evaluateLaunch("<Orvane status=\"OK\"><Launch>" + inner + "</Launch></Orvane>");
    };
    EXPECT_EQ(launch("").result, ServerLaunch::Run);
    EXPECT_EQ(launch("<Run>true</Run>").result, ServerLaunch::Run);
    EXPECT_EQ(launch("<Run>YES</Run>").result, ServerLaunch::Run);
    EXPECT_EQ(launch("<Run>1</Run>").result, ServerLaunch::Run);
    EXPECT_EQ(launch("<Run></Run>").result, ServerLaunch::Stop);
    EXPECT_EQ(launch("<Run>no</Run>").result, ServerLaunch::Stop);
    const LaunchDecision stop =
        launch("<Run>false</Run><Title>Stop</Title><Message>Too old</Message><URL> HTTPS://x/new </URL>");
    EXPECT_EQ(stop.result, ServerLaunch::Stop);
    EXPECT_EQ(stop.alert.title, "Stop");
    EXPECT_EQ(stop.alert.message, "Too old");
    EXPECT_TRUE(stop.alert.opensURL());
    EXPECT_FALSE(launch("<Run>0</Run><URL>ftp://x/</URL>").alert.opensURL());
    EXPECT_EQ(evaluateLaunch("garbage \x01\x02").result, ServerLaunch::Unreadable);
}

TEST(ServerDocument, UpdateComparesVersionsByTheirNumbers)
{
    const auto update = [](const QByteArray &announced, const QString &running) {
        return evaluateUpdate("<Orvane status=\"OK\"><Update><Version>" + announced
                                  + "</Version><Title>New</Title><URL>http://x/</URL></Update></Orvane>",
                              running)
            .result;
    };
    EXPECT_EQ(update("3.10", "3.9"), ServerUpdate::Announced);
    EXPECT_EQ(update("3.9", "3.9"), ServerUpdate::None);
    EXPECT_EQ(update("3.9", "3.10"), ServerUpdate::None);
    EXPECT_EQ(update("4.0.1", "4.0"), ServerUpdate::Announced);
    EXPECT_EQ(evaluateUpdate("<Orvane status=\"OK\"/>", "3.9").result, ServerUpdate::None);
    EXPECT_EQ(evaluateUpdate("\xff\xfe\x00", "3.9").result, ServerUpdate::Unreadable);
}

TEST(OVLink, FindsTheArtistsPageInTheSearchAnswer)
{
    qputenv("ORVANE_STORE_BASE_URL", "http://store.test");
    EXPECT_EQ(OVLink::iTMSsearchAddressForArtist("Simon & Garfunkel").toEncoded(),
              "http://store.test/search?term=Simon+%26+Garfunkel&media=music&attribute=artistTerm&entity=musicArtist");
    EXPECT_TRUE(OVLink::iTMSsearchAddressForArtist("  ").isEmpty());

    const QByteArray answer = R"({"resultCount":3,"results":[
        {"artistName":"Air Supply","artistLinkUrl":"https://store.test/artist/1"},
        {"artistName":"AIR","artistLinkUrl":"","artistViewUrl":"https://store.test/artist/2"},
        {"artistName":"air","artistLinkUrl":"https://store.test/artist/3"}]})";
    EXPECT_EQ(OVLink::iTMSfindWebAddressForArtist("Air", answer), QUrl("https://store.test/artist/2"));
    EXPECT_TRUE(OVLink::iTMSfindWebAddressForArtist("Nobody", answer).isEmpty());
    EXPECT_TRUE(OVLink::iTMSfindWebAddressForArtist("Air", R"({"results":[]})").isEmpty());
    EXPECT_TRUE(OVLink::iTMSfindWebAddressForArtist("Air", "<html>").isEmpty());
    EXPECT_TRUE(OVLink::iTMSfindWebAddressForArtist("Air", "[1,2]").isEmpty());
}
