#include "additions/appcontext.h"
#include "pooltestsupport.h"

#include "additions/localizedstrings.h"
#include "additions/ovexception.h"
#include "pool/functionpoollog.h"
#include "pool/functionpoolpreferences.h"
#include "pool/gui/functionpoolwindow.h"
#include "pool/gui/functionsheetregistry.h"
#include "pool/gui/organizerwindowcontroller.h"
#include "pool/gui/poolpreferencessheet.h"
#include "pool/gui/poolsheets.h"
#include "pool/poolfunctionregistry.h"

#include <QApplication>
#include <QCheckBox>
#include <QDeadlineTimer>
#include <QFile>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTableView>

#include <atomic>

namespace {

// Processes events until the condition holds; the minute is only a guard against a hang, long
// enough for a machine under heavy load.
template <class Condition>
bool waitFor(Condition condition)
{
    const QDeadlineTimer deadline(60000);
    while (!condition() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    return condition();
}

QMessageBox *shownAlert(QWidget *parent)
{
    for (QMessageBox *box : parent->findChildren<QMessageBox *>())
        if (box->isVisible())
            return box;
    return nullptr;
}

class FunctionPoolWindowTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        player->makeDefault();
        functions.registerFunction(3, QStringLiteral("Test three"),
                                   [](FunctionPoolController *p) { return new TestFunction(p); });
        window = std::make_unique<FunctionPoolWindow>(functions, sheets);
        window->show();
        pool()->myPreferences()->setPrefConfirmFunction(false);
    }

    void TearDown() override
    {
        window.reset();
        appContext()->setPlayerBackend(nullptr);
    }

    FunctionPoolController *pool() const { return window->functionPool(); }
    TestFunction *function() const { return static_cast<TestFunction *>(pool()->myFunction(3)); }

    void selectTracks(int count)
    {
        QList<MemoryObjectPtr> tracks;
        for (int i = 1; i <= count; ++i)
            tracks.append(player->addFileTrack(QStringLiteral("Track %1").arg(i),
                                               QStringLiteral("/music/%1.mp3").arg(i), {}));
        player->setSelection(tracks);
    }

    bool idle() const { return pool()->runState() == FunctionPoolController::RunState::Idle; }

    MemoryPlayerPtr player = MemoryPlayer::create();
    PoolFunctionRegistry functions;
    FunctionSheetRegistry sheets;
    std::unique_ptr<FunctionPoolWindow> window;
};

TEST_F(FunctionPoolWindowTest, AlertSheetsShowTheTextsOfTheirKeys)
{
    pool()->showAlertMessage(PoolAlertCode::NoSelection);
    QMessageBox *box = shownAlert(window.get());
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->text(), ov_localizedString("0003.0001"));
    EXPECT_EQ(box->informativeText(), ov_localizedString("0003.0003"));
    ASSERT_EQ(box->buttons().size(), 1);
    EXPECT_EQ(box->buttons().first()->text(), ov_localizedString("0002.0001"));
    EXPECT_EQ(box->checkBox(), nullptr);
    EXPECT_EQ(box->windowModality(), Qt::WindowModal);
    box->buttons().first()->click();
    EXPECT_TRUE(waitFor([&] { return shownAlert(window.get()) == nullptr; }));
}

TEST_F(FunctionPoolWindowTest, ConfirmationBoxTickedWithTheSecondButtonTurnsConfirmationOffWithoutARun)
{
    selectTracks(2);
    pool()->myPreferences()->setPrefConfirmFunction(true);
    window->clickFunctionNavigator(3);
    window->functionView(3)->findChild<QPushButton *>("runButton")->click();
    QMessageBox *box = shownAlert(window.get());
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->informativeText(), ov_localizedString("0003.0015"));
    ASSERT_NE(box->checkBox(), nullptr);
    EXPECT_EQ(box->checkBox()->text(), ov_localizedString("0002.0004"));
    ASSERT_EQ(box->buttons().size(), 2);
    box->checkBox()->setChecked(true);
    QPushButton *second = nullptr;
    for (QAbstractButton *button : box->buttons())
        if (button->text() == ov_localizedString("0002.0002"))
            second = qobject_cast<QPushButton *>(button);
    ASSERT_NE(second, nullptr);
    second->click();
    EXPECT_TRUE(waitFor([&] { return idle(); }));
    EXPECT_FALSE(pool()->myPreferences()->prefConfirmFunction());
    EXPECT_EQ(function()->calls(), QStringList({"check"}));
}

