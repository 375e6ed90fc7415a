#include "services/radio/ovbeats1infoloader.h"
#include "services/radio/radioinfo.h"

#include "audiofixtures.h"
#include "localhttpserver.h"
#include "testenvironment.h"

#include <QBuffer>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace RadioInfo;

namespace {

QByteArray bigEndian(quint32 value)
{
    const char bytes[] = {char(value >> 24), char(value >> 16), char(value >> 8), char(value)};
    return QByteArray(bytes, 4);
}

// An ID3v2.3 text frame as the station writes it: key, size, two flag bytes, encoding 3 (UTF-8).
QByteArray textFrame(const QByteArray &key, const QString &value)
{
    const QByteArray body = '\x03' + value.toUtf8();
    return key + bigEndian(quint32(body.size())) + QByteArray(2, '\0') + body;
}

// A whole tag: header with a synchsafe size, then the frames.
QByteArray id3Tag(const QByteArray &frames)
{
    const quint32 n = quint32(frames.size());
    QByteArray header("ID3\x03\x00\x00", 6);
    header += char((n >> 21) & 0x7f);
    header += char((n >> 14) & 0x7f);
    header += char((n >> 7) & 0x7f);
    header += char(n & 0x7f);
    return header + frames;
}

QByteArray showTag(const QString &title, const QString &artist, const QString &album, const QString &artwork)
{
    QByteArray frames = textFrame("TIT2", title) + textFrame("TPE1", artist) + textFrame("TALB", album);
    if (!artwork.isEmpty())
        frames += textFrame("TXXX", QStringLiteral("artwork") + QChar(0) + artwork);
    return id3Tag(frames);
}

QString stamp(const QDateTime &date)
{
    return date.toUTC().toString(QStringLiteral("yyyyMMdd'T'HHmmss")) + QLatin1Char('Z');
}

QByteArray jpeg(QColor color)
{
    QImage image(40, 40, QImage::Format_RGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPG");
    return bytes;
}

} // namespace

TEST(RadioInfo, PlaylistLinesAndTheChosenSegment)
{
    const QString playlist = QStringLiteral("#EXTM3U\n#EXT-X-TARGETDURATION:10\r\n"
                                            "a.aac\nb.AAC\nnote.aac.txt\n#c.aac\nd.aac\n");
    EXPECT_EQ(playlistTracksFromText(playlist), QStringList({"a.aac", "b.AAC", "#c.aac", "d.aac"}));
    EXPECT_TRUE(playlistTracksFromText(QStringLiteral("#EXTM3U\nsegment.ts\n")).isEmpty());

    EXPECT_EQ(chooseTrack({"1"}), "1");
    EXPECT_EQ(chooseTrack({"1", "2", "3"}), "3");
    EXPECT_EQ(chooseTrack({"1", "2", "3", "4"}), "2");
    EXPECT_EQ(chooseTrack({"1", "2", "3", "4", "5", "6"}), "4");
    EXPECT_TRUE(chooseTrack({}).isEmpty());
}

TEST(RadioInfo, SegmentDatesDurationsAndTheWait)
{
    const auto date = trackDateFromName(QStringLiteral("path/x/prog-64k-20240102T030405Z.aac"));
    ASSERT_TRUE(date);
    EXPECT_EQ(date->toUTC(), QDateTime(QDate(2024, 1, 2), QTime(3, 4, 5), Qt::UTC));
    const auto east = trackDateFromName(QStringLiteral("seg-20240102T030405+02:00.aac"));
    ASSERT_TRUE(east);
    EXPECT_EQ(east->toUTC(), QDateTime(QDate(2024, 1, 2), QTime(1, 4, 5), Qt::UTC));
    EXPECT_FALSE(trackDateFromName(QStringLiteral("segment-0042.aac")));
    EXPECT_FALSE(trackDateFromName(QStringLiteral("seg-20241340T030405Z.aac")));
    EXPECT_FALSE(trackDateFromName(QString()));

    EXPECT_EQ(playlistTargetDuration(QStringLiteral("#EXTM3U\n#EXT-X-TARGETDURATION:10\nx.aac")), 10.0);
    EXPECT_EQ(playlistTargetDuration(QStringLiteral("#ext-x-targetduration:0\n#EXT-X-TARGETDURATION:6.5")), 6.5);
    EXPECT_EQ(playlistTargetDuration(QStringLiteral("#EXTM3U\nx.aac")), 0.0);

    const QDateTime now(QDate(2024, 1, 2), QTime(3, 4, 10), Qt::UTC);
    // Ends at 03:04:15, five seconds from now, then one second more.
    EXPECT_DOUBLE_EQ(loadingTimeInterval(date, 10.0, now), 6.0);
    // An end in the past is as far off as it is old.
    EXPECT_DOUBLE_EQ(loadingTimeInterval(date, 10.0, now.addSecs(20)), 16.0);
    EXPECT_EQ(loadingTimeInterval(std::nullopt, 10.0, now), 0.0);
    EXPECT_EQ(loadingTimeInterval(date, 0.0, now), 0.0);
}

TEST(RadioInfo, FramesAreReadWithinTheDataOnly)
{
    const QByteArray tag = showTag(QStringLiteral("Night\nShow"), QStringLiteral("Zoë"), QStringLiteral("Album"),
                                   QStringLiteral("http://127.0.0.1/a.jpg"));
    const QByteArray data = tag + QByteArray(64, '\xff');
    EXPECT_EQ(frameText("TIT2", data), QStringLiteral("Night Show"));
    EXPECT_EQ(frameText("TPE1", data), QStringLiteral("Zoë"));
    EXPECT_EQ(frameText("TALB", data), QStringLiteral("Album"));
    EXPECT_TRUE(frameText("TCON", data).isEmpty());
    EXPECT_TRUE(frameText("", data).isEmpty());

    // A frame cut off by the end of the fetched bytes is dropped.
    const QByteArray frame = textFrame("TIT2", QStringLiteral("A long title"));
    EXPECT_TRUE(frameText("TIT2", frame.left(frame.size() - 1)).isEmpty());
    EXPECT_EQ(frameText("TIT2", frame), QStringLiteral("A long title"));
    // A size that lies far beyond the data, and one of 0.
    EXPECT_TRUE(frameText("TIT2", QByteArray("TIT2\xff\xff\xff\xf0\0\0\x03title", 15)).isEmpty());
    EXPECT_FALSE(frameRange("TIT2", QByteArray("TIT2\0\0\0\0\0\0\x03title", 15)));
    // The key in the last seven bytes has no room for its size.
    const QByteArray tail = QByteArray(20, 'x') + "TIT2\0\0\x01";
    EXPECT_FALSE(frameRange("TIT2", tail));
    EXPECT_FALSE(frameRange("TIT2", QByteArray("TIT2\0\0")));
    const auto range = frameRange("TIT2", QByteArray(20, 'x') + frame);
    ASSERT_TRUE(range);
    EXPECT_EQ(range->offset, 30);
    EXPECT_EQ(range->size, frame.size() - 10);
    // Bytes that aren't UTF-8 give nothing rather than replacement characters.
    EXPECT_TRUE(frameText("TIT2", QByteArray("TIT2\0\0\0\x03\0\0\x01\xff\xfe", 13)).isEmpty());
}

TEST(RadioInfo, ArtworkAddressFollowsTheWordArtwork)
{
    EXPECT_EQ(artworkWebAddress(QByteArray("..artwork\0http://h/p/cover.jpg\0more.jpg", 39)),
              QStringLiteral("http://h/p/cover.jpg"));
    EXPECT_TRUE(artworkWebAddress("http://h/p/cover.jpg artwork").isEmpty());
    EXPECT_TRUE(artworkWebAddress("artwork http://h/p/cover.png").isEmpty());
    EXPECT_TRUE(artworkWebAddress("no word http://h/cover.jpg").isEmpty());
    EXPECT_TRUE(artworkWebAddress(QByteArray("artwork http://h\0/cover.jpg", 27)).isEmpty());
}

// A local station: a media playlist whose segments are real AAC files with the show's ID3 tag
// in front, and the artwork at the address the tag names.
class RadioStationTest : public ::testing::Test
{
protected:
    RadioStationTest()
    {
        qputenv("ORVANE_RADIO_PLAYLIST_URL", (server.baseUrl() + "/streams/64k/prog.m3u8").toUtf8());
        const QString audioPath = makeAudio(folder.path(), QStringLiteral("sine.aac"));
        QFile file(audioPath);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        audio = file.readAll();
        EXPECT_GT(audio.size(), 1000);
    }

