#include "artworkfixture.h"
#include "function0011fixture.h"
#include "testenvironment.h"

#include "pool/trackadvanced.h"

#include <QDir>

namespace {

// The pictures of a file as python3-mutagen reads them: "MIME WIDTHxHEIGHT" in their order.
QStringList mutagenPictures(const QString &path)
{
    QProcess python;
    python.start("/usr/bin/python3", {sourceDirectory() + "/tests/functions/embeddedpictures.py", path});
    EXPECT_TRUE(python.waitForFinished(30000) && python.exitCode() == 0)
        << python.readAllStandardError().toStdString();
    return QString::fromUtf8(python.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
}

// A library of MP3, M4A and FLAC files organised through orvane-cli, read back by python3-mutagen
// and by a library opened afterwards.
TEST(ArtworkCli, EmbeddedScaledExtractedAndMovedThroughOrvaneCli)
{
    QTemporaryDir dir;
    const QString album = dir.filePath("Music/Band - Record");
    const QStringList files{makeAudio(album + "/CD1", "1.mp3"), makeAudio(album + "/CD1", "2.m4a"),
                            makeAudio(album + "/CD2", "3.flac")};
    writeFile(album + "/Record_Cover A.jpg", makePicture(QSize(1500, 1500), "JPEG"));
    writeFile(album + "/Record_cover b.png", makePicture(QSize(300, 400), "PNG", Qt::blue));
    orvaneCli({"library", "add", album});

    orvaneCli({"organize", "25", album, "--set", "yourBackArtworkEmbed=true", "--set", "yourBackArtworkSize=2"});
    // Swapped and swapped back: the order survives the round trip through the files.
    orvaneCli({"organize", "13", album, "--set", "yourCopySwapChoose=2", "--set", "yourSourceArtwork=1",
               "--set", "yourTargetArtwork=2"});
    orvaneCli({"organize", "13", album, "--set", "yourCopySwapChoose=2", "--set", "yourSourceArtwork=2",
               "--set", "yourTargetArtwork=1"});
    orvaneCli({"organize", "22", album, "--set", "yourScaleArtworkTargetPosition=2", "--set",
               "yourScaleArtworkOption=2", "--set", "yourScaleArtworkTargetSize=100"});
    for (const QString &file : files)
        EXPECT_EQ(mutagenPictures(file), (QStringList{"image/jpeg 500x500", "image/png 75x100"}))
            << file.toStdString();

    // Named after "album artist - album", which come from the folder's name.
    orvaneCli({"organize", "9", album, "--set", "yourTag1=4", "--set", "yourTag2=3", "--set", "yourDel= - "});
    const QString out = dir.filePath("Out");
    QDir().mkpath(out);
    orvaneCli({"organize", "19", album, "--folder", out, "--set", "yourExtractArtworkB=true"});
    EXPECT_EQ(QDir(out).entryList(QDir::Files), (QStringList{"Band - Record_Cover A.jpg", "Band - Record_Cover B.png"}));
    EXPECT_EQ(QImage(out + "/Band - Record_Cover B.png").size(), QSize(75, 100));
    // Lyrics out into the album folder's "Lyrics", one text file per track.
    orvaneCli({"organize", "17", album, "--set", "yourOptionChoosen=1", "--set", "yourPerformOnTrackInfo=1"});
    orvaneCli({"organize", "5", album, "--set", "yourPerformOn=16", "--set", "yourAddText=La la la"});
    orvaneCli({"organize", "20", album, "--set", "yourExtractOption=1"});
    const QStringList lyrics = QDir(album + "/Lyrics").entryList(QDir::Files);
    EXPECT_EQ(lyrics, (QStringList{" - 1.txt", " - 2.txt", " - 3.txt"}));
    for (const QString &name : lyrics)
        EXPECT_EQ(readFile(album + "/Lyrics/" + name), "La la la") << name.toStdString();

    orvaneCli({"organize", "24", album});
    EXPECT_EQ(QDir(album + "/Cover").entryList(QDir::Files),
              (QStringList{"Record_Cover A.jpg", "Record_cover b.png"}));

    LibraryBackend reopened;
    const ITunesApplication app = ITunesApplication::withBackend(
        std::shared_ptr<LibraryBackend>(&reopened, [](LibraryBackend *) {}));
    const QList<ITunesFileTrack> tracks = app.sources().value(0).libraryPlaylists().value(0).fileTracks();
    ASSERT_EQ(tracks.size(), 3);
    for (const ITunesFileTrack &track : tracks) {
        const ITunesTrackAdvanced advanced(track, 0, 1);
        EXPECT_EQ(advanced.artworksCount(), mutagenPictures(track.location()).size());
        EXPECT_EQ(advanced.artworkBackHeight(), 100);
    }
}

} // namespace
