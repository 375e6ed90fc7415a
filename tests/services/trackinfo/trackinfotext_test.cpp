#include "services/trackinfo/trackinfotext.h"
#include "services/trackinfo/trackinfowindowpreferences.h"

#include <QFile>
#include <QJsonDocument>
#include <QUrlQuery>

#include <gtest/gtest.h>

using namespace TrackInfoText;

TEST(TrackInfoText, PositionFormats)
{
    EXPECT_EQ(playerPositionDescription(65.7), "01:05");
    EXPECT_EQ(playerPositionDescription(3600.0), "60:00");
    EXPECT_EQ(playerPositionDescription(3600.5), "> 1 h");
    EXPECT_EQ(playerPositionDescription(5400.0), "> 1 h");
    EXPECT_EQ(playerPositionDescription(3600.0 * 999.9), "> 999 h");
    EXPECT_TRUE(playerPositionDescription(3600001.0).isEmpty());
    EXPECT_TRUE(playerPositionDescription(0).isEmpty());
    EXPECT_TRUE(playerPositionDescription(-3).isEmpty());
    EXPECT_TRUE(playerPositionDescription(std::nan("")).isEmpty());
}

TEST(TrackInfoText, StoreSearchAndMatching)
{
    qputenv("ORVANE_STORE_BASE_URL", "http://127.0.0.1:4711");
    const QUrl url = storeSearchUrl(QStringLiteral("AC/DC"), QStringLiteral("Back in Black & Blue"));
    EXPECT_EQ(url.path(), "/search");
    EXPECT_EQ(url.query(QUrl::FullyEncoded), "term=AC%2FDC+Back+in+Black+%26+Blue&entity=album");
    EXPECT_FALSE(storeSearchUrl(QStringLiteral("Artist"), QString()).isValid());
    EXPECT_FALSE(storeSearchUrl(QString(), QStringLiteral("Album")).isValid());

    const QByteArray answer = R"json({"results": [
        7,
        {"artistName": "Other", "collectionName": "Blue", "artworkUrl100": "http://x/other/100x100bb.jpg"},
        {"artistName": "the band", "collectionName": "Blue (Deluxe Edition)", "artworkUrl100": "http://x/deluxe/100x100bb.jpg"},
        {"artistName": "THE BAND", "collectionName": "blue", "artworkUrl100": "http://x/plain/100x100bb.jpg"}
    ]})json";
    // The exact album wins over an earlier extended one; the artist's case doesn't matter.
    EXPECT_EQ(storeArtworkAddressFromAnswer(QStringLiteral("The Band"), QStringLiteral("Blue"), answer),
              "http://x/plain/1000x1000bb.jpg");
    // The plain title finds the extended one, but not the other way about.
    EXPECT_EQ(storeArtworkAddressFromAnswer(QStringLiteral("The Band"), QStringLiteral("deluxe"), answer),
              "http://x/deluxe/1000x1000bb.jpg");
    EXPECT_TRUE(storeArtworkAddressFromAnswer(QStringLiteral("The Band"), QStringLiteral("Blue (Deluxe Edition) 2"),
                                              answer).isEmpty());
    // The same album by another artist never matches; the artist must match in full.
    EXPECT_TRUE(storeArtworkAddressFromAnswer(QStringLiteral("Band"), QStringLiteral("Blue"), answer).isEmpty());
    EXPECT_TRUE(storeArtworkAddressFromAnswer(QStringLiteral("The Band"), QString(), answer).isEmpty());
    EXPECT_TRUE(storeArtworkAddressFromAnswer(QStringLiteral("The Band"), QStringLiteral("Blue"), "[1,2]").isEmpty());
    EXPECT_TRUE(storeArtworkAddressFromAnswer(QStringLiteral("The Band"), QStringLiteral("Blue"),
                                              R"({"results": []})").isEmpty());
}

TEST(TrackInfoWindowPreferences, DefaultsAndSavedValues)
{
    TrackInfoWindowPreferences preferences;
    EXPECT_EQ(preferences.prefDisplayTime(), 5);
    EXPECT_EQ(preferences.prefTextInfoC(), 3);
    EXPECT_DOUBLE_EQ(preferences.prefFadeTimeIn, 0.3);
    preferences.setPrefDisplayTime(0);
    preferences.saveUserPreferences();
    ASSERT_TRUE(QFile::exists(preferences.preferencesLocation()));
    EXPECT_EQ(TrackInfoWindowPreferences().prefDisplayTime(), 0);

    // A damaged file starts over from the defaults.
    QFile file(preferences.preferencesLocation());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("not a property list");
    file.close();
    EXPECT_EQ(TrackInfoWindowPreferences().prefDisplayTime(), 5);
}
