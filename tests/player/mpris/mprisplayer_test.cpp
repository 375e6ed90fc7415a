// mpv with its MPRIS plugin, on a private session bus started per test, is the followed player.
#include "player/itunes.h"
#include "player/mpris/mprisplayer.h"

#include <QDBusMessage>
#include <QDeadlineTimer>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <gtest/gtest.h>

namespace {

constexpr int kDeadline = 20000;
const QString kMpvName = QStringLiteral("org.mpris.MediaPlayer2.mpv");

struct RecordingDelegate : ScriptingBridgeDelegate
{
    void eventDidFail(const QString &, const QString &operation, const BridgeError &error) override
    {
        failures.append({operation, error.domain});
    }
    QList<QPair<QString, QString>> failures; // operation, error domain
};

// A stand-in for the library's track of a file.
struct LibraryTrack : RemoteObject
{
    ObjectClass objectClass() const override { return ObjectClass::FileTrack; }
    QVariant read(Prop property) override
    {
        return property == Prop::persistentID ? QVariant("00000000000000AB") : RemoteObject::read(property);
    }
};

bool signalled(QSignalSpy &spy)
{
    return !spy.isEmpty() || spy.wait(kDeadline);
}

// The first notification since the spy was cleared that satisfies the test; empty if none came.
QVariantMap waitForInfo(QSignalSpy &spy, const std::function<bool(const QVariantMap &)> &wanted)
{
    QDeadlineTimer deadline(kDeadline);
    for (qsizetype seen = 0;;) {
        for (; seen < spy.size(); ++seen)
            if (const QVariantMap info = spy.at(seen).at(0).toMap(); wanted(info))
                return info;
        if (deadline.hasExpired() || !spy.wait(int(deadline.remainingTime())))
            return {};
    }
}

auto inState(const QString &state)
{
    return [state](const QVariantMap &info) { return info.value("Player State") == state; };
}

// mpv says "Playing" before the file is loaded; the length comes with the loaded file.
auto playingLoaded(const QString &path)
{
    return [url = QUrl::fromLocalFile(path).toString()](const QVariantMap &info) {
        return info.value("Player State") == "Playing" && info.value("Total Time").toLongLong() > 0
               && info.value("Location") == url;
    };
}

class MprisPlayerTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        busDaemon_.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
        ASSERT_TRUE(busDaemon_.waitForStarted());
        while (!busDaemon_.canReadLine())
            ASSERT_TRUE(busDaemon_.waitForReadyRead(kDeadline));
        const QByteArray address = busDaemon_.readLine().trimmed();
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
        // A connection of its own per test: sessionBus() would stay on the first test's bus.
        bus_ = QDBusConnection::connectToBus(QString::fromUtf8(address), "mpris-test");
        ASSERT_TRUE(bus_.isConnected());

        first_ = makeTone("first.mp3", 440);
        second_ = makeTone("second.mp3", 880);
    }

    void TearDown() override
    {
        stopPlayer();
        QDBusConnection::disconnectFromBus("mpris-test");
        busDaemon_.kill();
        busDaemon_.waitForFinished();
    }

    QString makeTone(const QString &name, int frequency)
    {
        const QString path = dir_.filePath(name);
        const int status = QProcess::execute(
            "ffmpeg", {"-loglevel", "error", "-y", "-f", "lavfi", "-i",
                       QString("sine=f=%1:d=5").arg(frequency), "-metadata",
                       "title=Tone " + QString::number(frequency), path});
        EXPECT_EQ(status, 0);
        return path;
    }

    void startPlayer(const QStringList &files)
    {
        mpv_.start("mpv", QStringList{"--no-config", "--ao=null", "--vo=null", "--idle=yes",
                                      "--keep-open=yes", "--script=/usr/lib/mpv-mpris/mpris.so"}
                              + files);
        ASSERT_TRUE(mpv_.waitForStarted());
    }

    void stopPlayer()
    {
        if (mpv_.state() == QProcess::NotRunning)
            return;
        mpv_.terminate();
        if (!mpv_.waitForFinished(kDeadline))
            mpv_.kill();
        mpv_.waitForFinished();
    }

    void callMpv(const QString &method)
    {
        const QDBusMessage reply = bus_.call(QDBusMessage::createMethodCall(
            kMpvName, "/org/mpris/MediaPlayer2", "org.mpris.MediaPlayer2.Player", method));
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
    }

    QProcess busDaemon_;
    QProcess mpv_;
    QDBusConnection bus_{QString()};
    QTemporaryDir dir_;
    QString first_, second_;
};

} // namespace

