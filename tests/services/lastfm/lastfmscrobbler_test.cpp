// The scrobbler against the local Last.fm stand-in, the in-memory player and a keyring in memory.
#include "services/lastfm/lastfmwebscrobbler.h"

#include "additions/appcontext.h"
#include "additions/propertylist.h"
#include "application/apppreferences.h"
#include "lastfmserver.h"
#include "player/memoryplayer.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

// Items by service and account; "refuse" makes it fail as a locked keyring does.
struct MemoryKeychain : KeychainStore
{
    Answer read(const QString &service, const QString &account) override
    {
        const auto found = items.constFind({service, account});
        return refuse ? Answer{KeychainStatus::Refused} : found == items.cend() ? Answer{KeychainStatus::NotFound}
                                                                               : Answer{KeychainStatus::Success, *found};
    }
    Answer write(const QString &service, const QString &account, const QString &password) override
    {
        if (!refuse)
            items.insert({service, account}, password);
        return {refuse ? KeychainStatus::Refused : KeychainStatus::Success};
    }
    Answer remove(const QString &service, const QString &account) override
    {
        return {items.remove({service, account}) ? KeychainStatus::Success : KeychainStatus::NotFound};
    }
    std::optional<QString> sessionKey() const
    {
        const auto key = qMakePair(LastFMWebScrobbler::keychainService(), LastFMWebScrobbler::keychainAccount());
        return items.contains(key) ? std::optional<QString>(items.value(key)) : std::nullopt;
    }
    QMap<QPair<QString, QString>, QString> items;
    bool refuse = false;
};

class ScrobblerTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        player->makeDefault();
        player->setPlayerState(kPSP);
        appContext()->setExceptionHandler([this](const OVException &e) { reports << e.name() + ": " + e.reason(); });
    }
    void storeSessionKey(const QString &key = LastFmServer::kSessionKey)
    {
        keychain->items.insert({LastFMWebScrobbler::keychainService(), LastFMWebScrobbler::keychainAccount()}, key);
    }
    static void writeSettings(const QVariantMap &settings)
    {
        PropertyList::write(AppPreferences::locationToPreferences(PreferenceLocation::LastFm), settings);
    }
    std::unique_ptr<LastFMWebScrobbler> makeScrobbler(int delayMs = 3000)
    {
        return std::make_unique<LastFMWebScrobbler>(
            LastFMWebScrobbler::Environment{keychain, [this] { return clock; }, delayMs, {}});
    }
    MemoryObjectPtr play(const QString &name, double duration, MemoryProperties more = {})
    {
        more.insert(Prop::artist, "Artist");
        more.insert(Prop::duration, duration);
        auto track = player->addFileTrack(name, "/music/" + name + ".mp3", more);
        player->setCurrentTrack(track);
        return track;
    }

    std::shared_ptr<MemoryPlayer> player = MemoryPlayer::create();
    std::shared_ptr<MemoryKeychain> keychain = std::make_shared<MemoryKeychain>();
    LastFmServer server;
    qint64 clock = 1'700'000'000;
    QStringList reports;
};

} // namespace

TEST_F(ScrobblerTest, ScrobblesOnlyPastThirtySecondsAndTheShareWithItsGrace)
{
    struct Row { double percentInFile; double duration; qint64 elapsed; bool scrobbled; };
    const Row rows[] = {
        {50, 30, 30, false}, {50, 31, 31, true},  {50, 100, 47, true}, {50, 100, 46, false},
        {20, 100, 46, false}, // a lower value in the file reads as 50
        {80, 200, 154, true}, {80, 200, 153, false}, {50, 0, 999, false},
    };
    storeSessionKey();
    for (const Row &row : rows) {
        writeSettings({{"ScrobbleValue", row.percentInFile}, {"UserName", QByteArray("listener")}});
        const auto scrobbler = makeScrobbler();
        EXPECT_EQ(scrobbler->yourPreferences().prefScrobblePercentValue(), std::max(row.percentInFile, 50.0));
        play("Song", row.duration);
        const qint64 start = clock;
        scrobbler->scrobbleTrackNow();
        clock += row.elapsed;
        const qsizetype before = server.calls("track.scrobble").size();
        scrobbler->scrobbleSubmission();
        const auto scrobbles = server.calls("track.scrobble");
        ASSERT_EQ(scrobbles.size() - before, row.scrobbled ? 1 : 0) << row.duration << " " << row.elapsed;
        if (row.scrobbled) {
            EXPECT_EQ(scrobbles.last().parameters.value("timestamp[0]"), QString::number(start));
            EXPECT_FALSE(scrobbler->yourTrackInfo());
        } else {
            EXPECT_TRUE(scrobbler->yourTrackInfo()) << "a track that did not qualify stays held";
        }
    }
    EXPECT_EQ(reports, QStringList());
}

