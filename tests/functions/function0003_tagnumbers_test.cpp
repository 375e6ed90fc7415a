#include "function0002fixture.h"

#include "functions/function0003.h"

#include <QSignalSpy>
#include <QTemporaryDir>

namespace {

using TagNumberFunctionTest = RealFunctionTest;

// One track per row, the run's result read back from the two tags a row names.
struct TagRow
{
    MemoryProperties values;
    QVariantMap settings;
    QVariant expectedFirst;
    QVariant expectedSecond;
    qint64 state;
};

class TagRows : public TagNumberFunctionTest
{
protected:
    void check(int number, Prop first, Prop second, const QList<TagRow> &rows)
    {
        for (qsizetype i = 0; i < rows.size(); ++i) {
            const TagRow &row = rows.at(i);
            configure(number, row.settings);
            selected.clear();
            const MemoryObjectPtr track = addTrack(row.values);
            ASSERT_TRUE(run(number).isEmpty()) << "row " << i;
            EXPECT_EQ(track->stored(first), row.expectedFirst) << "row " << i;
            EXPECT_EQ(track->stored(second), row.expectedSecond) << "row " << i;
            EXPECT_EQ(states, QList<qint64>{row.state}) << "row " << i;
            if (row.state == 0) {
                EXPECT_EQ(player->totalWriteCount(), 0) << "row " << i;
            }
        }
    }
};

TEST_F(TagRows, CopyHonoursTheEmptyAndOverwriteRules)
{
    const QVariantMap genreToComment{{"yourSourceTag", 11}, {"yourTargetTag", 15}, {"yourCopySwapChoose", 1},
                                     {"yourCopyOverwrite", false}, {"yourCopyEmpty", false}};
    auto with = [&](QVariantMap extra) {
        QVariantMap settings = genreToComment;
        settings.insert(extra);
        return settings;
    };
    check(3, Prop::genre, Prop::comment,
          {
              {{{Prop::genre, "Rock"}}, genreToComment, "Rock", "Rock", 1},
              {{{Prop::genre, "Rock"}, {Prop::comment, "Old"}}, genreToComment, "Rock", "Old", 0},
              {{{Prop::genre, "Rock"}, {Prop::comment, "Old"}}, with({{"yourCopyOverwrite", true}}), "Rock", "Rock", 1},
              {{{Prop::genre, "Same"}, {Prop::comment, "Same"}}, with({{"yourCopyOverwrite", true}}), "Same", "Same", 0},
              {{{Prop::comment, "Old"}}, with({{"yourCopyEmpty", true}}), QVariant(), "Old", 0},
              {{{Prop::comment, "Old"}}, with({{"yourCopyEmpty", true}, {"yourCopyOverwrite", true}}), QVariant(), "", 1},
          });
    // A number tag reading "0" is an empty source, even into an empty target.
    const QVariantMap trackToComment{{"yourSourceTag", 8}, {"yourTargetTag", 15}, {"yourCopyOverwrite", true},
                                     {"yourCopyEmpty", false}};
    check(3, Prop::trackNumber, Prop::comment,
          {
              {{{Prop::trackNumber, 0}}, trackToComment, 0, QVariant(), 0},
              {{{Prop::trackNumber, 0}, {Prop::comment, "x"}}, trackToComment, 0, "x", 0},
              {{{Prop::trackNumber, 7}, {Prop::comment, "x"}}, trackToComment, 7, "7", 1},
          });
}

TEST_F(TagRows, SwapTreatsZeroAsAValue)
{
    const QVariantMap swap{{"yourSourceTag", 11}, {"yourTargetTag", 15}, {"yourCopySwapChoose", 2}};
    auto option = [&](qint64 value) {
        QVariantMap settings = swap;
        settings.insert("yourSwapOption", value);
        return settings;
    };
    check(3, Prop::genre, Prop::comment,
          {
              {{{Prop::genre, "A"}, {Prop::comment, "B"}}, option(2), "B", "A", 1},
              {{{Prop::comment, "B"}}, option(1), "B", "B", 1},
              {{{Prop::genre, "A"}}, option(1), "A", "A", 1},
              {{{Prop::comment, "B"}}, option(2), QVariant(), "B", 0},
              {{{Prop::comment, "B"}}, option(3), "B", "", 1},
              {{{Prop::genre, "A"}, {Prop::comment, "A"}}, option(3), "A", "A", 0},
          });
    check(3, Prop::trackNumber, Prop::discNumber,
          {
              {{{Prop::trackNumber, 0}, {Prop::discNumber, 3}},
               {{"yourSourceTag", 8}, {"yourTargetTag", 7}, {"yourSwapOption", 2}}, 3, 0, 1},
          });
}

TEST_F(TagRows, CutByNumberAndByText)
{
    auto cut = [](qint64 option, qint64 number) {
        return QVariantMap{{"yourCutChoose", 1}, {"yourNumericCutOption", option}, {"yourNumericValue", number}};
    };
    auto cutAt = [](qint64 option, const QString &text, qint64 removeSpaces = 1) {
        return QVariantMap{{"yourCutChoose", 2}, {"yourTextCutOption", option}, {"yourTextValue", text},
                           {"yourRemoveSpaces", removeSpaces}};
    };
    check(4, Prop::name, Prop::year,
          {
              {{{Prop::name, "abcdef"}}, cut(1, 2), "cdef", QVariant(), 1},
              {{{Prop::name, "abcdef"}}, cut(2, 2), "abcd", QVariant(), 1},
              {{{Prop::name, "abcdef"}}, cut(3, 2), "ab", QVariant(), 1},
              {{{Prop::name, "abcdef"}}, cut(4, 2), "ef", QVariant(), 1},
              // A text no longer than the number is left whole, for cutting and keeping alike.
              {{{Prop::name, "abcdef"}}, cut(1, 6), "abcdef", QVariant(), 0},
              {{{Prop::name, "abcdef"}}, cut(3, 9), "abcdef", QVariant(), 0},
              {{{Prop::name, "Song x"}}, cut(2, 1), "Song", QVariant(), 1},
              {{{Prop::name, "Song - Live - Remix"}}, cutAt(1, " - "), "Song", QVariant(), 1},
              {{{Prop::name, "Song - Live - Remix"}}, cutAt(2, " - "), "Remix", QVariant(), 1},
              {{{Prop::name, "Song FEAT. Guest"}}, cutAt(1, "feat"), "Song", QVariant(), 1},
              {{{Prop::name, "Straße"}}, cutAt(1, "SS"), "Stra", QVariant(), 1},
              // Nothing found: the spaces are still tidied, and that alone is a change.
              {{{Prop::name, " Song  Title"}}, cutAt(1, "xyz"), "Song Title", QVariant(), 1},
              {{{Prop::name, "Song  Title"}}, cutAt(1, "xyz", 0), "Song  Title", QVariant(), 0},
          });
    QVariantMap onYear = cut(2, 2);
    onYear.insert("yourPerformOn", 12);
    check(4, Prop::year, Prop::name, {{{{Prop::year, 1999}, {Prop::name, "n"}}, onYear, 19, "n", 1}});
}

TEST_F(TagRows, AddTextAndASecondTag)
{
    auto add = [](qint64 side, const QString &text, bool option = false, qint64 optionTag = 2) {
        return QVariantMap{{"yourAddSide", side}, {"yourAddText", text}, {"yourAddOption", option},
                           {"yourAddOptionTag", optionTag}, {"yourPerformOn", 1}, {"yourRemoveSpaces", true}};
    };
    const MemoryProperties song{{Prop::name, "Song"}, {Prop::artist, "Artist"}};
    check(5, Prop::name, Prop::artist,
          {
              {song, add(1, "Live: "), "Live: Song", "Artist", 1},
              {song, add(2, " (Live)"), "Song (Live)", "Artist", 1},
              {song, add(1, " - ", true), "Artist - Song", "Artist", 1},
              {song, add(2, " / ", true), "Song / Artist", "Artist", 1},
              {song, add(0, "   x  "), "Song x", "Artist", 1},
              {song, add(2, "  ", true, 3), "Song", "Artist", 0},
          });
    // A number tag takes the number the text begins with: none gives 0.
    check(5, Prop::year, Prop::name,
          {
              {{{Prop::year, 1999}}, {{"yourPerformOn", 12}, {"yourAddSide", 1}, {"yourAddText", "abc"}}, 0, "", 1},
              {{{Prop::year, 99}}, {{"yourAddSide", 1}, {"yourAddText", "19"}}, 1999, "", 1},
          });
}

TEST_F(TagNumberFunctionTest, RefusedSettings)
{
    struct Case
    {
        int number;
        QVariantMap settings;
        QList<qint64> alerts;
        bool runs;
    };
    addTrack({{Prop::name, "Song"}});
    const QList<Case> cases{
        {3, {}, {-1}, false}, // source and target are both the comment by default
        {3, {{"yourTargetTag", 11}, {"yourCopySwapChoose", 7}}, {}, false},
        {4, {}, {-2}, false}, // cutting no characters
        {4, {{"yourCutChoose", 2}, {"yourTextValue", ""}}, {-1}, false},
        {4, {{"yourCutChoose", 3}, {"yourTextValue", "b"}}, {}, false},
        {5, {}, {-1}, false},
        {5, {{"yourAddOption", true}}, {}, true},
    };
    for (const Case &c : cases) {
        configure(c.number, c.settings);
        EXPECT_EQ(run(c.number), c.alerts) << c.number;
        EXPECT_EQ(states.size(), c.runs ? 1 : 0) << c.number;
    }
}

TEST_F(TagNumberFunctionTest, DerivedSwitchesFollowTheChoice)
{
    auto *copySwap = qobject_cast<Function0003 *>(pool->myFunction(3));
    QSignalSpy source(copySwap, &Function0003::yourSourceTagChanged);
    configure(3, {{"yourCopySwapChoose", 1}, {"yourSourceTag", 102}});
    EXPECT_TRUE(copySwap->property("enableCopy").toBool());
    EXPECT_FALSE(copySwap->property("enableSwap").toBool());
    // A store value cannot be written back, so swapping puts the source back to the comment.
    configure(3, {{"yourCopySwapChoose", 2}});
    EXPECT_EQ(copySwap->property("yourSourceTag").toLongLong(), 15);
    EXPECT_EQ(source.count(), 2);
    EXPECT_FALSE(copySwap->property("enableCopy").toBool());
    EXPECT_TRUE(copySwap->property("enableSwap").toBool());

    configure(4, {{"yourCutChoose", 2}});
    EXPECT_TRUE(pool->myFunction(4)->property("enableCutByText").toBool());
    EXPECT_FALSE(pool->myFunction(4)->property("enableCutByNumeric").toBool());
}

TEST(TagNumberFunctionCli, CutAtATextRewritesOnlyFilesThatChange)
{
    QTemporaryDir dir;
    const QString live = makeAudio(dir.path(), "live.mp3");
    const QString plain = makeAudio(dir.path(), "plain.mp3");
    writeMutagenTags(live, {{"title", "Song (Live at Home)"}, {"artist", "Band"}});
    writeMutagenTags(plain, {{"title", "Other Song"}, {"artist", "Band"}});
    orvaneCli({"library", "add", dir.path()});
    const QDateTime plainTime = modificationTime(plain);

    orvaneCli({"organize", "4", dir.path(), "--set", "yourCutChoose=2", "--set", "yourTextValue=(live"});
    EXPECT_EQ(mutagenTag(live, "title"), "Song");
    EXPECT_EQ(mutagenTag(plain, "title"), "Other Song");
    EXPECT_EQ(modificationTime(plain), plainTime);

    orvaneCli({"organize", "5", live, "--set", "yourAddText= by ", "--set", "yourAddSide=2", "--set",
                  "yourAddOption=true", "--set", "yourAddOptionTag=2"});
    EXPECT_EQ(mutagenTag(live, "title"), "Song by Band");
}

} // namespace