    // Serves a playlist of segments starting `age` seconds ago, each with its own show.
    void servePlaylist(const QStringList &titles, qint64 age, const QByteArray &extra = {})
    {
        const QDateTime start = QDateTime::currentDateTimeUtc().addSecs(-age);
        QByteArray playlist = "#EXTM3U\n#EXT-X-TARGETDURATION:10\n" + extra;
        for (int i = 0; i < titles.size(); ++i) {
            const QString name = QStringLiteral("seg-%1-%2.aac").arg(i).arg(stamp(start.addSecs(10 * i)));
            playlist += "#EXTINF:10,\n" + name.toUtf8() + "\n";
            const QString art = server.baseUrl() + "/art/" + titles.at(i) + ".jpg";
            server.respond("/streams/64k/" + name,
                           ScriptedResponse::text(showTag(titles.at(i), "DJ " + titles.at(i), "Live", art) + audio,
                                                  "audio/aac"));
        }
        server.respond("/streams/64k/prog.m3u8", ScriptedResponse::text(playlist, "application/vnd.apple.mpegurl"));
    }

    bool waitForUpdate(OVBeats1InfoLoader &loader, QSignalSpy &spy, qsizetype count)
    {
        return waitUntil([&] { return spy.size() >= count && loader.loadingAction() != OVBeats1InfoLoader::Action::Playlist; });
    }

