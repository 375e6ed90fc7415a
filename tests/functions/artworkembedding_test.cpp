#include "artworkfixture.h"

#include "pool/functionpoolpreferences.h"

#include <QDir>

namespace {

using ArtworkEmbeddingTest = ArtworkLibraryTest;

TEST_F(ArtworkEmbeddingTest, EmbedChecksItsIdentifiers)
{
    EXPECT_EQ(check(25, {{"yourFrontArtworkEmbed", false}, {"yourBackArtworkEmbed", false}}), -1);
    EXPECT_EQ(check(25, {{"yourBackArtworkEmbed", true}, {"yourIdentifierBackArtwork", ""}}), -1);
    EXPECT_EQ(check(25, {{"yourFrontArtworkEmbed", true}, {"yourIdentifierFrontArtwork", "_Cover A"},
                         {"yourIdentifierBackArtwork", "_cover"}}),
              -3);
    EXPECT_EQ(check(25, {{"yourIdentifierBackArtwork", "_Cover B"}}), 1);
    EXPECT_TRUE(pool->myFunction(25)->property("enableBackArtworkOptions").toBool());
}

// Front and back from the album folder into each format, found ignoring case, scaled by the
// side rules, in the order of the positions; the file and the library agree.
TEST_F(ArtworkEmbeddingTest, EmbedsFrontAndBackFromTheAlbumFolder)
{
    const QString album = music("Album");
    QList<ITunesFileTrack> tracks;
    for (const QString name : {"1.mp3", "2.m4a", "3.flac"})
        tracks.append(addTrack("Album/CD1", name));
    const QByteArray front = makePicture(QSize(600, 400), "JPEG");
    writeFile(album + "/scan_cover a.JPG", front);              // lower case, upper-case suffix
    writeFile(album + "/x_Cover B.tif", makePicture(QSize(400, 300), "TIFF", Qt::green)); // embedded as PNG
    writeFile(album + "/_Cover B.txt", "not an image suffix");

    EXPECT_TRUE(run(25, {{"yourBackArtworkEmbed", true}, {"yourBackScaleArtworkUp", true}}).isEmpty());
    EXPECT_EQ(states, (QList<qint64>{1, 1, 1}));
    for (const ITunesFileTrack &track : tracks) {
        SCOPED_TRACE(track.location().toStdString());
        // 600 x 400 is not above 500 on both sides: the size stays, the encoding is fresh.
        EXPECT_EQ(fileSizes(track), (QList<QSize>{QSize(600, 400), QSize(500, 375)}));
        EXPECT_EQ(librarySizes(track), fileSizes(track));
        const QList<ITunesArtwork> artworks = track.artworks();
        EXPECT_NE(artworks.value(0).rawData(), front);
        EXPECT_TRUE(artworks.value(0).rawData().startsWith("\xFF\xD8"));
        EXPECT_TRUE(artworks.value(1).rawData().startsWith("\x89PNG"));
    }

    // The positions are taken now; without replace nothing happens, with it the front returns.
    EXPECT_TRUE(run(25).isEmpty());
    EXPECT_EQ(states, (QList<qint64>{0, 0, 0}));
    writeFile(album + "/scan_cover a.JPG", makePicture(QSize(1000, 800), "JPEG"));
    run(25, {{"yourBackArtworkEmbed", false}, {"yourFrontArtworkReplace", true}});
    EXPECT_EQ(fileSizes(tracks.at(2)), (QList<QSize>{QSize(500, 400), QSize(500, 375)}));

    // An identifier found only in the extension finds nothing.
    run(25, {{"yourIdentifierFrontArtwork", "jpg"}, {"yourFrontArtworkSize", 0}});
    EXPECT_EQ(states, (QList<qint64>{0, 0, 0}));
}

TEST_F(ArtworkEmbeddingTest, CopyAndSwapKeepTheirRules)
{
    const ITunesFileTrack two = addTrack("A", "two.mp3");
    two.artworkAt(0).setRawData(makePicture(QSize(10, 10), "PNG", Qt::red));
    two.artworkAt(1).setRawData(makePicture(QSize(20, 20), "JPEG", Qt::blue));
    two.saveTags();
    const ITunesFileTrack one = addTrack("B", "one.flac");
    one.artworkAt(0).setRawData(makePicture(QSize(30, 30), "PNG"));
    one.saveTags();

    EXPECT_EQ(check(13, {{"yourSourceArtwork", 1}, {"yourTargetArtwork", 1}}), -3);
    EXPECT_EQ(check(13, {{"yourTargetArtwork", 0}}), -2);
    EXPECT_EQ(check(13, {{"yourSourceArtwork", 0}, {"yourTargetOption", 2}}), -2);

    // Swap with the last: the one-artwork track has source and target alike.
    run(13, {{"yourSourceArtwork", 1}, {"yourCopySwapChoose", 2}});
    EXPECT_EQ(states, (QList<qint64>{1, 0}));
    EXPECT_EQ(fileSizes(two), (QList<QSize>{QSize(20, 20), QSize(10, 10)}));
    EXPECT_TRUE(two.artworks().value(0).rawData().startsWith("\xFF\xD8")); // bytes moved, not re-encoded

    // A swap never creates an artwork.
    run(13, {{"yourTargetOption", 1}, {"yourTargetArtwork", 3}});
    EXPECT_EQ(states, (QList<qint64>{0, 0}));

    // Copy to the last where the source is last: nothing. Beyond the last: a new artwork.
    run(13, {{"yourCopySwapChoose", 1}, {"yourTargetOption", 2}});
    EXPECT_EQ(states, (QList<qint64>{1, 0}));
    EXPECT_EQ(fileSizes(two), (QList<QSize>{QSize(20, 20), QSize(20, 20)}));
    run(13, {{"yourTargetOption", 1}, {"yourTargetArtwork", 5}});
    EXPECT_EQ(fileSizes(one), (QList<QSize>{QSize(30, 30), QSize(30, 30)}));
    EXPECT_EQ(librarySizes(one), fileSizes(one));

    // A taken target needs the overwrite setting.
    run(13, {{"yourSourceArtwork", 3}, {"yourTargetArtwork", 1}});
    EXPECT_EQ(states, (QList<qint64>{0, 0}));
    run(13, {{"yourSourceArtwork", 2}, {"yourTargetArtwork", 1}, {"yourCopyOverWrite", true}});
    EXPECT_EQ(states, (QList<qint64>{1, 1}));
}

TEST_F(ArtworkEmbeddingTest, DownloadedArtworkIsEmbeddedOnce)
{
    const ITunesFileTrack bare = addTrack("A", "bare.m4a");
    const ITunesFileTrack own = addTrack("B", "own.mp3");
    own.artworkAt(0).setRawData(makePicture(QSize(8, 8), "PNG"));
    own.saveTags();
    writeFile(music("A/cover.jpg"), makePicture(QSize(40, 30), "JPEG"));
    writeFile(music("B/cover.jpg"), makePicture(QSize(50, 50), "JPEG"));
    ASSERT_TRUE(bare.artworks().value(0).downloaded());

    run(16);
    EXPECT_EQ(states, (QList<qint64>{1, 0}));
    EXPECT_EQ(fileSizes(bare), QList<QSize>{QSize(40, 30)});
    EXPECT_FALSE(bare.artworks().value(0).downloaded());
    EXPECT_EQ(fileSizes(own), QList<QSize>{QSize(8, 8)});
    EXPECT_TRUE(QFile::exists(music("A/cover.jpg"))); // shared by the folder's other tracks
    run(16);
    EXPECT_EQ(states, (QList<qint64>{0, 0}));
}

TEST_F(ArtworkEmbeddingTest, ScalingOneArtworkToAWidthOrHeight)
{
    const ITunesFileTrack track = addTrack("A", "t.flac");
    track.artworkAt(0).setRawData(makePicture(QSize(40, 40), "PNG"));
    track.artworkAt(1).setRawData(makePicture(QSize(800, 600), "JPEG"));
    track.saveTags();
    EXPECT_EQ(check(22, {{"yourScaleArtworkTargetPosition", 0}}), -2);
    EXPECT_EQ(check(22, {{"yourScaleArtworkTargetPosition", 2}, {"yourScaleArtworkTargetSize", 0.5}}), -2);

    run(22, {{"yourScaleArtworkTargetSize", 500.0}});
    EXPECT_EQ(fileSizes(track), (QList<QSize>{QSize(40, 40), QSize(500, 375)}));
    EXPECT_TRUE(track.artworks().value(1).rawData().startsWith("\xFF\xD8"));
    run(22, {{"yourScaleArtworkTargetSize", 1000.0}}); // not enlarged
    EXPECT_EQ(states, QList<qint64>{0});
    run(22, {{"yourScaleArtworkTargetSize", 500.0}, {"yourScaleArtworkUp", true}}); // the width it has
    EXPECT_EQ(states, QList<qint64>{0});
    run(22, {{"yourScaleArtworkOption", 2}, {"yourScaleArtworkTargetSize", 750.0}});
    EXPECT_EQ(fileSizes(track), (QList<QSize>{QSize(40, 40), QSize(1000, 750)}));
    run(22, {{"yourScaleArtworkTargetPosition", 3}});
    EXPECT_EQ(states, QList<qint64>{0});
    EXPECT_EQ(librarySizes(track), fileSizes(track));
}

// Pictures that cannot be read end the track with an error and leave its file as it was.
TEST_F(ArtworkEmbeddingTest, BadPicturesFailTheTrackAndLoseNothing)
{
    const ITunesFileTrack track = addTrack("A", "t.mp3");
    track.artworkAt(0).setRawData(makePicture(QSize(60, 60), "PNG"));
    track.saveTags();
    const QByteArray before = readFile(track.location());
    const QByteArray jpeg = makePicture(QSize(300, 300), "JPEG");
    QImage huge(12000, 12000, QImage::Format_Mono);
    huge.fill(0);
    ASSERT_TRUE(huge.save(music("huge.png")));
    const QList<std::pair<const char *, QByteArray>> pictures{
        {"cannot be decoded", QByteArray("GIF89a\x10\x00\x10\x00\xF7\x00\x00 and then only text")},
        {"not a picture", "plain text"},
        {"cut short", jpeg.left(jpeg.size() / 2)},
        {"12000 x 12000 pixels", readFile(music("huge.png"))}};
    for (const auto &[reason, bytes] : pictures) {
        SCOPED_TRACE(reason);
        writeFile(music("A/_Cover A.gif"), bytes);
        EXPECT_TRUE(run(25, {{"yourFrontArtworkReplace", true}}).isEmpty());
        EXPECT_EQ(states, QList<qint64>{-1});
        EXPECT_EQ(readFile(track.location()), before);
        EXPECT_EQ(QDir(music("A")).entryList(QDir::Files).size(), 2);
        const QList<QVariantMap> errors = pool->myFunctionPoolErrorLog()->yourErrorLogEntries();
        ASSERT_FALSE(errors.isEmpty());
        QString error; // names the file and what is wrong with it
        for (const QVariant &value : errors.last())
            error += value.toString();
        EXPECT_TRUE(error.contains("_Cover A.gif: the") && error.contains(reason)) << error.toStdString();
    }

    // A picture frame whose size field says half of what it holds: the picture read from it is
    // cut short, which fails the track, and the file is never written.
    QByteArray lying = before;
    const qsizetype frame = lying.indexOf("APIC");
    ASSERT_GT(frame, 0);
    const int bits = lying.at(3) == 4 ? 7 : 8; // ID3v2.4 sizes are synchsafe
    qint64 size = 0;
    for (int i = 0; i < 4; ++i)
        size = (size << bits) | quint8(lying.at(frame + 4 + i));
    size /= 2;
    for (int i = 3; i >= 0; --i, size >>= bits)
        lying[frame + 4 + i] = char(size & ((1 << bits) - 1));
    writeFile(track.location(), lying);
    run(22, {{"yourScaleArtworkTargetPosition", 1}, {"yourScaleArtworkTargetSize", 10.0}});
    EXPECT_EQ(states, QList<qint64>{-1});
    EXPECT_EQ(readFile(track.location()), lying);
}

} // namespace