TEST_F(ScrobblerTest, SendsTheTrackSignedEscapedAndFollowedByTheLovedFlag)
{
    storeSessionKey();
    const auto scrobbler = makeScrobbler();
    EXPECT_EQ(scrobbler->yourScrobbleState(), LastFMWebScrobbler::Connected);
    play("Rock & Roll + Co", 200,
         {{Prop::album, "Album"}, {Prop::albumArtist, "Various"}, {Prop::trackNumber, 7}, {Prop::loved, true}});
    scrobbler->scrobbleTrackNow();
    // The next track has begun, not loved, with the album artist the same as the artist.
    play("Second", 200, {{Prop::albumArtist, "Artist"}});
    clock += 150;
    scrobbler->scrobbleTrackNow();

    EXPECT_EQ(server.methods(), QStringList({"track.updateNowPlaying", "track.love", "track.scrobble",
                                              "track.unlove", "track.updateNowPlaying", "track.unlove"}));
    const auto calls = server.calls();
    for (const auto &call : calls) {
        EXPECT_TRUE(call.signatureOk) << call.method.toStdString();
        EXPECT_EQ(call.parameters.value("sk"), LastFmServer::kSessionKey);
        EXPECT_EQ(call.request.method, "POST");
        EXPECT_EQ(call.request.header("User-Agent"), "Orvane%204.0");
        EXPECT_EQ(call.request.header("Content-Type"), "application/x-www-form-urlencoded");
    }
    const QMap<QString, QString> nowPlaying{{"track", "Rock & Roll + Co"}, {"artist", "Artist"}, {"album", "Album"},
                                            {"albumArtist", "Various"}, {"trackNumber", "7"}, {"duration", "200"}};
    for (auto it = nowPlaying.cbegin(); it != nowPlaying.cend(); ++it)
        EXPECT_EQ(calls[0].parameters.value(it.key()), it.value()) << it.key().toStdString();
    // Keys go out in the signing order and raw; values are escaped.
    const QByteArray body = calls[2].request.body;
    EXPECT_LT(body.indexOf("albumArtist[0]=Various"), body.indexOf("album[0]=Album"));
    EXPECT_TRUE(body.contains("track[0]=Rock%20%26%20Roll%20%2B%20Co")) << body.constData();
    EXPECT_EQ(calls[2].parameters.value("track[0]"), "Rock & Roll + Co");
    EXPECT_EQ(calls[3].parameters.value("track"), "Second") << "the flag of the track now playing";
    // No album, no track number, and an album artist equal to the artist: none of them is sent.
    EXPECT_EQ(calls[4].parameters.keys(), QStringList({"api_key", "api_sig", "artist", "duration", "method", "sk", "track"}));
}

TEST_F(ScrobblerTest, ErrorNineEndsTheSessionAndOtherCodesOnlyReport)
{
    storeSessionKey();
    play("Song", 200);
    auto scrobbler = makeScrobbler();
    server.respond("track.updateNowPlaying", LastFmServer::failed(6, "Track not found"));
    scrobbler->scrobbleTrackNow();
    EXPECT_EQ(reports, QStringList({"LastFMScrobbler: track.updateNowPlaying: 6 | Track not found"}));
    EXPECT_TRUE(keychain->sessionKey());
    EXPECT_EQ(scrobbler->yourScrobbleState(), LastFMWebScrobbler::Connected);

    reports.clear();
    server.respond("track.scrobble", LastFmServer::failed(9, "Invalid session key"));
    clock += 200;
    scrobbler->scrobbleSubmission();
    EXPECT_EQ(reports, QStringList({"LastFMScrobbler: track.scrobble: 9 | Invalid session key"}));
    EXPECT_FALSE(keychain->sessionKey());
    EXPECT_TRUE(scrobbler->yourScrobbleSessionKey().isEmpty());
    EXPECT_EQ(scrobbler->yourScrobbleState(), LastFMWebScrobbler::NotConnected);
    // Without a session nothing more is sent.
    const qsizetype sent = server.calls().size();
    scrobbler->loveCurrentTrack();
    scrobbler->scrobbleTrackNow();
    EXPECT_EQ(server.calls().size(), sent);
}

