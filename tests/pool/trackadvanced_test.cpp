#include "player/memoryplayer.h"
#include "pool/trackadvanced.h"

#include <QImage>

#include <gtest/gtest.h>

namespace {

QImage pictureAt(int width, int height, int dotsPerInch)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::red);
    if (dotsPerInch > 0) {
        image.setDotsPerMeterX(qRound(dotsPerInch / 0.0254));
        image.setDotsPerMeterY(qRound(dotsPerInch / 0.0254));
    }
    return image;
}

class TrackAdvancedTest : public ::testing::Test
{
protected:
    MemoryPlayerPtr player = MemoryPlayer::create();
    MemoryObjectPtr object = player->addFileTrack(QStringLiteral("Song"), QStringLiteral("/music/Song.mp3"));
    ITunesTrackAdvanced advanced{player->handle<ITunesFileTrack>(object), 0, 1};
};

TEST_F(TrackAdvancedTest, OneArtworkHasNoBackMeasures)
{
    player->addArtwork(object, pictureAt(200, 100, 144));
    EXPECT_EQ(advanced.artworksCount(), 1);
    EXPECT_TRUE(advanced.artworkFront());
    EXPECT_FALSE(advanced.artworkBack());
    EXPECT_EQ(advanced.artworkBackHeight(), -1);
    EXPECT_EQ(advanced.artworkBackWidth(), -1);
    EXPECT_EQ(advanced.artworkBackDPI(), -1);
    // 144 dots per inch: the picture measures half its pixels in points.
    EXPECT_DOUBLE_EQ(advanced.artworkFrontWidth(), 100);
    EXPECT_DOUBLE_EQ(advanced.artworkFrontHeight(), 50);
    EXPECT_DOUBLE_EQ(advanced.artworkFrontDPI(), 144);
}

TEST_F(TrackAdvancedTest, ArtworkMeasuresOfPlainAndUnreadablePictures)
{
    player->addArtwork(object, pictureAt(300, 120, 0));
    MemoryObjectPtr broken = player->addArtwork(object, pictureAt(10, 10, 0));
    broken->setStored(Prop::rawData, QByteArray("not a picture"));
    advanced.setYourBackArtworkPosition(1);
    EXPECT_DOUBLE_EQ(advanced.artworkFrontWidth(), 300);
    EXPECT_DOUBLE_EQ(advanced.artworkFrontHeight(), 120);
    EXPECT_DOUBLE_EQ(advanced.artworkFrontDPI(), 72);
    EXPECT_TRUE(advanced.artworkBack());
    EXPECT_EQ(advanced.artworkBackWidth(), -1);
    advanced.setYourFrontArtworkPosition(-1);
    EXPECT_FALSE(advanced.artworkFront());
    EXPECT_EQ(advanced.artworkFrontDPI(), -1);
}

TEST_F(TrackAdvancedTest, LyricsParagraphsCountEveryLineBreak)
{
    const std::pair<QString, qint64> rows[] = {
        {"", 0}, {"one line", 1}, {"a\n\nb", 3}, {"a\n", 2}, {"a\r\nb", 3}, {QStringLiteral("a\u2028b"), 2},
    };
    for (const auto &[lyrics, count] : rows) {
        object->setStored(Prop::lyrics, lyrics);
        EXPECT_EQ(advanced.lyricsParagraphsCount(), count) << lyrics.toStdString();
    }
}

TEST_F(TrackAdvancedTest, AdvisoryFlagsFromTheStoreRating)
{
    struct Row
    {
        QVariant rating;
        bool hasAdvisory, isExplicit, isClean;
    };
    const Row rows[] = {
        {{}, false, false, false},  {qint64(0), false, false, false},
        {qint64(1), true, true, false}, {qint64(2), true, false, true},
        {qint64(4), true, true, false}, {QStringLiteral("2x"), true, false, true},
        {qint64(-1), false, false, false},
    };
    for (const Row &row : rows) {
        object->setStored(Prop::storeMetadata, row.rating.isValid() ? QVariantMap{{"itsk/rtng", row.rating}}
                                                                    : QVariantMap());
        EXPECT_EQ(advanced.hasAdvisory(), row.hasAdvisory) << row.rating.toString().toStdString();
        EXPECT_EQ(advanced.isExplicit(), row.isExplicit) << row.rating.toString().toStdString();
        EXPECT_EQ(advanced.isClean(), row.isClean) << row.rating.toString().toStdString();
    }
    const ITunesTrackAdvanced empty;
    EXPECT_FALSE(empty.hasAdvisory() || empty.isExplicit() || empty.isClean());
}

TEST_F(TrackAdvancedTest, DerivedNumbersAndFlags)
{
    object->setStored({{Prop::sampleRate, qint64(44999)}, {Prop::size, qint64(3 * 1048576 - 1)},
                       {Prop::duration, 200.9}, {Prop::start, 1.5}, {Prop::shufflable, true},
                       {Prop::mediaKind, kMdP}, {Prop::ratingKind, kRtC}, {Prop::rating, 40},
                       {Prop::albumRatingKind, kRtC}, {Prop::albumRating, 0}});
    EXPECT_EQ(advanced.sampleRate(), 44.0);
    EXPECT_EQ(advanced.size(), 2.0);
    EXPECT_EQ(advanced.duration(), 200);
    EXPECT_EQ(advanced.start(), 1);
    EXPECT_FALSE(advanced.shufflable());
    EXPECT_TRUE(advanced.podcast());
    EXPECT_TRUE(advanced.ratingViaPC());
    EXPECT_FALSE(advanced.albumRatingViaPC());
    object->setStored(Prop::shufflable, false);
    EXPECT_TRUE(advanced.shufflable());
}

TEST_F(TrackAdvancedTest, FileNameParts)
{
    const struct
    {
        QString path, name, extension;
    } rows[] = {
        {"/music/a.b.mp3", "a.b", "mp3"}, {"/music/.hidden", ".hidden", ""},
        {"/music/plain", "plain", ""},    {"", "", ""},
    };
    for (const auto &row : rows) {
        object->setStored(Prop::location, row.path);
        EXPECT_EQ(advanced.valueForKey("trackFileName").toString(), row.name) << row.path.toStdString();
        EXPECT_EQ(advanced.valueForKey("trackFilePathExtension").toString(), row.extension);
    }
}

TEST_F(TrackAdvancedTest, KeyPathsAnswerByNameWithTheirTypes)
{
    object->setStored({{Prop::objectDescription, "tag 14"}, {Prop::year, 1999}, {Prop::loved, true}});
    for (const QString &keyPath : ITunesTrackAdvanced::keyPaths())
        EXPECT_EQ(advanced.valueForKey(keyPath).isValid(), keyPath != "purchaseDate") << keyPath.toStdString();
    EXPECT_EQ(advanced.valueForKey("name").toString(), QStringLiteral("Song"));
    EXPECT_EQ(advanced.valueForKey("year").typeId(), QMetaType::LongLong);
    EXPECT_EQ(advanced.valueForKey("loved"), QVariant(true));
    EXPECT_EQ(advanced.valueForKey("size").typeId(), QMetaType::Double);
    EXPECT_NE(advanced.valueForKey("description").toString(), QStringLiteral("tag 14"));
    EXPECT_FALSE(advanced.valueForKey("objectDescription").isValid());
}

} // namespace
