// The wire form alone: signing, the body, and what replies say.
#include "services/lastfm/lastfmcall.h"

#include <QCryptographicHash>

#include <gtest/gtest.h>

TEST(LastFMCallTest, SignsRawValuesInKeyOrderAndEscapesOnlyTheBody)
{
    const LastFMParameters parameters{{"album[0]", "Album"},
                                      {"albumArtist[0]", "Guns & Roses"},
                                      {"track[0]", "Rock&Roll = 1+1 ü"},
                                      {"method", "track.scrobble"}};
    // Upper case sorts before "[": albumArtist[0] is signed before album[0].
    const QByteArray raw = "albumArtist[0]Guns & Rosesalbum[0]Albummethodtrack.scrobbletrack[0]Rock&Roll = 1+1 ü"
                           "secret";
    EXPECT_EQ(LastFMCall::signature(parameters, "secret"),
              QString::fromLatin1(QCryptographicHash::hash(raw, QCryptographicHash::Md5).toHex()));
    EXPECT_EQ(LastFMCall::body(parameters),
              "albumArtist[0]=Guns%20%26%20Roses&album[0]=Album&method=track.scrobble"
              "&track[0]=Rock%26Roll%20%3D%201%2B1%20%C3%BC");
}

TEST(LastFMCallTest, ReadsStatusErrorAndValuesOfReplies)
{
    struct Row
    {
        const char *what;
        QByteArray bytes;
        bool parsed, ok;
        qint64 code;
        std::optional<QString> errorText, token;
    };
    const Row rows[] = {
        {"token", "<?xml version=\"1.0\"?><lfm status=\"ok\"><token>abc</token></lfm>", true, true, 0, {}, "abc"},
        {"error", "<lfm status=\"failed\"><error code=\"9\">Invalid session key</error></lfm>", true, false, 9,
         "Invalid session key", {}},
        {"ok wins over error", "<lfm status=\"ok\"><error code=\"9\">x</error></lfm>", true, true, 0, {}, {}},
        {"status is case-sensitive", "<lfm status=\"OK\"><token>t</token></lfm>", true, false, 0, {}, "t"},
        {"error without code", "<lfm status=\"failed\"><error>Oops</error></lfm>", true, false, 0, {}, {}},
        {"code with trailing text", "<lfm status=\"failed\"><error code=\"26 \">Suspended</error></lfm>", true,
         false, 26, "Suspended", {}},
        {"broken markup repaired", "<lfm status=\"ok\"><token>abc</token>", true, true, 0, {}, "abc"},
        {"empty", "", false, false, 0, {}, {}},
        {"no markup", "Service Unavailable", false, false, 0, {}, {}},
    };
    for (const Row &row : rows) {
        const std::optional<LastFMReply> reply = LastFMReply::parse(row.bytes);
        ASSERT_EQ(reply.has_value(), row.parsed) << row.what;
        if (!reply)
            continue;
        EXPECT_EQ(reply->isRequestXmlOk(), row.ok) << row.what;
        EXPECT_EQ(reply->errorCode(), row.code) << row.what;
        EXPECT_EQ(reply->errorText(), row.errorText) << row.what;
        EXPECT_EQ(reply->text("token"), row.token) << row.what;
    }
    const auto session = LastFMReply::parse("<lfm status=\"ok\"><session><name>n</name><key>k</key></session></lfm>");
    EXPECT_EQ(session->text("session/key"), "k");
}
