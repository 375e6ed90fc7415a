#include "function0006fixture.h"

#include "functions/function0007.h"
#include "pool/functionpoolpreferences.h"

#include <QSignalSpy>

namespace {

class SplitTest : public TagNameFunctionTest
{
protected:
    struct Case
    {
        const char *location;
        QVariantMap settings;
        qint64 state;
        MemoryProperties expected; // the tags that differ from the track's first values
    };

    // Runs the function on one track per case, with the settings of the case over `defaults`.
    void runCases(int number, const QVariantMap &defaults, const QList<Case> &cases)
    {
        const MemoryProperties start{{Prop::name, "Title"}, {Prop::artist, "Artist"},
                                     {Prop::album, "Album"}, {Prop::trackNumber, 5}};
        for (const Case &c : cases) {
            QVariantMap settings = defaults;
            settings.insert(c.settings);
            selected.clear();
            const MemoryObjectPtr track = addTrack(c.location, start);
            EXPECT_EQ(run(number, settings), QList<qint64>{c.state}) << c.location;
            for (Prop prop : {Prop::name, Prop::artist, Prop::album, Prop::albumArtist, Prop::composer,
                              Prop::comment, Prop::trackNumber})
                EXPECT_EQ(track->stored(prop).toString(), c.expected.value(prop, start.value(prop)).toString())
                    << c.location << ": " << propertyName(prop).toStdString();
        }
    }