    QTemporaryDir folder;
    LocalHttpServer server;
    QByteArray audio;
};

TEST_F(RadioStationTest, LoaderReadsTheShowAndFollowsThePlaylist)
{
    server.respond("/art/First.jpg", ScriptedResponse::text(jpeg(Qt::red), "image/jpeg"));
    server.respond("/art/Second.jpg", ScriptedResponse::text(jpeg(Qt::blue), "image/jpeg"));
    // Four segments: the second is read. The third from the end ends 20 s from its start.
    servePlaylist({"Old", "First", "Newer", "Newest"}, 25);

    OVBeats1InfoLoader loader;
    QSignalSpy spy(&loader, &OVBeats1InfoLoader::updated);
    ASSERT_TRUE(loader.start());
    ASSERT_TRUE(waitUntil([&] { return spy.size() >= 1; }));
    EXPECT_EQ(loader.infoTrackName(), "First");
    EXPECT_EQ(loader.infoTrackArtist(), "DJ First");
    EXPECT_EQ(loader.infoTrackAlbum(), "Live");
    ASSERT_FALSE(loader.infoTrackArtwork().isNull());
    EXPECT_GT(qRed(loader.infoTrackArtwork().pixel(20, 20)), 200);
    EXPECT_TRUE(loader.isWaiting());
    // The segment started 15 s ago and lasts 10: its end is 5 s past, so the wait is about 6 s.
    EXPECT_NEAR(loader.playlistLoadingTimeInterval(), 6.0, 1.5);

    const QList<RecordedRequest> requests = server.requests();
    ASSERT_EQ(requests.size(), 3);
    EXPECT_TRUE(requests.at(1).path().startsWith("/streams/64k/seg-1-"));
    EXPECT_EQ(requests.at(1).header("Range"), "bytes=0-8192");

    // The station moves on; the next round, started by the wait, reads the new show.
    servePlaylist({"Before", "Between", "Second"}, 25);
    ASSERT_TRUE(waitUntil([&] { return loader.infoTrackName() == "Second"; }, 60000));
    ASSERT_TRUE(waitUntil([&] { return !loader.infoTrackArtwork().isNull(); }));
    EXPECT_GT(qBlue(loader.infoTrackArtwork().pixel(20, 20)), 200);
}

TEST_F(RadioStationTest, BadAnswersEndTheRoundEmptyAndTheLoaderGoesOn)
{
    OVBeats1InfoLoader loader;
    QSignalSpy spy(&loader, &OVBeats1InfoLoader::updated);
    auto round = [&](qsizetype n) {
        spy.clear();
        loader.start();
        return waitUntil([&] { return spy.size() >= n; });
    };

    // No ".aac" line.
    server.respond("/streams/64k/prog.m3u8", ScriptedResponse::text("#EXTM3U\n#EXT-X-TARGETDURATION:10\nx.ts\n"));
    ASSERT_TRUE(round(1));
    EXPECT_TRUE(loader.infoTrackName().isEmpty());
    EXPECT_TRUE(loader.isWaiting());
    EXPECT_EQ(loader.playlistLoadingTimeInterval(), 0.0);

    // A playlist of 10 MB.
    server.respond("/streams/64k/prog.m3u8", ScriptedResponse::text(QByteArray(10 * 1024 * 1024, 'a') + "\nx.aac\n"));
    ASSERT_TRUE(round(1));
    EXPECT_TRUE(loader.infoTrackName().isEmpty());

    // A segment of binary garbage, and one whose frames' sizes lie.
    server.respond("/streams/64k/prog.m3u8", ScriptedResponse::text("#EXTM3U\nseg-1.aac\n"));
    QByteArray garbage(9000, '\0');
    for (int i = 0; i < garbage.size(); ++i)
        garbage[i] = char((i * 7919) % 251);
    const QByteArray lying = QByteArrayLiteral("ID3\x03\0\0\0\0\0\x20TIT2\x7f\xff\xff\xff\0\0\x03Title"
                                               " artwork http://127.0.0.1:1/a.jpg");
    for (const QByteArray &body : {garbage, lying}) {
        server.respond("/streams/64k/seg-1.aac", ScriptedResponse::text(body, "audio/aac"));
        ASSERT_TRUE(round(1));
        EXPECT_TRUE(loader.infoTrackName().isEmpty());
        EXPECT_TRUE(loader.infoTrackArtwork().isNull());
    }

    // Artwork that isn't an image: the texts stay, the picture is missing.
    server.respond("/streams/64k/seg-1.aac",
                   ScriptedResponse::text(showTag("Talk", "Host", "Live", server.baseUrl() + "/art/x.jpg") + audio));
    server.respond("/art/x.jpg", ScriptedResponse::text("<html>not found</html>", "image/jpeg"));
    ASSERT_TRUE(round(1));
    EXPECT_EQ(loader.infoTrackName(), "Talk");
    EXPECT_TRUE(loader.infoTrackArtwork().isNull());

    // A server that stops answering mid-round: the request gives up and the round ends empty.
    server.respond("/art/x.jpg", ScriptedResponse::silent());
    ASSERT_TRUE(round(1));
    EXPECT_EQ(loader.infoTrackName(), "Talk");
    EXPECT_TRUE(loader.infoTrackArtwork().isNull());
    server.respond("/streams/64k/seg-1.aac", ScriptedResponse::silent());
    ASSERT_TRUE(round(1));
    EXPECT_TRUE(loader.infoTrackName().isEmpty());
    EXPECT_TRUE(loader.isWaiting());

    // Stopping mid-transfer ends the round without a word.
    loader.start();
    EXPECT_TRUE(loader.stop());
    EXPECT_FALSE(loader.stop());
    EXPECT_EQ(loader.loadingAction(), OVBeats1InfoLoader::Action::None);
}
