#include "function0002fixture.h"

#include "functions/function0002.h"

#include <QSignalSpy>
#include <QTemporaryDir>

namespace {

class ChangeCaseTest : public RealFunctionTest
{
protected:
    // Runs function 2 on one track whose name is `name`, with only the name chosen.
    QString changeName(const QString &name, const QVariantMap &settings)
    {
        QVariantMap all{{"yourName", true},        {"yourArtist", false},
                        {"yourAlbum", false},      {"yourAlbumArtist", false},
                        {"yourUpperItemsDo", true}, {"yourUpperItems", Function0002::defaultUpperItems()},
                        {"yourRemoveSpaces", true}};
        all.insert(settings);
        configure(2, all);
        selected.clear();
        const MemoryObjectPtr track = addTrack({{Prop::name, name}});
        EXPECT_TRUE(run(2).isEmpty());
        return track->stored(Prop::name).toString();
    }
};

TEST_F(ChangeCaseTest, FormsDelimitersAndCaseMappings)
{
    struct Case
    {
        const char *name;
        QVariantMap settings;
        const char *expected;
    };
    const QVariantMap form1{{"yourCaseForm", 1}};
    const QVariantMap form2{{"yourCaseForm", 2}};
    const QList<Case> cases{
        // Capitals after spaces and delimiters only: the apostrophe is none.
        {"DON'T STOP ME-NOW", form1, "Don't Stop Me-Now"},
        {"the (best) of [x]/y", form1, "The (Best) Of [X]/Y"},
        {"a•b»c«d", form1, "A•B»C«D"},
        // The capital goes to the character right after the delimiter, even a space.
        {"hello world. again (live)", form2, "Hello world. again (Live)"},
        {"HELLO WORLD.AGAIN", form2, "Hello world.Again"},
        {"ONE\nTWO\r\nthree four", form2, "One\nTwo\r\nThree four"},
        {"rock-n-roll hits\nmore", {{"yourCaseForm", 1}, {"yourUpperItemsDo", false}}, "Rock-n-roll Hits\nMore"},
        // A space the user lists counts in form 1 and never in form 2.
        {"a b-c", {{"yourCaseForm", 2}, {"yourUpperItems", "- "}}, "A b-C"},
        // A letter listed is a delimiter in either case and is itself mapped like any other.
        {"aXbxc", {{"yourCaseForm", 1}, {"yourUpperItems", "x"}}, "AxBxC"},
        // Mappings that give more than one character.
        {"ß-ß ŉ", form1, "SS-SS ʼN"},
        {"KİM", form1, "Ki̇m"},
        {"straße", {{"yourCaseForm", 3}}, "STRASSE"},
        {"İSTANBUL", {{"yourCaseForm", 4}}, "i̇stanbul"},
        // Beyond 16 bits: a pair stays whole and is mapped as one character.
        {"𐐨𐐯 𐐀𐐇", form1, "𐐀𐐯 𐐀𐐯"},
        {"𝄞MUSIC 𝄞x", form1, "𝄞music 𝄞x"},
        {"𐐨𐐯", {{"yourCaseForm", 3}}, "𐐀𐐇"},
        {"Hello  World ", form1, "Hello World"},
        {"hello  world", {{"yourCaseForm", 1}, {"yourRemoveSpaces", false}}, "Hello  World"},
    };
    for (const Case &c : cases) {
        const QString name = QString::fromUtf8(c.name);
        EXPECT_EQ(changeName(name, c.settings), QString::fromUtf8(c.expected)) << c.name;
        EXPECT_EQ(states, QList<qint64>{1}) << c.name;
        EXPECT_EQ(player->writeCount(Prop::name), 1) << c.name;
    }
}

TEST_F(ChangeCaseTest, TagsAlreadyInFormAreNotWritten)
{
    struct Case
    {
        const char *name;
        qint64 form;
    };
    for (const Case &c : QList<Case>{{"", 1}, {"Hello World", 1}, {"Hello world. and (More)", 2},
                                     {"ALL CAPS", 3}, {"tiny", 4}, {"𝄞 Ok", 1}}) {
        EXPECT_EQ(changeName(QString::fromUtf8(c.name), {{"yourCaseForm", c.form}}), QString::fromUtf8(c.name));
        EXPECT_EQ(states, QList<qint64>{0}) << c.name;
        EXPECT_EQ(player->totalWriteCount(), 0) << c.name;
    }
}

TEST_F(ChangeCaseTest, OnlyTheChosenTagsAreRewritten)
{
    const MemoryObjectPtr track = addTrack({{Prop::name, "a song"},
                                            {Prop::artist, "AN ARTIST"},
                                            {Prop::sortArtist, "artist, an"},
                                            {Prop::comment, "a comment"},
                                            {Prop::episodeID, "ep one"}});
    configure(2, {{"yourName", false}, {"yourAlbum", false}, {"yourArtistSort", true}, {"yourEpisodenID", true}});
    ASSERT_TRUE(run(2).isEmpty());
    EXPECT_EQ(track->stored(Prop::name).toString(), "a song");
    EXPECT_EQ(track->stored(Prop::artist).toString(), "An Artist");
    EXPECT_EQ(track->stored(Prop::sortArtist).toString(), "Artist, An");
    EXPECT_EQ(track->stored(Prop::comment).toString(), "a comment");
    EXPECT_EQ(track->stored(Prop::episodeID).toString(), "Ep One");
    EXPECT_EQ(player->totalWriteCount(), 3);

    // With no tag chosen the run is refused before any track is read.
    QMetaObject::invokeMethod(pool->myFunction(2), "deselectAllSearchTags");
    EXPECT_EQ(run(2), QList<qint64>{-1});
    EXPECT_TRUE(states.isEmpty());
}

TEST_F(ChangeCaseTest, SettingsByNameAndTheDerivedSwitch)
{
    auto *function = qobject_cast<Function0002 *>(pool->myFunction(2));
    ASSERT_NE(function, nullptr);
    EXPECT_EQ(function->property("yourUpperItems").toString(), QString::fromUtf8(")(.:;-_!\"&/\\=?*#•»«]["));
    QSignalSpy spy(function, &Function0002::yourCaseFormChanged);
    for (qint64 form : {1, 2, 3, 4}) {
        function->setProperty("yourCaseForm", form);
        EXPECT_EQ(function->property("enableUpperItems").toBool(), form <= 2) << form;
    }
    EXPECT_EQ(spy.count(), 3);
    QStringList panelProperties;
    for (const PanelField &field : function->panelDescription().fields)
        if (!field.property.isEmpty())
            panelProperties.append(field.property);
    for (const QString &name : panelProperties)
        EXPECT_GE(function->metaObject()->indexOfProperty(name.toLatin1().constData()), 0) << name.toStdString();
    EXPECT_EQ(panelProperties.size(), 21);
}

TEST_F(ChangeCaseTest, CommandLineRunRewritesOnlyFilesThatChange)
{
    QTemporaryDir dir;
    const QString loud = makeAudio(dir.path(), "loud.mp3");
    const QString tidy = makeAudio(dir.path(), "tidy.mp3");
    writeMutagenTags(loud, {{"title", "DON'T STOP  ME NOW"}, {"artist", "QUEEN"}, {"album", "jazz"}});
    writeMutagenTags(tidy, {{"title", "Bohemian Rhapsody"}, {"artist", "Queen"}, {"album", "A Night"}});
    orvaneCli({"library", "add", dir.path()});
    const QDateTime tidyTime = modificationTime(tidy);

    const QString log = orvaneCli({"organize", "2", dir.path(), "--set", "yourCaseForm=1"});
    EXPECT_TRUE(log.contains("\"state\": 1")) << log.toStdString();
    EXPECT_EQ(mutagenTag(loud, "title"), "Don't Stop Me Now");
    EXPECT_EQ(mutagenTag(loud, "artist"), "Queen");
    EXPECT_EQ(mutagenTag(loud, "album"), "Jazz");
    EXPECT_EQ(mutagenTag(tidy, "title"), "Bohemian Rhapsody");
    EXPECT_EQ(modificationTime(tidy), tidyTime);
}

} // namespace