    PoolFunctionAnswer check(int number, const QVariantMap &settings)
    {
        for (auto it = settings.begin(); it != settings.end(); ++it)
            set(number, it.key().toLatin1().constData(), it.value());
        return pool->myFunction(number)->doMyFunctionCheck();
    }
};

const QVariantMap kFileNameDefaults{{"yourTag1", 8}, {"yourTag2", 2}, {"yourTag3", 1}, {"yourTag4", 0},
                                    {"yourDel", " - "}, {"yourIgnoreFromBeginning", 0},
                                    {"yourOption", 1}, {"yourOptionTag", 15}};
const QVariantMap kFolderNameDefaults{{"yourTag1", 4}, {"yourTag2", 3}, {"yourDel", " - "},
                                      {"yourIgnoreFromBeginning", 0}, {"yourIgnoreFromEnd", 0},
                                      {"yourOption", 2}};

TEST_F(SplitTest, FileNamesSplitAtTheDelimiter)
{
    runCases(7, kFileNameDefaults, {
        {"/m/07 - Band - Song.mp3", {}, 1, {{Prop::trackNumber, 7}, {Prop::artist, "Band"}, {Prop::name, "Song"}}},
        // The delimiter is found ignoring case; the extension is never part of the name.
        {"/m/a X b.x.flac", {{"yourDel", " x "}, {"yourTag1", 1}, {"yourTag2", 3}}, 1,
         {{Prop::name, "a"}, {Prop::album, "b.x"}}},
        {"/m/No delimiter here.mp3", {}, 0, {}},
        {"/m/No delimiter here.mp3", {{"yourOption", 2}}, 1, {{Prop::comment, "No delimiter here"}}},
        {"/m/01 Band - Song.mp3", {{"yourIgnoreFromBeginning", 3}, {"yourTag1", 2}, {"yourTag2", 1}}, 1,
         {{Prop::artist, "Band"}, {Prop::name, "Song"}}},
        {"/m/01 .mp3", {{"yourIgnoreFromBeginning", 3}, {"yourOption", 2}}, 0, {}},
        // Text behind a fourth delimiter is dropped.
        {"/m/a - b - c - d - e.mp3", {{"yourTag1", 1}, {"yourTag3", 3}, {"yourTag4", 5}}, 1,
         {{Prop::name, "a"}, {Prop::artist, "b"}, {Prop::album, "c"}, {Prop::composer, "d"}}},
        // An empty last part writes nothing; an unused tag skips its part.
        {"/m/a - .mp3", {{"yourTag1", 1}}, 1, {{Prop::name, "a"}}},
        {"/m/x - y - z.mp3", {{"yourTag1", 0}, {"yourTag2", 0}}, 1, {{Prop::name, "z"}}},
        {"/m/x - y - z.mp3", {{"yourTag1", 0}, {"yourTag2", 0}, {"yourTag3", 0}, {"yourTag4", 3}}, 0, {}},
        // A number tag takes the text's number, 0 when there is none.
        {"/m/A1 - b.mp3", {}, 1, {{Prop::trackNumber, 0}, {Prop::artist, "b"}}},
    });
}

TEST_F(SplitTest, FolderNamesSplitAtTheFirstDelimiterOnly)
{
    pool->myPreferences()->setPrefAlbumDiscFolderName("CD");
    runCases(9, kFolderNameDefaults, {
        {"/m/Band - Best - Of/a.mp3", {}, 1, {{Prop::albumArtist, "Band"}, {Prop::album, "Best - Of"}}},
        {"/m/Band - Live/CD2/a.mp3", {}, 1, {{Prop::albumArtist, "Band"}, {Prop::album, "Live"}}},
        {"/m/Mixed/a.mp3", {}, 1, {{Prop::albumArtist, "Mixed"}, {Prop::album, "Mixed"}}},
        {"/m/Mixed/a.mp3", {{"yourOption", 1}}, 0, {}},
        // Both writes hang on the first tag, yet the track counts as changed.
        {"/m/Band - Live/a.mp3", {{"yourTag1", 0}}, 1, {}},
        {"/m/Band - Live/a.mp3", {{"yourTag2", 0}}, 1, {{Prop::albumArtist, "Band"}}},
        {"/m/2001 Band x LIVE (Disc)/a.mp3",
         {{"yourIgnoreFromBeginning", 5}, {"yourIgnoreFromEnd", 7}, {"yourDel", " X "}, {"yourTag2", 1}}, 1,
         {{Prop::albumArtist, "Band"}, {Prop::name, "LIVE"}}},
        {"/m/Live/a.mp3", {{"yourIgnoreFromEnd", 4}}, 0, {}},
        {"/m/Live/a.mp3", {{"yourIgnoreFromBeginning", 2}, {"yourIgnoreFromEnd", 2}}, 0, {}},
    });
}

TEST_F(SplitTest, IncompleteOrContradictorySettingsAreRefused)
{
    const QVariantMap noTags{{"yourTag1", 0}, {"yourTag2", 0}, {"yourTag3", 0}, {"yourTag4", 0}};
    EXPECT_EQ(check(7, {{"yourDel", ""}}), PoolAlertCode::IncompleteSettings);
    EXPECT_EQ(check(7, kFileNameDefaults), PoolStep::GoOn);
    EXPECT_EQ(check(7, noTags), PoolAlertCode::IncompleteSettings);
    EXPECT_EQ(check(7, {{"yourTag4", 3}, {"yourIgnoreFromBeginning", -1}}), PoolAlertCode::ContradictorySettings);

    EXPECT_EQ(check(9, {{"yourDel", ""}}), PoolAlertCode::IncompleteSettings);
    EXPECT_EQ(check(9, kFolderNameDefaults), PoolStep::GoOn);
    EXPECT_EQ(check(9, {{"yourIgnoreFromEnd", -1}}), PoolAlertCode::ContradictorySettings);
    EXPECT_EQ(check(9, {{"yourTag1", 0}, {"yourTag2", 0}}), PoolAlertCode::IncompleteSettings);

}

TEST_F(SplitTest, TheOptionTagIsOfferedOnlyWhenWholeNamesGoToIt)
{
    auto *function = static_cast<Function0007 *>(pool->myFunction(7));
    QSignalSpy spy(function, &Function0007::yourOptionChanged);
    EXPECT_FALSE(function->property("enableOptionTag").toBool());
    function->setProperty("yourOption", 2);
    EXPECT_TRUE(function->property("enableOptionTag").toBool());
    function->setProperty("yourOption", 2);
    EXPECT_EQ(spy.count(), 1);
}

} // namespace
