#include "qtprinting.h"

#include "additions/ovexception.h"
#include "additions/textadditions.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

struct Edit
{
    QString input;
    QString expected;
};

void expectEdits(const std::function<void(QString &)> &edit, const std::vector<Edit> &rows)
{
    for (const Edit &row : rows) {
        QString text = row.input;
        edit(text);
        EXPECT_EQ(text, row.expected) << "input: " << row.input.toStdString();
    }
}

} // namespace

TEST(TextAdditions, RemoveUnnecessarySpacesCollapsesOnlyPlainSpaces)
{
    expectEdits(removeUnnecessarySpaces, {
        {"  a   b  ", "a b"}, {"     ", ""}, {"", ""}, {"a\t  b", "a\t b"},
        {" \n a \n ", "\n a \n"}, {"\u00a0a\u00a0", "\u00a0a\u00a0"},
    });
}

TEST(TextAdditions, RemoveUnnecessaryNewLinesKeepsOneEmptyLine)
{
    auto trimmed = [](QString &text) { removeUnnecessaryNewLines(text, true); };
    auto untrimmed = [](QString &text) { removeUnnecessaryNewLines(text, false); };
    expectEdits(trimmed, {
        {"a\n\n\n\n\nb", "a\n\nb"}, {"a\r\nb", "a\n\nb"}, {"a\r\n\r\nb", "a\n\nb"},
        {"a\rb\u2028c\u2029d\u0085e", "a\nb\nc\nd\ne"}, {"\n\na\n\n", "\na\n"},
        {"  a  \n  b ", "a\nb"}, {"\n", ""},
    });
    expectEdits(untrimmed, {{"  a  \n  b ", "  a  \n  b "}, {"a\n\n\n\nb", "a\n\nb"}});
}

TEST(TextAdditions, RemoveIllegalAndSpecialCharactersLeaveSpaces)
{
    expectEdits(removeIllegalCharacters, {{"AC/DC: Live\\1", "AC DC  Live 1"}});
    expectEdits(removeSpecialItemsForRequest, {
        {"a:b,c?d!e/f\\g\"h§i$j%k&l=m#n_o(p)q[r]s*t", "a b c d e f g h i j k l m n o p q r s t"},
        {"Rock & Roll (Live)", "Rock   Roll  Live "},
        {"Café 'n' more", "Café 'n' more"},
    });
}

TEST(TextAdditions, RemoveSpecialItemPartCutsBeforeSecondArtist)
{
    expectEdits(removeSpecialItemPartForRequest, {
        {"Artist feat. Other", "Artist"}, {"Artist FT. Other", "Artist"},
        {"Artist Vs Other", "Artist"}, {"Artist versus Other", "Artist"}, {"Artist ftw", "Artist"},
        {"Loft Party", "Loft Party"}, {"(Intro) Song", "(Intro) Song"},
        // Only the first bracket counts, and it stands at the start.
        {"(Intro) Song (Live)", "(Intro) Song (Live)"}, {"Song [Live] (Remix)", "Song "},
        {" feat. Someone", " feat. Someone"},
    });
}

TEST(TextAdditions, CutAndKeepCountCodeUnitsAndThrowBeyondTheText)
{
    const QString note = QStringLiteral("a\U0001F3B5b"); // four code units
    const std::tuple<void (*)(QString &, qint64), qint64, QString> rows[] = {
        {cutTextFromBeginning, 1, QStringLiteral("\U0001F3B5b")}, {cutTextFromBeginning, 4, ""},
        {cutTextFromEnd, 1, QStringLiteral("a\U0001F3B5")}, {cutTextFromEnd, 0, note},
        {keepTextFromBeginning, 2, note.left(2)}, {keepTextFromBeginning, 0, ""},
        {keepTextFromEnd, 3, QStringLiteral("\U0001F3B5b")}, {keepTextFromEnd, 4, note},
    };
    for (const auto &[edit, n, expected] : rows) {
        QString text = note;
        edit(text, n);
        EXPECT_EQ(text, expected) << "n = " << n;
        for (qint64 outside : {qint64(5), qint64(-1)}) {
            text = note;
            EXPECT_THROW(edit(text, outside), OVException);
            EXPECT_EQ(text, note);
        }
    }
}

TEST(TextAdditions, Md5HashesUtf8UpToTheFirstZero)
{
    EXPECT_EQ(md5(QString()), QStringLiteral("d41d8cd98f00b204e9800998ecf8427e"));
    EXPECT_EQ(md5(QStringLiteral("abc")), QStringLiteral("900150983cd24fb0d6963f7d28e17f72"));
    EXPECT_EQ(md5(QString::fromUtf16(u"abc\0def", 7)), md5(QStringLiteral("abc")));
    EXPECT_EQ(md5(QStringLiteral("Grüße \U0001F3B5")), QStringLiteral("b474dc7b3c726df696c0bc0a2a9f80b4"));
}

TEST(TextAdditions, RatingsAsStars)
{
    const std::pair<qint64, QString> rows[] = {
        {100, "5"}, {50, "2½"}, {10, "½"}, {15, "0"}, {0, "0"}, {20, "1"}, {30, "1½"},
        {35, "1"}, {90, "4½"}, {99, "4"}, {120, "5"}, {-10, "0"},
    };
    for (const auto &[rating, stars] : rows)
        EXPECT_EQ(ov_descriptionFromRatingValue(rating), stars) << "rating " << rating;
}
