#include "services/radio/ovbeats1infoloader.h"
#include "services/trackinfo/gui/ovartworkbutton.h"
#include "services/trackinfo/gui/trackinfowindow.h"

#include "localhttpserver.h"
#include "player/memoryplayer.h"

#include <QBuffer>
#include <QDir>
#include <QImage>

#include <gtest/gtest.h>

namespace {

QByteArray jpeg(QColor color, int size = 120)
{
    QImage image(size, size, QImage::Format_RGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPG");
    return bytes;
}

// Saves what the panel shows, for a person to look at.
void shoot(QWidget &window, const QString &name)
{
    const QString folder = qEnvironmentVariable("ORVANE_SCREENSHOT_DIR");
    if (folder.isEmpty())
        return;
    QDir().mkpath(folder);
    EXPECT_TRUE(window.grab().save(folder + "/" + name + ".png"));
}

bool centreIs(const QImage &image, bool (*test)(QRgb))
{
    return !image.isNull() && test(image.pixel(image.width() / 2, image.height() / 2));
}

class TrackInfoWindowTest : public ::testing::Test
{
protected:
    TrackInfoWindowTest()
    {
        player->makeDefault();
        player->setPlayerState(kPSP);
        hooks.anchor = [] { return QPoint(500, 24); };
        hooks.killTargetWindow = [this](int number) { killed = number; };
        hooks.yourTunes = [this] { return player->application(); };
        hooks.updateControllerRating = [this] { ++controllerUpdates; };
    }

    std::unique_ptr<TrackInfoWindow> open()
    {
        auto window = std::make_unique<TrackInfoWindow>(hooks);
        window->preferences().prefFadeTimeIn = 0.05;
        window->preferences().prefFadeTimeOut = 0.05;
        window->orderFrontRegardless();
        EXPECT_TRUE(waitUntil([&] { return window->allowsWindowChanges(); }));
        return window;
    }

    MemoryPlayerPtr player = MemoryPlayer::create();
    TrackInfoWindowHooks hooks;
    int killed = 0;
    int controllerUpdates = 0;
};

} // namespace

TEST_F(TrackInfoWindowTest, ShowsTheTrackAndClosesAfterTheDisplayTime)
{
    auto track = player->addFileTrack("A Song With A Rather Long Title", "/music/song.m4a",
                                      {{Prop::artist, "The Band"}, {Prop::album, "Blue"}, {Prop::duration, 200.0},
                                       {Prop::time, "3:20"}, {Prop::rating, 80}, {Prop::loved, true}});
    QImage red(50, 50, QImage::Format_RGB32);
    red.fill(Qt::red);
    player->addArtwork(track, red);
    player->setCurrentTrack(track);
    player->setApplicationValue(Prop::playerPosition, 65.0);

    auto window = open();
    EXPECT_EQ(window->trackInfoA(), "A Song With A Rather Long Title");
    EXPECT_EQ(window->trackInfoB(), "The Band");
    EXPECT_EQ(window->trackInfoC(), "Blue");
    EXPECT_EQ(window->trackInfoD(), "3:20");
    EXPECT_TRUE(centreIs(window->trackArtwork(), [](QRgb c) { return qRed(c) > 200 && qGreen(c) < 60; }));
    EXPECT_FALSE(window->artworkButton()->isDownloading());
    // Hangs below the strip, its right part beside the anchor, and wide enough for the title.
    EXPECT_EQ(window->geometry().top(), 24);
    EXPECT_GE(window->width(), 265);
    EXPECT_EQ(window->geometry().right(), 500 + 92 + 30 - 1);
    shoot(*window, "trackinfo-artwork");

    // Nothing playing: the three placeholders.
    player->setPlayerState(kPSS);
    window->updateTrackInformations(0);
    EXPECT_EQ(window->trackInfoA(), "Nothing Playing");
    EXPECT_EQ(window->trackInfoB(), "No Artist");
    EXPECT_EQ(window->trackInfoC(), "No Album");

    // The display time ends it; the program is told once it has faded out.
    window->setPrefDisplayTime(1);
    window->updateTrackInformations(1);
    ASSERT_TRUE(waitUntil([&] { return killed == 1; }));
    EXPECT_FALSE(window->isVisible());
    // A close after that changes nothing.
    window->closeTrackInfoWindow();
    window->updateTrackInformations(1);
    EXPECT_EQ(window->trackInfoA(), "Nothing Playing");
}

TEST_F(TrackInfoWindowTest, TrackWithoutArtworkGetsTheStoreCoverForDisplayOnly)
{
    LocalHttpServer store;
    qputenv("ORVANE_STORE_BASE_URL", store.baseUrl().toUtf8());
    store.respond("/search", ScriptedResponse::text(
        R"json({"resultCount":1,"results":[{"artistName":"the band","collectionName":"Blue (Remastered)",
        "artworkUrl100":")json" + store.baseUrl().toUtf8() + R"json(/cover/100x100bb.jpg"}]})json", "application/json"));
    store.respond("/cover/1000x1000bb.jpg", ScriptedResponse::text(jpeg(Qt::blue), "image/jpeg"));
    auto track = player->addFileTrack("Song", "/music/song.m4a",
                                      {{Prop::artist, "The Band"}, {Prop::album, "Blue"}, {Prop::duration, 200.0}});
    player->setCurrentTrack(track);

    auto window = open();
    ASSERT_TRUE(waitUntil([&] {
        return centreIs(window->trackArtwork(), [](QRgb c) { return qBlue(c) > 200 && qRed(c) < 60; });
    }));
    ASSERT_GE(store.requestCount(), 2);
    EXPECT_EQ(store.requests().at(0).rawQuery(), "term=The+Band+Blue&entity=album");
    EXPECT_TRUE(player->handle<ITunesTrack>(track).artworks().isEmpty());
    shoot(*window, "trackinfo-store-artwork");

    // A track change during a search ends it and keeps the new track's picture.
    store.respond("/search", ScriptedResponse::silent());
    auto other = player->addFileTrack("Other", "/music/other.m4a", {{Prop::artist, "X"}, {Prop::album, "Y"}});
    player->setCurrentTrack(other);
    window->updateTrackInformations(1);
    ASSERT_TRUE(window->artworkButton()->isDownloading());
    const QImage placeholder = window->trackArtwork();
    window->artworkButton()->setImage(placeholder);
    EXPECT_FALSE(window->artworkButton()->isDownloading());

    // Dropping the picture into a folder writes a JPEG there.
    QString error;
    EXPECT_TRUE(window->artworkButton()->saveImageInDirectory("/nonexistent/folder", &error).isEmpty());
    EXPECT_TRUE(error.contains("/nonexistent/folder"));
    const QString path = window->artworkButton()->saveImageInDirectory(QDir::tempPath());
    ASSERT_TRUE(path.endsWith(".jpg"));
    EXPECT_FALSE(QImage(path).isNull());
    QFile::remove(path);
}

