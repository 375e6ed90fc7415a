#include "additions/appcontext.h"
#include "playertestsupport.h"

#include "player/apptodo.h"

namespace {

enum class Operation { SetRating, SetLoved, Toggle, AutoLoved, AutoRating };

struct LoveCase
{
    const char *label;
    qint64 threshold;
    qint64 rating;
    FourCharCode ratingKind;
    bool loved;
    Operation operation;
    qint64 argument; // the rating, or 0/1 for loved
    bool expectedResult;
    qint64 expectedRating;
    bool expectedLoved;
};

void PrintTo(const LoveCase &loveCase, std::ostream *out)
{
    *out << loveCase.label;
}

bool runTrackOperation(Operation operation, qint64 argument)
{
    switch (operation) {
    case Operation::SetRating: return ITunesApplication::ov_setCurrentTrackRating(argument);
    case Operation::SetLoved: return ITunesApplication::ov_setCurrentTrackLoved(argument != 0);
    case Operation::Toggle: return ITunesApplication::ov_toggleTrackLoved();
    case Operation::AutoLoved: return ITunesApplication::ov_setCurrentTrackAutoLoved();
    case Operation::AutoRating: return ITunesApplication::ov_setCurrentTrackAutoRating();
    }
    return false;
}

bool runAlbumOperation(Operation operation, qint64 argument)
{
    switch (operation) {
    case Operation::SetRating: return ITunesApplication::ov_setCurrentAlbumRating(argument);
    case Operation::SetLoved: return ITunesApplication::ov_setCurrentAlbumLoved(argument != 0);
    case Operation::Toggle: return ITunesApplication::ov_toggleAlbumLoved();
    case Operation::AutoLoved: return ITunesApplication::ov_setCurrentAlbumAutoLoved();
    case Operation::AutoRating: return ITunesApplication::ov_setCurrentAlbumAutoRating();
    }
    return false;
}

const LoveCase kLoveCases[] = {
    {"band below threshold snaps down", 70, 0, kRtU, false, Operation::SetRating, 65, true, 60, false},
    {"below the band stays", 70, 0, kRtU, false, Operation::SetRating, 40, true, 40, false},
    {"at least threshold loves", 70, 0, kRtU, false, Operation::SetRating, 80, true, 80, true},
    {"rating clamped to 100", 70, 0, kRtU, false, Operation::SetRating, 150, true, 100, true},
    {"negative rating clamped to 0", 70, 50, kRtU, true, Operation::SetRating, -20, true, 0, false},
    {"unloving falls below threshold even from 100", 70, 100, kRtU, true, Operation::SetLoved, 0, true, 60, false},
    {"loving raises a low rating", 70, 20, kRtU, false, Operation::SetLoved, 1, true, 70, true},
    {"threshold 5 unloved goes to 0", 5, 80, kRtU, true, Operation::SetLoved, 0, true, 0, false},
    {"threshold 5 auto rating of unloved", 5, 3, kRtU, false, Operation::AutoRating, 0, true, 0, false},
    {"computed 100 is not auto-loved", 70, 100, kRtC, true, Operation::AutoLoved, 0, true, 100, false},
    {"loving computed 100 writes threshold", 70, 100, kRtC, false, Operation::SetLoved, 1, true, 70, true},
    {"loved and high enough: nothing to do", 70, 80, kRtU, true, Operation::AutoRating, 0, false, 80, true},
    {"unloved below band: nothing to do", 70, 30, kRtU, false, Operation::AutoRating, 0, false, 30, false},
    {"toggle loves and keeps a high rating", 70, 80, kRtU, false, Operation::Toggle, 0, true, 80, true},
    {"toggle unloves and snaps down", 70, 80, kRtU, true, Operation::Toggle, 0, true, 60, false},
};

class AutoLoveTest : public MemoryPlayerTest, public ::testing::WithParamInterface<LoveCase>
{
};

TEST_P(AutoLoveTest, TrackRules)
{
    const LoveCase &c = GetParam();
    writeAutoLove(true, c.threshold);
    auto track = player->addFileTrack("Song", "/music/song.mp3",
                                      {{Prop::rating, c.rating}, {Prop::ratingKind, c.ratingKind},
                                       {Prop::loved, c.loved}});
    player->setCurrentTrack(track);

    EXPECT_EQ(runTrackOperation(c.operation, c.argument), c.expectedResult);
    EXPECT_EQ(track->stored(Prop::rating).toLongLong(), c.expectedRating);
    EXPECT_EQ(track->stored(Prop::loved).toBool(), c.expectedLoved);
}

TEST_P(AutoLoveTest, AlbumRulesMirrorTrackRules)
{
    const LoveCase &c = GetParam();
    writeAutoLove(true, c.threshold);
    auto track = player->addFileTrack("Song", "/music/song.mp3",
                                      {{Prop::albumRating, c.rating},
                                       {Prop::albumRatingKind, c.ratingKind},
                                       {Prop::albumLoved, c.loved}, {Prop::rating, 33}});
    player->setCurrentTrack(track);

    EXPECT_EQ(runAlbumOperation(c.operation, c.argument), c.expectedResult);
    EXPECT_EQ(track->stored(Prop::albumRating).toLongLong(), c.expectedRating);
    EXPECT_EQ(track->stored(Prop::albumLoved).toBool(), c.expectedLoved);
    EXPECT_EQ(player->writeCount(Prop::rating) + player->writeCount(Prop::loved), 0);
}

INSTANTIATE_TEST_SUITE_P(Cases, AutoLoveTest, ::testing::ValuesIn(kLoveCases),
                         [](const auto &info) {
                             std::string name = info.param.label;
                             for (char &ch : name)
                                 if (!std::isalnum(static_cast<unsigned char>(ch)))
                                     ch = '_';
                             return name;
                         });

using AutoLoveSettingsTest = MemoryPlayerTest;

TEST_F(AutoLoveSettingsTest, MissingFileRunsNoRule)
{
    EXPECT_EQ(ITunesTrack::ov_autoLovedRating(), 0);
    EXPECT_FALSE(ITunesTrack::ov_useAutoLovedRating());
    EXPECT_TRUE(ITunesTrack::ov_generalPreferencesInfo().isEmpty());

    auto track = player->addFileTrack("Song", "/music/song.mp3", {{Prop::loved, true}});
    player->setCurrentTrack(track);
    EXPECT_TRUE(ITunesApplication::ov_setCurrentTrackRating(65));
    EXPECT_TRUE(ITunesApplication::ov_setCurrentTrackLoved(false));
    EXPECT_EQ(track->stored(Prop::rating).toLongLong(), 65);
    EXPECT_EQ(player->writeCount(Prop::rating), 1);
}

TEST_F(AutoLoveSettingsTest, ValuesAreTypedAndClamped)
{
    const struct
    {
        QVariant use;
        QVariant value;
        bool expectedUse;
        qint64 expectedValue;
    } rows[] = {
        {true, 150, true, 100},
        {true, -5, true, 0},
        {QStringLiteral("yes"), QStringLiteral("70"), false, 0},
        {false, 55.0, false, 55},
    };
    for (const auto &row : rows) {
        writeGeneral({{"UseAutoLove", row.use}, {"UseAutoLoveValue", row.value}});
        EXPECT_EQ(ITunesTrack::ov_useAutoLovedRating(), row.expectedUse) << row.use.toString().toStdString();
        EXPECT_EQ(ITunesTrack::ov_autoLovedRating(), row.expectedValue) << row.value.toString().toStdString();
    }
    // Read afresh at every call: a change on disk counts at once.
    writeAutoLove(true, 40);
    EXPECT_EQ(ITunesTrack::ov_autoLovedRating(), 40);
}

TEST_F(AutoLoveSettingsTest, StreamIsNeverAutoLovedButCanBeLovedByHand)
{
    writeAutoLove(true, 70);
    auto stream = player->addURLTrack("Radio", "http://radio.example/stream", {{Prop::rating, 90}});
    player->setCurrentTrack(stream);

    EXPECT_FALSE(ITunesApplication::ov_setCurrentTrackAutoLoved());
    EXPECT_EQ(player->writeCount(Prop::loved), 0);
    EXPECT_TRUE(ITunesApplication::ov_setCurrentTrackLoved(true));
    EXPECT_TRUE(stream->stored(Prop::loved).toBool());
    // The album form has no such test.
    EXPECT_TRUE(ITunesApplication::ov_setCurrentAlbumAutoLoved());
    EXPECT_EQ(player->writeCount(Prop::albumLoved), 1);
}

TEST_F(AutoLoveSettingsTest, NoCurrentTrackDoesNothing)
{
    writeAutoLove(true, 70);
    player->addFileTrack("Song", "/music/song.mp3");
    for (const Operation operation : {Operation::SetRating, Operation::SetLoved, Operation::Toggle,
                                      Operation::AutoLoved, Operation::AutoRating}) {
        EXPECT_FALSE(runTrackOperation(operation, 80));
        EXPECT_FALSE(runAlbumOperation(operation, 80));
    }
    EXPECT_EQ(player->totalWriteCount(), 0);

    appContext()->setPlayerBackend(nullptr);
    EXPECT_TRUE(ITunesApplication::ov_currentTrack().isNull());
    EXPECT_FALSE(ITunesApplication::ov_setCurrentTrackRating(80));
}

class AppToDoLoveTest : public MemoryPlayerTest
{
protected:
    void SetUp() override
    {
        MemoryPlayerTest::SetUp();
        appContext()->setLovedScrobbler({[this] { return scrobblerReady; },
                                    [this](bool loved) { sent.append(loved); }});
    }
    void TearDown() override
    {
        appContext()->setLovedScrobbler({});
        appContext()->setAutoLoveSource({});
        MemoryPlayerTest::TearDown();
    }

