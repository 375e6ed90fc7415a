#include "player/itunes.h"
#include "player/mpris/mpristrack.h"

#include <gtest/gtest.h>

namespace {

struct TrackCase
{
    const char *label;
    QVariantMap metadata;
    ObjectClass expectedClass;
    QString name;
    QString place; // location of a file track, address of a URL track
    QVariantMap expectedInfo;
};

} // namespace

TEST(MprisMetadata, MakesTheTrackAndTheNotificationOfWhatIsPlaying)
{
    const QVariantMap song{{"xesam:url", "file:///music/A%20Song.mp3"},
                           {"mpris:trackid", "/3"},
                           {"xesam:title", "A Song"},
                           {"xesam:artist", QStringList{"One", "Two"}},
                           {"xesam:album", "Album"},
                           {"xesam:contentCreated", "1999-05-01"},
                           {"mpris:length", qint64(185500000)}};
    const QVariantMap untitled{{"xesam:url", "file:///music/untitled.flac"}};
    const QVariantMap stream{{"xesam:url", "http://127.0.0.1:8000/radio"},
                             {"xesam:title", "Station - Tune"}};
    const TrackCase cases[] = {
        {"file with tags", song, ObjectClass::FileTrack, "A Song", "/music/A Song.mp3",
         {{"Player State", "Playing"}, {"Name", "A Song"}, {"Artist", "One, Two"},
          {"Album", "Album"}, {"Year", 1999}, {"Total Time", 185500},
          {"Location", "file:///music/A%20Song.mp3"}}},
        {"file without tags", untitled, ObjectClass::FileTrack, "untitled",
         "/music/untitled.flac",
         {{"Player State", "Playing"}, {"Location", "file:///music/untitled.flac"}}},
        {"stream", stream, ObjectClass::URLTrack, "Station - Tune", "http://127.0.0.1:8000/radio",
         {{"Player State", "Playing"}, {"Name", "Station - Tune"},
          {"Stream URL", "http://127.0.0.1:8000/radio"}}},
    };
    for (const TrackCase &row : cases) {
        SCOPED_TRACE(row.label);
        const Mpris::Metadata metadata(row.metadata);
        const ITunesTrack track(nullptr, MprisTrack::fromMetadata(metadata));
        ASSERT_FALSE(track.isNull());
        EXPECT_EQ(track.remoteObject()->objectClass(), row.expectedClass);
        EXPECT_EQ(track.name(), row.name);
        const QString place = row.expectedClass == ObjectClass::FileTrack
                                  ? track.as<ITunesFileTrack>().location()
                                  : track.as<ITunesURLTrack>().address();
        EXPECT_EQ(place, row.place);
        EXPECT_EQ(track.persistentID().size(), 16);

        QVariantMap info = Mpris::playerInfo(kPSP, metadata);
        EXPECT_EQ(info.take("Persistent ID").toString(), track.persistentID());
        for (auto it = row.expectedInfo.begin(); it != row.expectedInfo.end(); ++it)
            EXPECT_EQ(info.value(it.key()).toString(), it.value().toString()) << it.key().toStdString();
        EXPECT_EQ(info.size(), row.expectedInfo.size());
    }
}

TEST(MprisMetadata, TrackOfThePlayerIsReadOnlyAndStoppedTellsOnlyTheState)
{
    const Mpris::Metadata metadata(QVariantMap{{"xesam:url", "file:///music/a.mp3"},
                                               {"mpris:length", qint64(61000000)}});
    const RemoteObjectPtr track = MprisTrack::fromMetadata(metadata);
    EXPECT_EQ(track->read(Prop::time).toString(), "1:01");
    EXPECT_EQ(track->read(Prop::rating), QVariant());
    EXPECT_THROW(track->write(Prop::rating, 20), BridgeFailure);
    EXPECT_THROW(track->read(Prop::address), BridgeFailure);

    EXPECT_EQ(Mpris::playerInfo(kPSS, metadata), (QVariantMap{{"Player State", "Stopped"}}));
    EXPECT_EQ(MprisTrack::fromMetadata(Mpris::Metadata(QVariantMap{{"mpris:trackid", "/noplaylist"}})),
              nullptr);
}