TEST_F(TrackInfoWindowTest, RadioStationShowsTheLoadersShow)
{
    LocalHttpServer station;
    qputenv("ORVANE_RADIO_STREAM_PATTERN", "(?i)beats ?1");
    qputenv("ORVANE_RADIO_PLAYLIST_URL", (station.baseUrl() + "/s/prog.m3u8").toUtf8());
    station.respond("/s/prog.m3u8", ScriptedResponse::silent());
    auto stream = player->addURLTrack("Beats 1", "http://127.0.0.1:1/beats1.m3u8", {});
    player->setCurrentTrack(stream);
    player->setApplicationValue(Prop::playerPosition, 5400.0);

    auto window = open();
    ASSERT_TRUE(window->radioLoader());
    // Nothing from the loader yet: the stream's name and the radio's own words.
    EXPECT_EQ(window->trackInfoA(), "Beats 1");
    EXPECT_EQ(window->trackInfoB(), "Apple Music");
    EXPECT_EQ(window->trackInfoC(), "Radio Station");
    EXPECT_EQ(window->trackInfoD(), "> 1 h");

    // The show has an album but no artist.
    const QByteArray art = (station.baseUrl() + "/art.jpg").toUtf8();
    auto frame = [](const QByteArray &key, const QByteArray &value) {
        const QByteArray body = '\x03' + value;
        const char size[] = {0, 0, 0, char(body.size())};
        return key + QByteArray(size, 4) + QByteArray(2, '\0') + body;
    };
    station.respond("/s/prog.m3u8", ScriptedResponse::text("#EXTM3U\n#EXT-X-TARGETDURATION:10\nseg-1.aac\n"));
    station.respond("/s/seg-1.aac", ScriptedResponse::text("ID3" + frame("TIT2", "Morning Show") + frame("TALB", "Live Set")
                                                           + frame("TXXX", "artwork\0" + art)));
    station.respond("/art.jpg", ScriptedResponse::text(jpeg(Qt::green), "image/jpeg"));
    window->updateTrackInformations(1);
    ASSERT_TRUE(waitUntil([&] { return window->trackInfoA() == "Morning Show"; }));
    EXPECT_EQ(window->trackInfoB(), "Beats 1");
    EXPECT_EQ(window->trackInfoC(), "Live Set");
    ASSERT_TRUE(waitUntil([&] {
        return centreIs(window->trackArtwork(), [](QRgb c) { return qGreen(c) > 200 && qRed(c) < 60; });
    }));
    shoot(*window, "trackinfo-radio");

    // Closing stops the loader.
    window->closeTrackInfoWindow();
    EXPECT_FALSE(window->radioLoader());
    qunsetenv("ORVANE_RADIO_STREAM_PATTERN");
}
