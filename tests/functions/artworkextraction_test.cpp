#include "artworkfixture.h"

#include "functions/function0019.h"
#include "player/fourcharcode.h"

#include <QDir>

#include <unistd.h>

namespace {

// A folder nobody may write to while the object lives. Permissions do not stop root, so for
// root the folder is also made immutable (chattr), where the file system allows it.
class ReadOnlyFolder
{
public:
    explicit ReadOnlyFolder(const QString &path) : path_(path)
    {
        QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner | QFile::ReadGroup | QFile::ExeGroup);
        if (geteuid() == 0)
            immutable_ = QProcess::execute("chattr", {"+i", path}) == 0;
    }
    ~ReadOnlyFolder()
    {
        if (immutable_)
            QProcess::execute("chattr", {"-i", path_});
        QFile::setPermissions(path_, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    bool isWritable() const
    {
        QFile probe(path_ + "/.probe");
        const bool written = probe.open(QIODevice::WriteOnly);
        if (written)
            probe.remove();
        return written;
    }

private:
    QString path_;
    bool immutable_ = false;
};

using ArtworkExtractionTest = ArtworkLibraryTest;

QStringList filesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

TEST_F(ArtworkExtractionTest, ArtworkFilesAreNamedAfterVideoCompilationOrAlbum)
{
    const auto name = [this](const MemoryProperties &properties) {
        return Function0019::extractBaseName(player->handle<ITunesFileTrack>(
            player->addFileTrack("Song", "/m/s.mp3", properties)));
    };
    EXPECT_EQ(name({{Prop::album, "Album"}, {Prop::artist, "Artist"}}), "Artist - Album");
    EXPECT_EQ(name({{Prop::album, "Album"}, {Prop::artist, "Artist"}, {Prop::albumArtist, "Band"}}), "Band - Album");
    EXPECT_EQ(name({{Prop::album, "Same"}, {Prop::artist, "Same"}}), "Same");
    EXPECT_EQ(name({{Prop::album, "Hits"}, {Prop::artist, "Artist"}, {Prop::compilation, true}}), "Hits");
    EXPECT_EQ(name({{Prop::artist, "Artist"}}), "");
    EXPECT_EQ(name({{Prop::album, "Album"}, {Prop::videoKind, qint64(fourCharCode("kVdM"))}}), "Song");
}

TEST_F(ArtworkExtractionTest, ArtworksAreWrittenOnceAsStoredOrAsChosen)
{
    const ITunesFileTrack first = addTrack("Album/CD1", "1.mp3");
    const ITunesFileTrack second = addTrack("Album/CD2", "2.m4a");
    const ITunesFileTrack loose = addTrack("Loose", "3.flac", "", "Someone");
    for (const ITunesFileTrack &track : {first, second, loose}) {
        track.artworkAt(0).setRawData(makePicture(QSize(30, 20), "PNG"));
        track.artworkAt(1).setRawData(makePicture(QSize(20, 30), "JPEG"));
        track.saveTags();
    }
    EXPECT_EQ(check(19, {{"yourExtractArtworkA", false}}), -1);

    run(19, {{"yourExtractOption", 1}, {"yourExtractArtworkA", true}, {"yourExtractArtworkB", true}});
    EXPECT_EQ(states, (QList<qint64>{1, 0, 0}));
    EXPECT_EQ(filesIn(music("Album")), (QStringList{"Artist - Album_Cover A.png", "Artist - Album_Cover B.jpg"}));
    EXPECT_EQ(QImage(music("Album/Artist - Album_Cover B.jpg")).size(), QSize(20, 30));
    EXPECT_EQ(filesIn(music("Loose")), QStringList{"3.flac"}); // no album, no file

    // A chosen type and folder; a file present at the exact name is kept.
    const QString chosen = music("Chosen");
    QDir().mkpath(chosen);
    writeFile(chosen + "/Artist - Album_Cover A.bmp", "kept");
    frontEnd.folderAnswer = chosen;
    run(19, {{"yourExtractOption", 2}, {"yourExtractTyp", 4}});
    EXPECT_EQ(filesIn(chosen), (QStringList{"Artist - Album_Cover A.bmp", "Artist - Album_Cover B.bmp"}));
    EXPECT_EQ(readFile(chosen + "/Artist - Album_Cover A.bmp"), "kept");
    EXPECT_EQ(QImage(chosen + "/Artist - Album_Cover B.bmp").size(), QSize(20, 30));

    // A folder that cannot be written to: the track's error, and no file begun.
    frontEnd.folderAnswer = music("Loose/3.flac");
    run(19, {{"yourExtractTyp", 1}});
    EXPECT_EQ(states, (QList<qint64>{-1, -1, 0}));
    EXPECT_EQ(filesIn(music("Loose")), QStringList{"3.flac"});

    // Cancelling the folder question runs nothing.
    frontEnd.folderAnswer.clear();
    run(19);
    EXPECT_TRUE(states.isEmpty());
}

TEST_F(ArtworkExtractionTest, LyricsFilesAreWrittenOnce)
{
    const ITunesFileTrack track = addTrack("Album", "1.mp3", "Album", "A/B");
    track.setLyrics("First words\nsecond line");
    track.saveTags();
    addTrack("Album", "2.mp3"); // no lyrics
    EXPECT_EQ(check(20, {{"yourExtractOption", 1}, {"yourExtractToAlbumSubFolderName", ""}}), -1);

    run(20, {{"yourExtractToAlbumSubFolderName", "Lyrics"}});
    EXPECT_EQ(states, (QList<qint64>{1, 0}));
    const QString file = music("Album/Lyrics/A B - 1.mp3.txt");
    EXPECT_EQ(QString::fromUtf8(readFile(file)), "First words\nsecond line");
    track.setLyrics("Changed");
    track.saveTags();
    run(20);
    EXPECT_EQ(states, (QList<qint64>{0, 0}));
    EXPECT_EQ(QString::fromUtf8(readFile(file)), "First words\nsecond line");

    frontEnd.folderAnswer = music("Out");
    run(20, {{"yourExtractOption", 2}});
    EXPECT_EQ(QString::fromUtf8(readFile(music("Out/A B/A B - 1.mp3.txt"))), "Changed");
}

TEST_F(ArtworkExtractionTest, ImageFilesAreRenamedWithoutReplacingAny)
{
    addTrack("Album/CD1", "1.mp3");
    addTrack("Album/CD1", "2.mp3");
    writeFile(music("Album/Front.JPG"), "f");
    writeFile(music("Album/back side.png"), "b");
    writeFile(music("Album/front.txt"), "not an image");
    EXPECT_EQ(check(23, {{"yourIdentifierArtworkBack", "FRONT"}}), -3);
    EXPECT_EQ(check(23, {{"yourRenameArtworkBack", false}, {"yourIdentifierArtworkFront", ""}}), -1);

    // After the folder: the second track finds nothing left to rename.
    run(23, {{"yourRenameArtworkBack", true}, {"yourIdentifierArtworkFront", "front"},
             {"yourIdentifierArtworkBack", "back"}});
    EXPECT_EQ(states, (QList<qint64>{1, 0}));
    EXPECT_EQ(filesIn(music("Album")),
              (QStringList{"Album_Cover A.JPG", "Album_Cover B.png", "front.txt"}));

    // After tags; a separator goes with its left-out tag. A taken name is never replaced.
    writeFile(music("Album/front2.gif"), "new front");
    writeFile(music("Album/Artist_Cover A.gif"), "taken");
    run(23, {{"yourRenameOption", 2}, {"yourTag1", 2}, {"yourTag2", 0}, {"yourTag3", 0},
             {"yourIdentifierArtworkFront", "front"}, {"yourIdentifierArtworkBack", "Cover B"}});
    EXPECT_EQ(states, (QList<qint64>{1, 0}));
    EXPECT_EQ(readFile(music("Album/Artist_Cover A.gif")), "taken");
    EXPECT_EQ(readFile(music("Album/front2.gif")), "new front");
    EXPECT_EQ(readFile(music("Album/Artist_Cover B.png")), "b");
}

TEST_F(ArtworkExtractionTest, ImageFilesMoveToTheSubfolderAndBack)
{
    addTrack("Album/CD1", "1.mp3");
    addTrack("Album/CD2", "2.mp3");
    writeFile(music("Album/a.jpg"), "a");
    writeFile(music("Album/b.PNG"), "b");
    writeFile(music("Album/notes.txt"), "stays");
    EXPECT_EQ(check(24, {{"yourArtworkSubFolderName", ""}}), -1);
    EXPECT_EQ(check(24, {{"yourArtworkSubFolderName", ".."}}), -3);

    run(24, {{"yourArtworkSubFolderName", "Cover"}});
    EXPECT_EQ(states, (QList<qint64>{1, 0})); // the second track finds no image left
    EXPECT_EQ(filesIn(music("Album/Cover")), (QStringList{"a.jpg", "b.PNG"}));
    EXPECT_EQ(filesIn(music("Album")), QStringList{"notes.txt"});

    // Back, with an image in the album folder in the way: stop, or delete it.
    writeFile(music("Album/c.gif"), "c");
    writeFile(music("Album/Cover/lost.txt"), "goes with the folder");
    run(24, {{"yourMoveOption", 2}});
    EXPECT_EQ(states, (QList<qint64>{0, 0}));
    run(24, {{"yourMoveFromArtworkSubFolderToAlbumFolderOption", 2}});
    EXPECT_EQ(states, (QList<qint64>{1, 0}));
    EXPECT_EQ(filesIn(music("Album")), (QStringList{"a.jpg", "b.PNG", "notes.txt"}));
    EXPECT_FALSE(QFileInfo::exists(music("Album/Cover")));

    // An existing subfolder stops the move unless it may be replaced.
    QDir().mkpath(music("Album/Cover"));
    writeFile(music("Album/Cover/old.bmp"), "old");
    run(24, {{"yourMoveOption", 1}});
    EXPECT_EQ(states, (QList<qint64>{0, 0}));
    run(24, {{"yourMoveFromAlbumFolderToArtworkSubFolderOption", 2}});
    EXPECT_EQ(filesIn(music("Album/Cover")), (QStringList{"a.jpg", "b.PNG"}));
}

// What cannot be written fails the track with its reason and leaves the folder as it was.
TEST_F(ArtworkExtractionTest, AReadOnlyAlbumFolderFailsEachTrackAndKeepsItsFiles)
{
    const ITunesFileTrack track = addTrack("Album", "1.mp3");
    track.artworkAt(0).setRawData(makePicture(QSize(30, 20), "PNG"));
    track.saveTags();
    writeFile(music("Album/front.jpg"), "f");
    const QStringList before = filesIn(music("Album"));
    const ReadOnlyFolder readOnly(music("Album"));
    if (readOnly.isWritable())
        GTEST_SKIP() << "this user can write to any folder here";

    const QList<std::pair<int, QVariantMap>> runs{{19, {{"yourExtractOption", 1}}},
                                                  {23, {{"yourIdentifierArtworkBack", "nothing"}}},
                                                  {24, {}}};
    for (const auto &[number, settings] : runs) {
        run(number, settings);
        EXPECT_EQ(states, QList<qint64>{-1}) << number;
        EXPECT_EQ(filesIn(music("Album")), before) << number;
        const QList<QVariantMap> errors = pool->myFunctionPoolErrorLog()->yourErrorLogEntries();
        ASSERT_FALSE(errors.isEmpty());
        QString error;
        for (const QVariant &value : errors.last())
            error += value.toString();
        EXPECT_TRUE(error.contains(music("Album"))) << error.toStdString();
    }
}

} // namespace