TEST_F(MprisPlayerTest, FollowsTheFirstPlayerThatAppearsAndNotifiesItsStates)
{
    const auto player = std::make_shared<MprisPlayer>(QString(), bus_);
    const ITunesApplication app = ITunesApplication::withBackend(player);
    EXPECT_FALSE(app.isRunning());
    QSignalSpy launched(app.notifier(), &PlayerNotifier::playerLaunched);
    QSignalSpy infos(app.notifier(), &PlayerNotifier::playerInfo);

    startPlayer({first_, second_});
    ASSERT_TRUE(signalled(launched));
    EXPECT_EQ(player->busName(), kMpvName);
    EXPECT_TRUE(app.isRunning());
    EXPECT_EQ(MprisPlayer(QString(), bus_).busName(), kMpvName); // one already on the bus

    const QVariantMap playing = waitForInfo(infos, playingLoaded(first_));
    ASSERT_FALSE(playing.isEmpty());
    EXPECT_EQ(playing.value("Name"), "Tone 440");
    EXPECT_EQ(app.playerState(), kPSP);

    infos.clear();
    app.playpause();
    ASSERT_FALSE(waitForInfo(infos, inState("Paused")).isEmpty());
    EXPECT_EQ(app.playerState(), kPSp);

    infos.clear();
    app.playpause();
    ASSERT_FALSE(waitForInfo(infos, inState("Playing")).isEmpty());

    infos.clear();
    callMpv("Stop");
    ASSERT_FALSE(waitForInfo(infos, inState("Stopped")).isEmpty());
    EXPECT_EQ(app.playerState(), kPSS);
}

TEST_F(MprisPlayerTest, CurrentTrackIsTheLibraryTrackOrTheFileBeingPlayed)
{
    const auto player = std::make_shared<MprisPlayer>(kMpvName, bus_);
    const auto libraryTrack = std::make_shared<LibraryTrack>();
    player->setTrackResolver([&](const QString &path) -> RemoteObjectPtr {
        return path == first_ ? libraryTrack : nullptr;
    });
    const ITunesApplication app = ITunesApplication::withBackend(player);
    QSignalSpy infos(app.notifier(), &PlayerNotifier::playerInfo);

    startPlayer({first_, second_});
    const QVariantMap first = waitForInfo(infos, playingLoaded(first_));
    ASSERT_FALSE(first.isEmpty());
    EXPECT_EQ(first.value("Persistent ID"), "00000000000000AB");
    EXPECT_TRUE(app.currentTrack().get().isSameObject(ITunesTrack(nullptr, libraryTrack)));

    infos.clear();
    app.nextTrack();
    ASSERT_FALSE(waitForInfo(infos, playingLoaded(second_)).isEmpty());
    const ITunesTrack track = app.currentTrack().get();
    ASSERT_TRUE(track.isKindOf<ITunesFileTrack>());
    EXPECT_EQ(track.as<ITunesFileTrack>().location(), second_);
    EXPECT_EQ(track.name(), "Tone 880");
    EXPECT_NEAR(track.duration(), 5.0, 0.2);
}

TEST_F(MprisPlayerTest, VolumeMuteAndPositionAreWrittenToThePlayer)
{
    const auto player = std::make_shared<MprisPlayer>(kMpvName, bus_);
    RecordingDelegate delegate;
    const ITunesApplication app = ITunesApplication::withBackend(player);
    app.setDelegate(&delegate);
    QSignalSpy infos(app.notifier(), &PlayerNotifier::playerInfo);
    startPlayer({first_});
    ASSERT_FALSE(waitForInfo(infos, playingLoaded(first_)).isEmpty());
    infos.clear();
    app.playpause();
    ASSERT_FALSE(waitForInfo(infos, inState("Paused")).isEmpty());

    app.setSoundVolume(40);
    EXPECT_EQ(app.soundVolume(), 40);
    app.setMute(true);
    EXPECT_TRUE(app.mute());
    EXPECT_EQ(app.soundVolume(), 0);
    app.setMute(false);
    EXPECT_FALSE(app.mute());
    EXPECT_EQ(app.soundVolume(), 40);

    // mpv places a seek a few tenths of a second early.
    app.setPlayerPosition(2.5);
    EXPECT_TRUE(QTest::qWaitFor([&] { return qAbs(app.playerPosition() - 2.5) < 0.35; }, kDeadline));
    app.rewind();
    EXPECT_TRUE(QTest::qWaitFor([&] { return app.playerPosition() < 0.35; }, kDeadline));
    EXPECT_TRUE(delegate.failures.isEmpty());
}

TEST_F(MprisPlayerTest, PlayerQuittingIsSeenAndLaterReadsFailToTheDelegate)
{
    const auto player = std::make_shared<MprisPlayer>(kMpvName, bus_);
    RecordingDelegate delegate;
    const ITunesApplication app = ITunesApplication::withBackend(player);
    app.setDelegate(&delegate);
    QSignalSpy launched(app.notifier(), &PlayerNotifier::playerLaunched);
    QSignalSpy terminated(app.notifier(), &PlayerNotifier::playerTerminated);
    startPlayer({first_});
    ASSERT_TRUE(signalled(launched));
    EXPECT_TRUE(app.isRunning());

    stopPlayer();
    ASSERT_TRUE(signalled(terminated));
    EXPECT_FALSE(app.isRunning());
    EXPECT_EQ(app.playerState(), 0u);
    ASSERT_EQ(delegate.failures.size(), 1);
    EXPECT_EQ(delegate.failures[0].first, "playerState");
    EXPECT_EQ(delegate.failures[0].second, "org.freedesktop.DBus.Error.ServiceUnknown");
}
