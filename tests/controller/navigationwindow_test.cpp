#include "additions/localizedstrings.h"
#include "controller/gui/navigationwindow.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

struct StateScrobbler : LastFMScrobbler
{
    int state = 0;
    void scrobbleTrack() override {}
    void scrobbleSubmission() override {}
    void scrobbleClean() override {}
    void scrobbleTrackNow() override {}
    bool isSessionKeyValid() const override { return state == 1; }
    QString prefUserName() const override { return {}; }
    int yourScrobbleState() const override { return state; }
    void loveCurrentTrack() override {}
    void unloveCurrentTrack() override {}
};

class NavigationWindowTest : public ::testing::Test
{
protected:
    std::unique_ptr<TuneControllerNavigatonWindow> make()
    {
        NavigationWindowHooks hooks;
        hooks.tuneControllerPosition = [this] { return point; };
        hooks.controllerShowsNavigation = [this] { return navigation; };
        hooks.useLastFM = [this] { return useLastFM; };
        hooks.scrobbler = [this] { return withScrobbler ? &scrobbler : nullptr; };
        hooks.enableDisableLastFM = [this] { useLastFM = !useLastFM; };
        hooks.killTargetWindow = [this](int window) { killed << window; };
        return std::make_unique<TuneControllerNavigatonWindow>(hooks);
    }
    static bool waitForFade(TuneControllerNavigatonWindow &panel)
    {
        QSignalSpy spy(&panel, &TuneControllerNavigatonWindow::fadeFinished);
        return spy.wait(10000);
    }

    QPoint point{1000, 22};
    bool navigation = true, useLastFM = false, withScrobbler = false;
    StateScrobbler scrobbler;
    QList<int> killed;
};

} // namespace

TEST_F(NavigationWindowTest, ASecondClickDuringTheFadeInIsIgnored)
{
    auto panel = make();
    panel->showWindow();
    EXPECT_TRUE(panel->isWindowVisible());
    EXPECT_FALSE(panel->yourAllowWindowChanges());
    // The second click of the menu button arrives while the panel fades in.
    panel->closeNavigationWindow();
    ASSERT_TRUE(waitForFade(*panel));
    EXPECT_TRUE(panel->isWindowVisible());
    EXPECT_TRUE(panel->yourAllowWindowChanges());
    EXPECT_TRUE(panel->isOrganizeLibraryAnimationRunning());
    EXPECT_TRUE(killed.isEmpty());

    // Now a close fades it out, and only then is it reported closed, with its number.
    panel->closeNavigationWindow();
    EXPECT_TRUE(panel->isWindowVisible());
    ASSERT_TRUE(waitForFade(*panel));
    EXPECT_FALSE(panel->isWindowVisible());
    EXPECT_FALSE(panel->isOrganizeLibraryAnimationRunning());
    EXPECT_EQ(killed, QList<int>{5});

    // Closed by the program while it fades in (quitting closes every window): it goes at once,
    // as a panel that refused would keep the program from quitting.
    auto again = make();
    again->showWindow();
    EXPECT_TRUE(again->window()->close());
    EXPECT_FALSE(again->isWindowVisible());
    EXPECT_EQ(killed, (QList<int>{5, 5}));
}

TEST_F(NavigationWindowTest, HangsFromTheStripAndFollowsItsX)
{
    auto panel = make();
    const QRect frame = panel->window()->geometry();
    EXPECT_EQ(frame.y(), 22);
    EXPECT_EQ(frame.right() + 1, 1000 + 106);

    navigation = false;
    auto withoutNavigation = make();
    EXPECT_EQ(frame.x() - withoutNavigation->window()->x(), 34);

    // Moves are taken only while no fade runs, and change x alone.
    panel->setYourFadeTime(0);
    panel->showWindow();
    point = QPoint(900, 60);
    panel->updateWindowPosition();
    EXPECT_EQ(panel->yourNavigationWindowPoint(), point);
    QDeadlineTimer guard(10000);
    while (panel->window()->x() != frame.x() - 100 && !guard.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 50);
    EXPECT_EQ(panel->window()->pos(), QPoint(frame.x() - 100, frame.y()));
}

TEST_F(NavigationWindowTest, LastFMStateShownFromTheScrobbler)
{
    EXPECT_EQ(TuneControllerNavigatonWindow::scrobbleStateMessageKey(nullptr), QStringLiteral("0004.0007"));
    EXPECT_TRUE(TuneControllerNavigatonWindow::buttonLastFMStatus(nullptr).endsWith(QStringLiteral("offline.svg")));
    const QList<std::tuple<int, const char *, const char *>> states = {
        {0, "0004.0007", "offline"}, {1, "0004.0008", "online"}, {2, "0004.0009", "error"}, {7, "0004.0010", "offline"}};
    for (const auto &[state, key, icon] : states) {
        scrobbler.state = state;
        EXPECT_EQ(TuneControllerNavigatonWindow::scrobbleStateMessageKey(&scrobbler), QLatin1String(key)) << state;
        EXPECT_TRUE(TuneControllerNavigatonWindow::buttonLastFMStatus(&scrobbler).contains(QLatin1String(icon)))
            << state;
    }
    EXPECT_TRUE(TuneControllerNavigatonWindow::buttonImageLastFM(true).endsWith(QStringLiteral("switch-on.svg")));
    EXPECT_TRUE(TuneControllerNavigatonWindow::buttonImageLastFM(false).endsWith(QStringLiteral("switch-off.svg")));

    // The text comes from the strings table, not the key.
    withScrobbler = true;
    scrobbler.state = 1;
    auto panel = make();
    EXPECT_EQ(panel->scrobbleStateMessage(), ov_localizedString(QStringLiteral("0004.0008")));
    EXPECT_NE(panel->scrobbleStateMessage(), QStringLiteral("0004.0008"));
}
