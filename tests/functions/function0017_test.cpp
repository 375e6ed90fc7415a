#include "function0011fixture.h"

using Function0017Test = TagToolTest;

namespace {

struct CheckCase
{
    QVariantMap settings;
    QList<qint64> alerts;
};

} // namespace

TEST_F(Function0017Test, SettingsThatCannotWorkAreRefusedBeforeAnyTrack)
{
    const QList<CheckCase> cases{
        {{{"yourOptionChoosen", 1}, {"yourTrackInfoOption", 4}}, {}},
        {{{"yourOptionChoosen", 2}, {"yourNumberTracksStartValue", 0}}, {-2}},
        {{{"yourOptionChoosen", 3}}, {-1}},
        {{{"yourOptionChoosen", 6}}, {}},
    };
    addSelectedTracks(1);
    for (const CheckCase &c : cases) {
        for (auto it = c.settings.begin(); it != c.settings.end(); ++it)
            set(17, it.key().toLatin1(), it.value());
        EXPECT_EQ(run(17), c.alerts);
        EXPECT_TRUE(states.isEmpty());
    }
    pool->myFunction(17)->metaObject()->invokeMethod(pool->myFunction(17), "deselectAllRemoveSpacesTags");
    set(17, "yourOptionChoosen", 4);
    EXPECT_EQ(run(17), QList<qint64>{-1});
}

TEST_F(Function0017Test, FileFactsAreWrittenToTheChosenTag)
{
    const QString name255(255, QLatin1Char('n'));
    const QString name256(256, QLatin1Char('n'));
    const QList<std::tuple<qint64, QString, QString>> cases{
        {1, "/music/Album/01 Song.mp3", "01 Song"},
        {1, "/music/" + name255 + ".mp3", name255},
        {1, "/music/" + name256 + ".mp3", name256.left(252) + "..."},
        {2, "/music/Album/01 Song.mp3", "/music/Album/01 Song.mp3"},
        {3, "/music/Album/01 Song.mp3", "3.50 MB"},
    };
    set(17, "yourOptionChoosen", 1);
    set(17, "yourPerformOnTrackInfo", 13);
    for (const auto &[option, location, expected] : cases) {
        const MemoryObjectPtr track = player->addFileTrack("Song", location, {{Prop::size, 3 * 1048576 + 524288}});
        player->setSelection({track});
        set(17, "yourTrackInfoOption", option);
        run(17);
        EXPECT_EQ(track->stored(Prop::grouping).toString(), expected) << location.left(40).toStdString();
        EXPECT_EQ(states, QList<qint64>{1});
    }
}

TEST_F(Function0017Test, NumberingFollowsTheRunAndSkipsATrackWithoutLocation)
{
    const QList<MemoryObjectPtr> tracks = addSelectedTracks(4);
    tracks.at(1)->setStored(Prop::location, QString());
    tracks.at(1)->setStored(Prop::trackNumber, 42);
    set(17, "yourOptionChoosen", 2);
    set(17, "yourNumberTracksStartValue", 3);
    run(17);
    QList<qint64> numbers;
    for (const MemoryObjectPtr &track : tracks)
        numbers.append(track->stored(Prop::trackNumber).toLongLong());
    EXPECT_EQ(numbers, (QList<qint64>{3, 42, 4, 5}));
    EXPECT_EQ(states, (QList<qint64>{1, 5, 1, 1}));
    run(17);
    EXPECT_EQ(tracks.at(0)->stored(Prop::trackNumber).toLongLong(), 3) << "each run starts afresh";
}

TEST_F(Function0017Test, DeletingEmptiesOnlyTheChosenTagsAndAlwaysCountsAsChange)
{
    const MemoryObjectPtr track = player->addFileTrack(
        "Song", "/music/1.mp3",
        {{Prop::artist, "Artist"}, {Prop::sortArtist, "Artist, The"}, {Prop::rating, 80},
         {Prop::discCount, 2}, {Prop::album, "Album"}});
    player->setSelection({track});
    set(17, "yourOptionChoosen", 3);
    for (const char *name : {"yourDeleteTagArtistSort", "yourDeleteTagRating", "yourDeleteTagDiscCount",
                             "yourDeleteTagComment"})
        set(17, name, true);
    run(17);
    EXPECT_EQ(track->stored(Prop::sortArtist).toString(), "");
    EXPECT_EQ(track->stored(Prop::rating).toLongLong(), 0);
    EXPECT_EQ(track->stored(Prop::discCount).toLongLong(), 0);
    EXPECT_EQ(track->stored(Prop::artist).toString(), "Artist");
    EXPECT_EQ(track->stored(Prop::album).toString(), "Album");
    EXPECT_EQ(states, QList<qint64>{1});
    run(17);
    EXPECT_EQ(states, QList<qint64>{1});
}

TEST_F(Function0017Test, TidyingWritesOnlyTagsThatChange)
{
    const MemoryObjectPtr messy = player->addFileTrack(
        "  Song  of  Songs ", "/music/1.mp3", {{Prop::artist, "Artist"}, {Prop::lyrics, "a  b\n  c"}});
    const MemoryObjectPtr tidy = player->addFileTrack("Song", "/music/2.mp3", {{Prop::artist, "Artist"}});
    player->setSelection({messy, tidy});
    set(17, "yourRemoveSpacesLyrics", false);
    player->resetWriteCounts();
    run(17);
    EXPECT_EQ(messy->stored(Prop::name).toString(), "Song of Songs");
    EXPECT_EQ(messy->stored(Prop::lyrics).toString(), "a  b\n  c");
    EXPECT_EQ(states, (QList<qint64>{1, 0}));
    EXPECT_EQ(player->totalWriteCount(), 1);
}

TEST_F(Function0017Test, AlbumArtistComesFromTheAlbumForCompilations)
{
    const MemoryObjectPtr compilation = player->addFileTrack(
        "Song", "/music/1.mp3", {{Prop::artist, "Artist"}, {Prop::album, "Hits"}, {Prop::compilation, true}});
    const MemoryObjectPtr single = player->addFileTrack(
        "Song", "/music/2.mp3", {{Prop::artist, "Artist"}, {Prop::album, "Hits"}, {Prop::albumArtist, "Artist"}});
    player->setSelection({compilation, single});
    set(17, "yourOptionChoosen", 5);
    run(17);
    EXPECT_EQ(compilation->stored(Prop::albumArtist).toString(), "Hits");
    EXPECT_EQ(single->stored(Prop::albumArtist).toString(), "Artist");
    EXPECT_EQ(states, (QList<qint64>{1, 1}));
}
