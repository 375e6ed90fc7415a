#include "additions/appcontext.h"
#include "application/appcontroller.h"
#include "application/applicationui.h"
#include "application/apppreferences.h"
#include "player/memoryplayer.h"
#include "services/server/servermessages.h"

#include "localhttpserver.h"
#include "serverfakes.h"
#include "silentapplicationui.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

// Alerts and quitting are recorded; delays run on real timers.
struct LaunchUi : SilentApplicationUi
{
    QStringList shown;
    bool quit_ = false;
    void showStandardAlert(const QString &key) override { shown << key; }
    void showAlert(const QString &, const QString &, const QString &key) override { shown << key; }
    void quit() override { quit_ = true; }
    void afterDelay(double seconds, std::function<void()> call) override
    {
        QTimer::singleShot(qRound(seconds * 1000), qApp, std::move(call));
    }
};

class ServerLaunchTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        player->makeDefault();
        qputenv("ORVANE_SERVER_BASE_URL", server.baseUrl().toUtf8());
        // A system that is never supported: its alert marks the end of the launch jobs.
        qputenv("ORVANE_SUPPORTED_SYSTEMS", "none 0");
        preferences.readUserPreferences();
        QFile::remove(ServerMessages::cachePath());
        factory.appLinksMaker = [this] { return std::make_shared<ServerMessages>(serverUi); };
    }
    bool launchJobsDone() const { return ui.shown.contains("0003.0032"); }

    AppPreferences preferences;
    MemoryPlayerPtr player = MemoryPlayer::create();
    LocalHttpServer server;
    LaunchUi ui;
    RecordingServerUi serverUi;
    ProgramServiceFactory factory;
};

} // namespace

TEST_F(ServerLaunchTest, ASilentServerDelaysOnlyTheChecksAndLeavesNoCache)
{
    server.respond("/3/request.php", ScriptedResponse::silent());
    AppController controller(*appContext(), ui, factory, preferences);
    QElapsedTimer clock;
    clock.start();
    controller.awakeFromNib();
    // The program is up while the launch thread still waits for the server.
    ASSERT_NE(controller.yourTuneController(), nullptr);
    EXPECT_TRUE(controller.yourTuneController()->yourControllerIsVissible());
    EXPECT_FALSE(launchJobsDone());

    ASSERT_TRUE(waitUntil([&] { return launchJobsDone(); }));
    EXPECT_GE(clock.elapsed(), 5000 * 95 / 100);
    EXPECT_EQ(ui.shown, QStringList{"0003.0032"}); // nothing about the server
    EXPECT_FALSE(QFile::exists(ServerMessages::cachePath()));
    EXPECT_FALSE(ui.quit_);
}

TEST_F(ServerLaunchTest, ARefusingServerIsReported)
{
    server.respond("/3/request.php", ScriptedResponse::text("<Orvane status=\"Maintenance\"/>"));
    AppController controller(*appContext(), ui, factory, preferences);
    controller.awakeFromNib();
    ASSERT_TRUE(waitUntil([&] { return launchJobsDone(); }));
    EXPECT_EQ(ui.shown, (QStringList{"0003.0025", "0003.0032"}));
    EXPECT_TRUE(serverUi.alerts.isEmpty());
}

TEST_F(ServerLaunchTest, AFalseRunStopsTheProgramAndAMissingOneLetsItRun)
{
    server.respond("/3/request.php",
                   ScriptedResponse::text("<Orvane status=\"OK\"><Launch><Run>false</Run><Title>Retired</Title>"
                                          "<Message>This version may no longer run.</Message></Launch></Orvane>"));
    {
        AppController controller(*appContext(), ui, factory, preferences);
        controller.awakeFromNib();
        ASSERT_TRUE(waitUntil([&] { return ui.quit_; }));
        EXPECT_EQ(serverUi.alerts, QStringList{"Retired|This version may no longer run.|0002.0001"});
    }

    ui.quit_ = false;
    ui.shown.clear();
    server.respond("/3/request.php", ScriptedResponse::text("<Orvane status=\"OK\"><Launch/></Orvane>"));
    AppController controller(*appContext(), ui, factory, preferences);
    controller.awakeFromNib();
    ASSERT_TRUE(waitUntil([&] { return launchJobsDone(); }));
    EXPECT_EQ(serverUi.alerts.size(), 1);
    EXPECT_FALSE(ui.quit_);
}