TEST_F(ScrobblerTest, StartUpKeepsOnlyAStoredKeyOfThirtyTwoCharacters)
{
    for (const QString &stored : {QString(31, 'k'), QString(33, 'k'), QString()}) {
        storeSessionKey(stored);
        const auto scrobbler = makeScrobbler();
        EXPECT_FALSE(keychain->sessionKey()) << stored.size();
        EXPECT_EQ(scrobbler->yourScrobbleState(), LastFMWebScrobbler::NotConnected);
        EXPECT_FALSE(scrobbler->isSessionKeyValid());
    }
    writeSettings({{"UserName", QByteArray("listener")}});
    EXPECT_FALSE(makeScrobbler()->isSessionKeyValid());
    EXPECT_EQ(makeScrobbler()->yourScrobbleState(), 0) << "no lookup of the state before it is asked";
    auto asked = makeScrobbler();
    asked->isSessionKeyValid();
    EXPECT_EQ(asked->yourScrobbleState(), LastFMWebScrobbler::AuthorisationNeeded);
    storeSessionKey();
    EXPECT_EQ(makeScrobbler()->yourScrobbleState(), LastFMWebScrobbler::Connected);
}

TEST_F(ScrobblerTest, ABurstOfTrackChangesGivesOneSnapshot)
{
    storeSessionKey();
    play("First", 200);
    const auto scrobbler = makeScrobbler(200);
    scrobbler->scrobbleTrack();
    play("Second", 200);
    scrobbler->scrobbleTrack();
    EXPECT_TRUE(scrobbler->isSnapshotPending());
    EXPECT_TRUE(server.calls().isEmpty());
    ASSERT_TRUE(waitUntil([&] { return !scrobbler->isSnapshotPending(); }));
    EXPECT_EQ(server.methods(), QStringList({"track.updateNowPlaying", "track.unlove"}));
    EXPECT_EQ(scrobbler->yourTrackInfo()->name, "Second");
}

TEST_F(ScrobblerTest, PauseEmptyNamesAndStopsEndTheMeasurementAsTheyShould)
{
    storeSessionKey();
    play("Song", 100);
    const auto scrobbler = makeScrobbler();
    scrobbler->scrobbleTrackNow();
    ASSERT_TRUE(scrobbler->yourTrackInfo());
    // Paused: the held track is submitted (too short a share here) and nothing new is taken.
    player->setPlayerState(kPSp);
    clock += 10;
    scrobbler->scrobbleTrackNow();
    EXPECT_EQ(server.calls("track.scrobble").size(), 0);
    EXPECT_EQ(server.calls("track.updateNowPlaying").size(), 1);
    scrobbler->scrobbleClean();
    EXPECT_FALSE(scrobbler->yourTrackInfo());

    // A held track gets its chance before an empty artist clears it.
    player->setPlayerState(kPSP);
    scrobbler->scrobbleTrackNow();
    play("No artist", 100, {});
    player->currentTrackObject()->setStored(Prop::artist, QString());
    clock += 60;
    scrobbler->scrobbleTrackNow();
    EXPECT_EQ(server.calls("track.scrobble").size(), 1);
    EXPECT_FALSE(scrobbler->yourTrackInfo());

    // Stopped, or the player gone: nothing happens and a held track stays.
    play("Song", 100);
    scrobbler->scrobbleTrackNow();
    const qsizetype sent = server.calls().size();
    player->setPlayerState(kPSS);
    scrobbler->scrobbleTrackNow();
    player->setPlayerState(kPSP);
    player->setRunning(false);
    scrobbler->scrobbleTrackNow();
    EXPECT_EQ(server.calls().size(), sent);
    EXPECT_TRUE(scrobbler->yourTrackInfo());
}

TEST_F(ScrobblerTest, BadRepliesGiveNoneOrAReportAndNeverHang)
{
    storeSessionKey();
    play("Song", 100);
    const auto scrobbler = makeScrobbler();
    QByteArray huge = "<lfm status=\"ok\">";
    huge += QByteArray(5 * 1024 * 1024, 'x') + "</lfm>";
    struct Row { const char *what; ScriptedResponse answer; bool reply; QString report; };
    const Row rows[] = {
        {"empty", LastFmServer::xml(""), false, {}},
        {"not markup", ScriptedResponse::text("garbage \x01\x02"), false, {}},
        {"html", ScriptedResponse::text("<html><body><h1>Bad Gateway</h1></body></html>", "text/html"), true,
         "LastFMScrobbler: track.love: 0 | (null)"},
        {"failed without error", LastFmServer::xml("<lfm status=\"failed\"></lfm>"), true,
         "LastFMScrobbler: track.love: 0 | (null)"},
        {"5 MB", LastFmServer::xml(huge), true, {}},
    };
    for (const Row &row : rows) {
        reports.clear();
        server.respond("track.love", row.answer);
        EXPECT_EQ(scrobbler->executeLastFMAction("track.love", {{"track", "a"}, {"artist", "b"}}).has_value(), row.reply)
            << row.what;
        scrobbler->loveTrackWithName("a", "b");
        EXPECT_EQ(reports, row.report.isEmpty() ? QStringList() : QStringList{row.report}) << row.what;
    }

    // A server that never answers: the call gives up after its five seconds, and the thread's
    // timers keep firing meanwhile.
    server.respond("track.scrobble", ScriptedResponse::silent());
    scrobbler->scrobbleTrackNow();
    clock += 100;
    int ticks = 0;
    QTimer ticker;
    QObject::connect(&ticker, &QTimer::timeout, [&] { ++ticks; });
    ticker.start(100);
    QElapsedTimer elapsed;
    elapsed.start();
    scrobbler->scrobbleSubmission();
    EXPECT_GE(elapsed.elapsed(), 4500);
    EXPECT_LT(elapsed.elapsed(), 15000);
    EXPECT_GT(ticks, 5);
    EXPECT_TRUE(scrobbler->yourTrackInfo()) << "no answer keeps the track";
    EXPECT_TRUE(keychain->sessionKey());
}

