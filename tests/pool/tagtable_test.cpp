#include "pool/tagtable.h"
#include "player/memoryplayer.h"

#include <QLocale>

#include <gtest/gtest.h>

namespace {

struct TagRow
{
    qint64 tag;
    Prop property;
    bool number;
};

const TagRow kTagRows[] = {
    {1, Prop::name, false},           {2, Prop::artist, false},
    {3, Prop::album, false},          {4, Prop::albumArtist, false},
    {5, Prop::composer, false},       {6, Prop::show, false},
    {7, Prop::discNumber, true},      {8, Prop::trackNumber, true},
    {9, Prop::seasonNumber, true},    {10, Prop::episodeNumber, true},
    {11, Prop::genre, false},         {12, Prop::year, true},
    {13, Prop::grouping, false},      {14, Prop::objectDescription, false},
    {15, Prop::comment, false},       {16, Prop::lyrics, false},
    {17, Prop::episodeID, false},     {18, Prop::playedCount, true},
    {19, Prop::rating, true},         {20, Prop::albumRating, true},
    {21, Prop::sortName, false},      {22, Prop::sortArtist, false},
    {23, Prop::sortAlbum, false},     {24, Prop::sortAlbumArtist, false},
    {25, Prop::sortComposer, false},  {26, Prop::sortShow, false},
    {27, Prop::discCount, true},      {28, Prop::trackCount, true},
    {29, Prop::bpm, true},
};

// Keeps the order of the calls that failed.
class OrderDelegate : public ScriptingBridgeDelegate
{
public:
    void eventDidFail(const QString &, const QString &operation, const BridgeError &) override
    {
        operations.append(operation);
    }
    QStringList operations;
};

class TagTableTest : public ::testing::Test
{
protected:
    MemoryPlayerPtr player = MemoryPlayer::create();
    MemoryObjectPtr object = player->addFileTrack(QStringLiteral("Song"), QStringLiteral("/music/song.m4a"));
    ITunesFileTrack track = player->handle<ITunesFileTrack>(object);
};

TEST_F(TagTableTest, EachTagReadsItsOwnPropertyNumbersAsDecimalText)
{
    for (const TagRow &row : kTagRows)
        object->setStored(row.property, row.number ? QVariant(qint64(row.tag * 1000 + 7))
                                                   : QVariant(QStringLiteral("tag %1").arg(row.tag)));
    for (const TagRow &row : kTagRows) {
        const QString expected = row.number ? QString::number(row.tag * 1000 + 7)
                                            : QStringLiteral("tag %1").arg(row.tag);
        EXPECT_EQ(pullTrackTag(track, row.tag), expected) << row.tag;
        EXPECT_EQ(pullTrackObject(track, row.tag, false).toString(), expected) << row.tag;
    }
}

TEST_F(TagTableTest, EachTagWritesItsOwnPropertyNumbersFromTheLeadingInteger)
{
    for (const TagRow &row : kTagRows) {
        player->resetWriteCounts();
        pushTrackTag(track, row.tag, QStringLiteral(" 12abc"));
        EXPECT_EQ(player->totalWriteCount(), 1) << row.tag;
        if (row.number)
            EXPECT_EQ(object->stored(row.property).toLongLong(), 12) << row.tag;
        else
            EXPECT_EQ(object->stored(row.property).toString(), QStringLiteral(" 12abc")) << row.tag;
    }
}

TEST_F(TagTableTest, Tag100WritesAlbumArtistThenArtist)
{
    pushTrackTag(track, 100, QStringLiteral("Both"));
    EXPECT_EQ(object->stored(Prop::albumArtist).toString(), QStringLiteral("Both"));
    EXPECT_EQ(object->stored(Prop::artist).toString(), QStringLiteral("Both"));

    OrderDelegate delegate;
    player->injectFailure(Prop::artist, MemoryPlayer::Access::Write);
    player->injectFailure(Prop::albumArtist, MemoryPlayer::Access::Write);
    pushTrackTag(player->handle<ITunesFileTrack>(object, &delegate), 100, QStringLiteral("x"));
    EXPECT_EQ(delegate.operations, QStringList({"setAlbumArtist", "setArtist"}));
}

TEST_F(TagTableTest, NumbersOutsideTheTableReadNothingAndWriteNothing)
{
    object->setStored(Prop::storeMetadata, QVariantMap{{"itsk/apID", "someone@example.org"}});
    for (qint64 tag : {0LL, 30LL, 99LL, 100LL, 106LL, -1LL}) {
        EXPECT_FALSE(pullTrackObject(track, tag, true).isValid()) << tag;
        const QString text = pullTrackTag(track, tag);
        EXPECT_TRUE(text.isEmpty() && !text.isNull()) << tag;
    }
    player->resetWriteCounts();
    for (qint64 tag : {0LL, 30LL, 101LL, 102LL, 105LL, 106LL})
        pushTrackTag(track, tag, QStringLiteral("7"));
    EXPECT_EQ(player->totalWriteCount(), 0);
}

TEST_F(TagTableTest, PurchaseDateIsADateOrItsDescription)
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    object->setStored(Prop::storeMetadata, QVariantMap{{"itsk/purd", "2015-01-05 15:04:05"}});

    const QVariant date = pullTrackObject(track, 104, false);
    EXPECT_EQ(date.toDateTime(), QDateTime(QDate(2015, 1, 5), QTime(15, 4, 5)));
    EXPECT_EQ(pullTrackObject(track, 104, true).toString(), QStringLiteral("05.01.2015, 15:04:05"));
    EXPECT_EQ(pullTrackTag(track, 104), QStringLiteral("05.01.2015, 15:04:05"));

    object->setStored(Prop::storeMetadata, QVariantMap{{"itsk/purd", "5 January 2015"}});
    EXPECT_FALSE(pullTrackObject(track, 104, false).isValid());
    EXPECT_EQ(pullTrackTag(track, 104), QString());
    QLocale::setDefault(QLocale::c());
}

} // namespace