    bool scrobblerReady = true;
    QList<bool> sent;
};

TEST_F(AppToDoLoveTest, TrackEntryPointsTellTheScrobbler)
{
    auto track = player->addFileTrack("Song", "/music/song.mp3");
    player->setCurrentTrack(track);

    EXPECT_TRUE(AppToDo::setLovedForThePlayingTrack(true));
    EXPECT_TRUE(AppToDo::toggleLovedForThePlayingTrack());
    EXPECT_TRUE(AppToDo::setRatingForThePlayingTrack(40));
    EXPECT_EQ(sent, QList<bool>({true, false, false}));
    EXPECT_EQ(track->stored(Prop::rating).toLongLong(), 40);

    EXPECT_TRUE(AppToDo::setLovedForThePlayingAlbum(true));
    EXPECT_TRUE(AppToDo::setRatingForThePlayingAlbum(60));
    EXPECT_TRUE(AppToDo::toggleLovedForThePlayingAlbum());
    EXPECT_EQ(sent.size(), 3);
    EXPECT_EQ(track->stored(Prop::albumRating).toLongLong(), 60);
    EXPECT_FALSE(track->stored(Prop::albumLoved).toBool());
}

TEST_F(AppToDoLoveTest, ScrobbleLovedNeedsAReadyScrobblerAndAnOrdinaryTrack)
{
    EXPECT_FALSE(AppToDo::scrobbleLoved()); // no current track

    auto beats = player->addURLTrack("Beats 1", "http://beats1.example/live");
    player->setCurrentTrack(beats);
    EXPECT_FALSE(AppToDo::scrobbleLoved());

    player->setCurrentTrack(player->addFileTrack("Song", "/music/song.mp3", {{Prop::loved, true}}));
    scrobblerReady = false;
    EXPECT_FALSE(AppToDo::scrobbleLoved());
    EXPECT_TRUE(sent.isEmpty());

    scrobblerReady = true;
    EXPECT_TRUE(AppToDo::scrobbleLoved());
    EXPECT_EQ(sent, QList<bool>({true}));

    appContext()->setLovedScrobbler({});
    EXPECT_FALSE(AppToDo::scrobbleLoved());
    EXPECT_TRUE(AppToDo::setLovedForThePlayingTrack(false));
}

TEST_F(AppToDoLoveTest, AutoLoveAnswersComeFromTheInstalledSource)
{
    EXPECT_FALSE(AppToDo::autoLoveUse());
    EXPECT_EQ(AppToDo::autoLoveValue(), 0);
    qint64 value = 250;
    appContext()->setAutoLoveSource({[] { return true; }, [&value] { return value; }});
    EXPECT_TRUE(AppToDo::autoLoveUse());
    EXPECT_EQ(AppToDo::autoLoveValue(), 100);
    value = -3;
    EXPECT_EQ(AppToDo::autoLoveValue(), 0);
}

} // namespace