TEST_F(ScrobblerTest, AuthorisationStoresTheSessionAndAFailureLosesTheOldOne)
{
    const auto scrobbler = makeScrobbler();
    EXPECT_FALSE(scrobbler->fetchNewSessionKey()) << "no token yet";
    const QUrl consent = scrobbler->fetchAuthURL();
    EXPECT_EQ(consent.toString(), server.http.baseUrl() + "/api/auth/?api_key=" + LastFmServer::kApiKey
                                      + "&token=" + LastFmServer::kToken);
    EXPECT_TRUE(scrobbler->fetchNewSessionKey());
    EXPECT_EQ(keychain->sessionKey(), LastFmServer::kSessionKey);
    EXPECT_EQ(scrobbler->yourScrobbleState(), LastFMWebScrobbler::Connected);
    EXPECT_EQ(server.calls("auth.getSession").last().parameters.value("token"), LastFmServer::kToken);
    EXPECT_FALSE(server.calls("auth.getSession").last().parameters.contains("sk"));

    // Asked again with the session held: the old key travels along, and a refusal ends it.
    scrobbler->fetchAuthToken();
    server.respond("auth.getSession", LastFmServer::failed(9, "Invalid session key"));
    EXPECT_FALSE(scrobbler->fetchNewSessionKey());
    EXPECT_EQ(server.calls("auth.getSession").last().parameters.value("sk"), LastFmServer::kSessionKey);
    EXPECT_FALSE(keychain->sessionKey());
    EXPECT_EQ(scrobbler->yourScrobbleState(), LastFMWebScrobbler::NotConnected);
    EXPECT_EQ(reports, QStringList({"LastFMScrobbler: auth.getSession: 9 | Invalid session key"}));

    // A key of the wrong length, or no token in the answer, is no session.
    scrobbler->fetchAuthToken();
    server.respond("auth.getSession", LastFmServer::session("short"));
    EXPECT_FALSE(scrobbler->fetchNewSessionKey());
    server.respond("auth.getToken", LastFmServer::xml("<lfm status=\"ok\"></lfm>"));
    EXPECT_TRUE(scrobbler->fetchAuthURL().isEmpty());

    // A keyring that refuses still leaves the session for this run.
    server.respond("auth.getToken", LastFmServer::xml("<lfm status=\"ok\"><token>" + QByteArray(32, 'u') + "</token></lfm>"));
    server.respond("auth.getSession", LastFmServer::session(LastFmServer::kSessionKey));
    keychain->refuse = true;
    scrobbler->fetchAuthToken();
    EXPECT_TRUE(scrobbler->fetchNewSessionKey());
    EXPECT_EQ(scrobbler->yourScrobbleState(), LastFMWebScrobbler::Connected);
}

TEST_F(ScrobblerTest, DroppedDuringACallTheScrobblerGoesOnlyAfterIt)
{
    storeSessionKey();
    std::shared_ptr<LastFMWebScrobbler> owner = LastFMWebScrobbler::create({keychain, {}, 3000, {}});
    LastFMWebScrobbler *scrobbler = owner.get();
    bool destroyed = false;
    QObject::connect(scrobbler, &QObject::destroyed, [&] { destroyed = true; });
    ScriptedResponse slow = LastFmServer::xml("<lfm status=\"ok\"></lfm>");
    slow.delayMs = 300;
    server.respond("track.love", slow);
    // Switching Last.fm off while the call waits drops the only owner.
    QTimer::singleShot(50, [&] { owner.reset(); });
    scrobbler->loveTrackWithName("Song", "Artist");
    EXPECT_FALSE(destroyed);
    EXPECT_EQ(server.calls("track.love").size(), 1);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(destroyed);
}