TEST_F(FunctionPoolWindowTest, ProgressSheetShowsTheEnginesValuesAndCancelStopsTheRun)
{
    selectTracks(3);
    std::atomic<bool> trackStarted = false;
    std::atomic<bool> cancelSeen = false;
    function()->onTrack = [&](const ITunesTrack &) {
        // The first track holds the run until the sheet's Cancel has reached the engine.
        trackStarted = true;
        const QDeadlineTimer deadline(60000);
        while (!pool()->yourCurrentFunctionCancel() && !deadline.hasExpired())
            std::this_thread::yield();
        cancelSeen = pool()->yourCurrentFunctionCancel();
    };
    ProgressSheet *sheet = window->progressSheet();
    window->clickFunctionNavigator(3);
    window->clickFunctionRun();
    // Cancel is enabled just before the loop starts; clicking it then would stop the run before
    // its first track, so the click waits until that track is under way.
    ASSERT_TRUE(waitFor([&] { return sheet->cancelButton()->isEnabled() && trackStarted; }));
    EXPECT_TRUE(sheet->isVisible());
    EXPECT_FALSE(sheet->isIndeterminate());
    EXPECT_EQ(sheet->total(), 3);
    EXPECT_EQ(sheet->counter(), 0);
    EXPECT_EQ(sheet->comment(), "");
    sheet->cancelButton()->click();
    EXPECT_TRUE(waitFor([&] { return idle(); }));
    EXPECT_TRUE(cancelSeen);
    EXPECT_FALSE(sheet->isVisible());
    EXPECT_EQ(function()->calls(), QStringList({"check", "pre", "main Track 1", "end"}));

    // The comment and counter follow the engine's calls directly as well.
    pool()->poolProgressOpen();
    EXPECT_TRUE(sheet->isIndeterminate());
    pool()->poolProgressMessage(PoolProgressComment::FetchingTracks);
    pool()->poolProgressValues(9);
    pool()->poolProgressUpdate(4);
    EXPECT_EQ(sheet->comment(), ov_localizedString("0004.0001"));
    EXPECT_EQ(sheet->counter(), 4);
    EXPECT_EQ(sheet->total(), 9);
    pool()->poolProgressClose();
    EXPECT_FALSE(sheet->isVisible());
}

TEST_F(FunctionPoolWindowTest, LogSheetListsTheRunAndOpensAfterItWhenAsked)
{
    selectTracks(2);
    pool()->myPreferences()->setPrefLogDisplayOnFunctionEnd(true);
    function()->onTrack = [&](const ITunesTrack &track) {
        if (track.name() == "Track 2")
            throw OVException("TestFailure", "broken tag");
        pool()->setYourLogNo(TrackLogState::Changed);
    };
    window->clickFunctionNavigator(3);
    window->clickFunctionRun();
    ASSERT_TRUE(waitFor([&] { return idle() && window->logSheet()->isVisible(); }));
    QCoreApplication::processEvents();
    QAbstractItemModel *shown = window->logSheet()->table()->model();
    ASSERT_EQ(shown->rowCount(), 2);
    EXPECT_EQ(shown->index(0, FunctionPoolLog::InfoTextColumn).data().toString(), " - Track 1\n/music/1.mp3");
    EXPECT_FALSE(shown->index(0, FunctionPoolLog::IconColumn).data(Qt::DecorationRole).isNull());
    EXPECT_EQ(shown->index(0, FunctionPoolLog::IconColumn).data().toString(), "");
    EXPECT_EQ(window->errorLogSheet()->table()->model()->rowCount(), 1);
}

TEST_F(FunctionPoolWindowTest, PreferencesSheetRefusesEqualSuffixesWithItsAlertAndSavesValidSettings)
{
    window->clickToolbarItem(FunctionPoolWindow::PreferencesItem);
    PoolPreferencesSheet *sheet = window->preferencesSheet();
    ASSERT_TRUE(sheet->isVisible());
    pool()->myPreferences()->setPrefArtworkBackSuffix(QStringLiteral("_COVER a"));
    sheet->closePreferencesPanel();
    QMessageBox *box = shownAlert(sheet);
    ASSERT_NE(box, nullptr); // the alert sits on the sheet, which stays open
    EXPECT_EQ(box->informativeText(), ov_localizedString("0003.0005"));
    EXPECT_TRUE(sheet->isVisible());
    box->buttons().first()->click();

    pool()->myPreferences()->setPrefArtworkBackSuffix(QStringLiteral("_Back"));
    QFile::remove(pool()->myPreferences()->prefUserPrefPlistLocation());
    sheet->closePreferencesPanel();
    EXPECT_FALSE(sheet->isVisible());
    EXPECT_TRUE(QFile::exists(pool()->myPreferences()->prefUserPrefPlistLocation()));
}

TEST(OrganizerWindowControllerTest, ClosingTheWindowSavesFadesOutAndReportsToTheController)
{
    MemoryPlayerPtr player = MemoryPlayer::create();
    player->makeDefault();
    QList<int> killed;
    const PoolFunctionRegistry functions;
    const FunctionSheetRegistry sheets;
    {
        OrganizerWindowController controller({.killTargetWindow = [&](int option) { killed.append(option); }},
                                             functions, sheets);
        controller.openFunctionPoolMainWindow();
        EXPECT_TRUE(controller.isWindowVisible());
        controller.closeFunctionPoolMainWindow(); // refused while fading in
        ASSERT_TRUE(waitFor([&] { return controller.yourAllowWindowChanges(); }));
        EXPECT_DOUBLE_EQ(controller.window()->windowOpacity(), 1.0);
        EXPECT_TRUE(killed.isEmpty());

        const QString settings = controller.window()->functionPool()->myPreferences()->prefUserPrefPlistLocation();
        QFile::remove(settings);
        controller.window()->close(); // the close button goes through the controller
        EXPECT_TRUE(QFile::exists(settings));
        EXPECT_TRUE(controller.isWindowVisible()); // fading out
        ASSERT_TRUE(waitFor([&] { return !killed.isEmpty(); }));
        EXPECT_FALSE(controller.isWindowVisible());
    }
    EXPECT_EQ(killed, QList<int>({2}));
    appContext()->setPlayerBackend(nullptr);
}

} // namespace
