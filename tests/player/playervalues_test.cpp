#include "player/playervalues.h"

#include <gtest/gtest.h>

TEST(PlayerValues, DurationTextRoundsAndGrowsAnHourField)
{
    const struct { double seconds; const char *text; } rows[] = {
        {0, "0:00"}, {-4, "0:00"}, {59.4, "0:59"}, {59.6, "1:00"}, {205, "3:25"},
        {3599.6, "1:00:00"}, {3723, "1:02:03"}, {36000, "10:00:00"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(durationText(row.seconds), QString::fromLatin1(row.text)) << row.seconds;
}

TEST(PlayerValues, ArtworkFormatByFirstBytes)
{
    EXPECT_EQ(artworkFormat(QByteArray("\xFF\xD8\xFF\xE0", 4)), fourCharCode("JPEG"));
    EXPECT_EQ(artworkFormat(QByteArray("\x89PNG\r\n", 6)), fourCharCode("PNGf"));
    EXPECT_EQ(artworkFormat("GIF89a"), fourCharCode("GIFf"));
    EXPECT_EQ(artworkFormat("BM\x10\x00"), fourCharCode("BMPf"));
    EXPECT_EQ(artworkFormat(QByteArray()), 0u);
    EXPECT_EQ(artworkFormat("\xFF"), 0u);
}
