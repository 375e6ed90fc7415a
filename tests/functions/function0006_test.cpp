#include "function0006fixture.h"

#include "functions/function0006.h"
#include "functions/function0010.h"
#include "pool/functionpoolpreferences.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>

namespace {

class RenameTest : public TagNameFunctionTest
{
protected:
    Function0006 *fileNames() const { return static_cast<Function0006 *>(pool->myFunction(6)); }
    Function0010 *folderNames() const { return static_cast<Function0010 *>(pool->myFunction(10)); }

    // An audio file at the relative path, as a selected track by "Artist", number 7.
    MemoryObjectPtr addAudioTrack(const QString &relative, const MemoryProperties &properties = {})
    {
        const QFileInfo file(path(relative));
        makeAudio(file.path(), file.fileName());
        MemoryProperties values{{Prop::trackNumber, 7}, {Prop::artist, "Artist"}, {Prop::album, "Album"}};
        values.insert(properties);
        return addTrack(file.filePath(), values);
    }
};

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

TEST_F(RenameTest, OnlyOneCharacterNumbersGetALeadingZero)
{
    struct Case
    {
        const char *text;
        qint64 tag;
        bool trackNoOn, cdOn;
        const char *inFileName, *inFolderName;
    };
    const QList<Case> cases{
        {"7", 8, true, true, "07", "7"},
        {"12", 8, true, true, "12", "12"},
        {"", 8, true, true, "", ""},
        {"7", 8, false, true, "7", "7"},
        {"3", 7, true, true, "03", "03"},
        {"3", 7, true, false, "3", "3"},
        {"x", 1, true, true, "x", "x"},
    };
    for (const Case &c : cases) {
        fileNames()->yourLeadZeroTrackNo = c.trackNoOn;
        fileNames()->yourLeadZeroCD = folderNames()->yourLeadZeroCD = c.cdOn;
        EXPECT_EQ(fileNames()->leadingZero(c.text, c.tag), c.inFileName) << c.text << " " << c.tag;
        EXPECT_EQ(folderNames()->leadingZero(c.text, c.tag), c.inFolderName) << c.text << " " << c.tag;
    }
}

TEST_F(RenameTest, AnUnusedTagTakesItsDelimiterAlongAndIllegalCharactersBecomeSpaces)
{
    const auto track = player->handle<ITunesTrack>(addTrack(
        "/music/a.mp3", {{Prop::trackNumber, 12}, {Prop::artist, "AC/DC"}, {Prop::discNumber, 2}}));
    struct Case
    {
        QVariantMap settings;
        const char *name;
    };
    const QList<Case> cases{
        {{}, "12 - AC DC - Title"},
        {{{"yourDel1", "_"}, {"yourTag2", 0}}, "12 - Title"},
        // The delimiter belongs to the tag after it, even with no tag before it.
        {{{"yourTag1", 0}, {"yourDel1", "_"}}, "_AC DC - Title"},
        {{{"yourTag4", 7}, {"yourDel3", " cd"}, {"yourPrefix", "a:b "}, {"yourSuffix", " \\x"}},
         "a b 12 - AC DC - Title cd02  x"},
        {{{"yourTag1", 0}, {"yourTag2", 0}, {"yourTag3", 0}}, ""},
    };
    for (const Case &c : cases) {
        Function0006 function(pool.get());
        for (auto it = c.settings.begin(); it != c.settings.end(); ++it)
            function.setProperty(it.key().toLatin1().constData(), it.value());
        EXPECT_EQ(function.composedName(track), c.name);
    }
    Function0010 folder(pool.get());
    folder.yourTag1 = 2;
    folder.yourTag3 = 7;
    folder.yourDel2 = " - CD";
    EXPECT_EQ(folder.composedName(track), "AC DC -  - CD02"); // the album is empty, its delimiter stays
}

TEST_F(RenameTest, TheFileTakesItsNameFromTheTagsAndTheTrackFollows)
{
    const MemoryObjectPtr track = addAudioTrack("old name.mp3", {{Prop::name, "Night: Day"}});
    const QByteArray audio = contents(path("old name.mp3"));

    EXPECT_EQ(run(6, {{"yourWriteToComment", true}}), QList<qint64>{1});

    const QString renamed = path("07 - Artist - Night  Day.mp3");
    EXPECT_FALSE(QFileInfo::exists(path("old name.mp3")));
    EXPECT_EQ(contents(renamed), audio);
    EXPECT_EQ(track->stored(Prop::location).toString(), renamed);
    EXPECT_EQ(track->stored(Prop::comment).toString(), "07 - Artist - Night  Day");
}

TEST_F(RenameTest, AFileWhoseNameIsRightIsLeftAlone)
{
    const MemoryObjectPtr track = addAudioTrack("07 - Artist - Title.mp3");
    const QDateTime modified = QFileInfo(path("07 - Artist - Title.mp3")).lastModified();

    EXPECT_EQ(run(6, {{"yourWriteToComment", true}}), QList<qint64>{0});

    EXPECT_EQ(player->writeCount(Prop::comment), 0);
    EXPECT_EQ(player->writeCount(Prop::location), 0);
    EXPECT_EQ(QFileInfo(path("07 - Artist - Title.mp3")).lastModified(), modified);
}

TEST_F(RenameTest, ATakenNameIsNeverOverwrittenTheFileKeepsItsTemporaryName)
{
    const MemoryObjectPtr track = addAudioTrack("mine.mp3");
    const QByteArray mine = contents(path("mine.mp3"));
    QFile other(path("07 - Artist - Title.mp3"));
    ASSERT_TRUE(other.open(QIODevice::WriteOnly) && other.write("another file") > 0);
    other.close();

    EXPECT_EQ(run(6, {{"yourWriteToComment", true}}), QList<qint64>{1});

    EXPECT_EQ(contents(path("07 - Artist - Title.mp3")), "another file");
    EXPECT_EQ(contents(path("07 - Artist - Title.mp3.mp3")), mine);
    EXPECT_FALSE(QFileInfo::exists(path("mine.mp3")));
    EXPECT_EQ(track->stored(Prop::location).toString(), path("07 - Artist - Title.mp3.mp3"));
    EXPECT_EQ(track->stored(Prop::comment).toString(), "07 - Artist - Title");
}

TEST_F(RenameTest, TheAlbumFolderIsRenamedOnceAndEveryTrackInItFollows)
{
    pool->myPreferences()->setPrefAlbumDiscFolderName("CD");
    const MemoryObjectPtr first = addAudioTrack("Band/old/CD1/a.mp3", {{Prop::albumArtist, "Band"}, {Prop::album, "Live/Loud"}});
    const MemoryObjectPtr second = addAudioTrack("Band/old/CD2/b.mp3", {{Prop::albumArtist, "Band"}, {Prop::album, "Live/Loud"}});
    const MemoryObjectPtr elsewhere = player->addFileTrack("Other", path("Band/older/c.mp3"));
    makeAudio(path("Band/older"), "c.mp3");

    EXPECT_EQ(run(10), (QList<qint64>{1, 0}));

    EXPECT_FALSE(QFileInfo::exists(path("Band/old")));
    EXPECT_TRUE(QFileInfo::exists(path("Band/Band - Live Loud/CD1/a.mp3")));
    EXPECT_EQ(first->stored(Prop::location).toString(), path("Band/Band - Live Loud/CD1/a.mp3"));
    EXPECT_EQ(second->stored(Prop::location).toString(), path("Band/Band - Live Loud/CD2/b.mp3"));
    EXPECT_EQ(elsewhere->stored(Prop::location).toString(), path("Band/older/c.mp3"));

    // Asked for the comment, a folder already named right still writes it.
    EXPECT_EQ(run(10, {{"yourWriteToComment", true}}), (QList<qint64>{1, 1}));
    EXPECT_EQ(second->stored(Prop::comment).toString(), "Band - Live Loud");
    EXPECT_EQ(player->writeCount(Prop::location), 0);
}

TEST_F(RenameTest, ATakenFolderNameLeavesTheAlbumAtItsDetour)
{
    const MemoryObjectPtr track = addAudioTrack("old/a.mp3", {{Prop::albumArtist, "Band"}});
    ASSERT_TRUE(QDir().mkpath(path("Band - Album/kept")));

    EXPECT_EQ(run(10), QList<qint64>{1});

    EXPECT_TRUE(QFileInfo::exists(path("Band - Album/kept")));
    EXPECT_EQ(track->stored(Prop::location).toString(), path("Band - AlbumBand - Album/a.mp3"));
    EXPECT_TRUE(QFileInfo::exists(track->stored(Prop::location).toString()));
}

TEST_F(RenameTest, ARenameOntoALinkOrWithAFailingNameIsTheTracksErrorAndMovesNothing)
{
    QTemporaryDir outside;
    const MemoryObjectPtr track = addAudioTrack("mine.mp3");
    const QByteArray mine = contents(path("mine.mp3"));
    const QString elsewhere = outside.path() + "/taken.mp3";
    ASSERT_TRUE(QFile::link(elsewhere, path("07 - Artist - Title.mp3"))); // dangling

    EXPECT_EQ(run(6, {{"yourWriteToComment", true}}), QList<qint64>{-1});
    EXPECT_EQ(contents(path("mine.mp3")), mine);
    EXPECT_EQ(QFileInfo(path("07 - Artist - Title.mp3")).symLinkTarget(), elsewhere);
    EXPECT_FALSE(QFileInfo::exists(elsewhere));
    EXPECT_EQ(QDir(music.path()).entryList(QDir::Files | QDir::System).size(), 2);
    EXPECT_EQ(track->stored(Prop::location).toString(), path("mine.mp3"));
    EXPECT_EQ(player->writeCount(Prop::comment), 0);
    const QList<QVariantMap> errors = pool->myFunctionPoolErrorLog()->yourErrorLogEntries();
    ASSERT_EQ(errors.size(), 1);
    EXPECT_TRUE(errors.at(0).value("Error").toString().contains("symbolic link"));

    // A name longer than the file system takes.
    QFile::remove(path("07 - Artist - Title.mp3"));
    EXPECT_EQ(run(6, {{"yourPrefix", QString(300, 'x')}}), QList<qint64>{-1});
    EXPECT_EQ(contents(path("mine.mp3")), mine);
    EXPECT_TRUE(pool->myFunctionPoolErrorLog()->yourErrorLogEntries().at(0).value("Error").toString().contains("too long"));
    EXPECT_EQ(track->stored(Prop::location).toString(), path("mine.mp3"));

    // The library cannot take the new location: the file goes back.
    player->injectFailure(Prop::location, MemoryPlayer::Access::Write);
    EXPECT_EQ(run(6, {{"yourPrefix", ""}}), QList<qint64>{-1});
    EXPECT_EQ(contents(path("mine.mp3")), mine);
    EXPECT_FALSE(QFileInfo::exists(path("07 - Artist - Title.mp3")));
}

TEST_F(RenameTest, TheMusicFolderTheHomeFolderAndFoldersOutsideAreNeverRenamed)
{
    const QString home = QDir::homePath(); // the test's own temporary home
    ASSERT_FALSE(home.isEmpty());
    makeAudio(home, "at home.mp3");
    const MemoryObjectPtr atHome = addTrack(home + "/at home.mp3", {{Prop::albumArtist, "Band"}, {Prop::album, "Home"}});
    const MemoryObjectPtr loose = addAudioTrack("loose.mp3", {{Prop::albumArtist, "Band"}});
    QTemporaryDir outside;
    makeAudio(outside.path() + "/Album", "a.mp3");
    ASSERT_TRUE(QFile::link(outside.path() + "/Album", path("Linked")));
    const MemoryObjectPtr linked = addTrack(path("Linked/a.mp3"), {{Prop::albumArtist, "Band"}, {Prop::album, "Linked"}});

    EXPECT_EQ(run(10), (QList<qint64>{-1, -1, -1}));
    const QList<QVariantMap> errors = pool->myFunctionPoolErrorLog()->yourErrorLogEntries();
    ASSERT_EQ(errors.size(), 3);
    EXPECT_TRUE(errors.at(0).value("Error").toString().contains("is the home folder"));
    EXPECT_TRUE(errors.at(1).value("Error").toString().contains("is the library's music folder"));
    EXPECT_TRUE(errors.at(2).value("Error").toString().contains("outside the library's music folder"));
    EXPECT_TRUE(QFileInfo::exists(home + "/at home.mp3"));
    EXPECT_TRUE(QFileInfo::exists(path("loose.mp3")));
    EXPECT_TRUE(QFileInfo::exists(outside.path() + "/Album/a.mp3"));
    EXPECT_EQ(QDir(outside.path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot), QStringList{"Album"});
    EXPECT_EQ(atHome->stored(Prop::location).toString(), home + "/at home.mp3");
    EXPECT_EQ(loose->stored(Prop::location).toString(), path("loose.mp3"));
    EXPECT_EQ(linked->stored(Prop::location).toString(), path("Linked/a.mp3"));

    // With no music folder known, nothing is renamed at all.
    player->setMusicFolder({});
    selected = {selected.at(1)};
    player->setSelection(selected);
    EXPECT_EQ(run(10), QList<qint64>{-1});
}

// The four functions in turn through orvane-cli on a library of real files: tags from the
// file and folder names, then files and folder renamed from the tags.
TEST(TagNameFunctionsEndToEnd, TagsFromNamesThenNamesFromTags)
{
    // Inside the library's music folder, where function 10 may rename folders.
    const QString musicFolder = QStandardPaths::writableLocation(QStandardPaths::MusicLocation);
    ASSERT_TRUE(QDir().mkpath(musicFolder));
    QTemporaryDir root(musicFolder + "/run-XXXXXX");
    const QString album = root.path() + "/Band - First Light";
    makeAudio(album, "3 - Band - Dawn.mp3");
    makeAudio(album, "12 - Band - Dusk.mp3");
    orvaneCli({"library", "add", root.path()});

    orvaneCli({"organize", "7", album});
    orvaneCli({"organize", "9", album});
    EXPECT_EQ(mutagenTag(album + "/3 - Band - Dawn.mp3", "title"), "Dawn");
    EXPECT_EQ(mutagenTag(album + "/12 - Band - Dusk.mp3", "tracknumber"), "12");
    EXPECT_EQ(mutagenTag(album + "/12 - Band - Dusk.mp3", "albumartist"), "Band");
    EXPECT_EQ(mutagenTag(album + "/12 - Band - Dusk.mp3", "album"), "First Light");

    orvaneCli({"organize", "6", album, "--set", "yourTag2=1", "--set", "yourTag3=0", "--set", "yourDel1=. "});
    orvaneCli({"organize", "10", album, "--set", "yourSuffix= (live)"});

    const QString renamed = root.path() + "/Band - First Light (live)";
    const QStringList expected{renamed + "/03. Dawn.mp3", renamed + "/12. Dusk.mp3"};
    QStringList locations;
    for (const QString &line : orvaneCli({"library", "list", "--json"}).split('\n', Qt::SkipEmptyParts))
        locations.append(QJsonDocument::fromJson(line.toUtf8()).object().value("location").toString());
    locations.sort();
    EXPECT_EQ(locations, expected);
    for (const QString &file : expected)
        EXPECT_TRUE(QFileInfo::exists(file)) << file.toStdString();
    EXPECT_EQ(mutagenTag(expected.first(), "artist"), "Band");
    EXPECT_FALSE(QFileInfo::exists(album));
}

} // namespace
