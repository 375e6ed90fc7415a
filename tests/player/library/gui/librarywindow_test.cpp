#include "smalllibrary.h"

#include "player/library/gui/importreportdialog.h"
#include "player/library/gui/libraryfiltermodel.h"
#include "player/library/gui/librarytrackmodel.h"
#include "player/library/gui/librarywindow.h"
#include "player/library/gui/librarywindowcontroller.h"
#include "player/library/gui/trackpropertiesdialog.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <thread>

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

namespace {

using Column = LibraryTrackModel::Column;

class LibraryWindowTest : public ::testing::Test
{
protected:
    QTableView *table() const { return controller.window()->tableView(); }

    QStringList shown(int column) const
    {
        QStringList texts;
        for (int row = 0; row < table()->model()->rowCount(); ++row)
            texts.append(table()->model()->index(row, column).data().toString());
        return texts;
    }

    void select(const QList<int> &viewRows) const
    {
        for (int row : viewRows)
            table()->selectionModel()->select(table()->model()->index(row, 0),
                                              QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }

    QStringList selectionNames() const
    {
        QStringList names;
        for (const ITunesTrack &track : app.selection())
            names.append(track.name());
        return names;
    }

    // The bridge's handle of a track, as the organizer holds it.
    ITunesTrack bridgeTrack(const QString &name) const
    {
        for (const ITunesTrack &track : app.sources().value(0).libraryPlaylists().value(0).tracks())
            if (track.name() == name)
                return track;
        ADD_FAILURE() << "no track " << name.toStdString();
        return {};
    }

    bool statusShows(const QString &text) const
    {
        for (const QLabel *label : controller.window()->findChildren<QLabel *>())
            if (label->text() == text)
                return true;
        return false;
    }

    QTemporaryDir dir;
    SmallLibrary library{dir.path(), sampleTags()};
    ITunesApplication app = ITunesApplication::withBackend(library.backend);
    LibraryWindowController controller{library.backend};
};

TEST_F(LibraryWindowTest, SortsByAColumnWithTheAlbumOrderBreakingTies)
{
    const struct
    {
        Column column;
        Qt::SortOrder order;
        QStringList names;
    } cases[] = {
        {Column::Artist, Qt::AscendingOrder,
         {"untitled", "Windowlicker", "Wake Up", "Roygbiv", "Teardrop", "So What", "Blue in Green",
          "Ágætis byrjun", "Hoppípolla", "Come Together", "Something", "Here Comes the Sun"}},
        {Column::Name, Qt::AscendingOrder,
         {"Ágætis byrjun", "Blue in Green", "Come Together", "Here Comes the Sun", "Hoppípolla",
          "Roygbiv", "So What", "Something", "Teardrop", "untitled", "Wake Up", "Windowlicker"}},
        {Column::Year, Qt::DescendingOrder,
         {"Windowlicker", "Roygbiv", "Hoppípolla", "Wake Up", "Ágætis byrjun", "Teardrop",
          "Here Comes the Sun", "Something", "Come Together", "Blue in Green", "So What",
          "untitled"}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(int(c.column));
        table()->sortByColumn(c.column, c.order);
        EXPECT_EQ(shown(Column::Name), c.names);
    }

    // What the cells of one track read.
    table()->sortByColumn(Column::Name, Qt::AscendingOrder);
    const int row = int(shown(Column::Name).indexOf("Come Together"));
    QStringList cells;
    for (int column = Column::Year; column <= Column::Rating; ++column)
        cells.append(table()->model()->index(row, column).data().toString());
    EXPECT_EQ(cells, QStringList({"1969", "1 of 17", "1", "0:01", "★★★★★"}));
    EXPECT_EQ(shown(Column::Rating).at(int(shown(Column::Name).indexOf("Windowlicker"))), "★★½");
}

TEST_F(LibraryWindowTest, SearchFiltersOnTheTextColumns)
{
    const struct
    {
        QString search;
        QStringList names;
    } cases[] = {
        {"beatles", {"Come Together", "Here Comes the Sun", "Something"}},
        {"ABBEY road", {"Come Together", "Here Comes the Sun", "Something"}},
        {"blue", {"Blue in Green", "So What"}},                 // name or album
        {"post-rock", {"Hoppípolla", "Ágætis byrjun"}},          // genre
        {"various", {"Roygbiv", "Windowlicker"}},                // album artist
        {"sigur takk", {"Hoppípolla"}},                          // every word
        {"1969", {}},                                            // the year is no text
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.search.toStdString());
        controller.window()->searchField()->setText(c.search);
        QStringList names = shown(Column::Name);
        names.sort();
        QStringList expected = c.names;
        expected.sort();
        EXPECT_EQ(names, expected);
        EXPECT_TRUE(statusShows(QStringLiteral("%1 of 12 tracks").arg(c.names.size())));
    }
    controller.window()->searchField()->clear();
    EXPECT_EQ(table()->model()->rowCount(), 12);
    EXPECT_TRUE(statusShows("12 tracks"));
}

TEST_F(LibraryWindowTest, TheSelectionIsTheLibrarySelection)
{
    table()->sortByColumn(Column::Name, Qt::AscendingOrder);
    select({0, 2});
    EXPECT_EQ(selectionNames(), QStringList({"Ágætis byrjun", "Come Together"}));
    EXPECT_TRUE(statusShows("12 tracks, 2 selected"));

    // A track the search hides is no longer selected.
    controller.window()->searchField()->setText("beatles");
    EXPECT_EQ(selectionNames(), QStringList({"Come Together"}));

    table()->clearSelection();
    EXPECT_TRUE(app.selection().isEmpty());
}

TEST_F(LibraryWindowTest, RevealFromAnotherThreadSelectsTheTrackEvenWhenTheSearchHidesIt)
{
    controller.window()->searchField()->setText("jazz");
    select({0});
    const ITunesTrack teardrop = bridgeTrack("Teardrop");
    std::thread organizer([&] { teardrop.reveal(); });
    organizer.join();

    ASSERT_TRUE(QTest::qWaitFor([&] { return selectionNames() == QStringList{"Teardrop"}; }));
    EXPECT_TRUE(controller.window()->searchField()->text().isEmpty());
    EXPECT_TRUE(controller.window()->isVisible());
    EXPECT_EQ(table()->currentIndex().siblingAtColumn(Column::Name).data().toString(), "Teardrop");
}

TEST_F(LibraryWindowTest, RemovalAsksFirstAndLeavesTheFilesOnDisk)
{
    table()->sortByColumn(Column::Name, Qt::AscendingOrder);
    const QString somethingPath = bridgeTrack("Something").as<ITunesFileTrack>().location();
    for (const auto &[button, remaining] : {std::pair{"Cancel", 12}, std::pair{"Remove", 10}}) {
        SCOPED_TRACE(button);
        table()->clearSelection();
        select({6, 7}); // So What, Something
        QTimer answer;
        QObject::connect(&answer, &QTimer::timeout, [&, button = QString(button)] {
            if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget()))
                for (QAbstractButton *choice : box->buttons())
                    if (choice->text() == button)
                        choice->click();
        });
        answer.start(10);
        controller.window()->removeAction()->trigger();
        EXPECT_EQ(library.backend->tracks().size(), remaining);
        EXPECT_EQ(table()->model()->rowCount(), remaining);
    }
    EXPECT_FALSE(shown(Column::Name).contains("Something"));
    EXPECT_TRUE(QFile::exists(somethingPath));
    EXPECT_TRUE(app.selection().isEmpty());
}

TEST_F(LibraryWindowTest, ImportingAFolderListsTheFilesItRefused)
{
    const QString folder = dir.filePath("new");
    makeAudio(folder + "/a", "one.mp3");
    makeAudio(folder + "/b", "two.flac");
    QFile fake(folder + "/fake.mp3");
    ASSERT_TRUE(fake.open(QIODevice::WriteOnly));
    fake.write("not audio at all, only text that claims to be an MP3 file\n");
    fake.close();

    QSignalSpy finished(&controller, &LibraryWindowController::importFinished);
    controller.importPaths({folder});
    ASSERT_TRUE(finished.wait(30000));

    EXPECT_EQ(table()->model()->rowCount(), 14);
    EXPECT_TRUE(statusShows("14 tracks"));
    ImportReportDialog *report = controller.importReport();
    ASSERT_NE(report, nullptr);
    ASSERT_EQ(report->list()->topLevelItemCount(), 1);
    EXPECT_EQ(report->list()->topLevelItem(0)->text(0), fake.fileName());
    EXPECT_FALSE(report->list()->topLevelItem(0)->text(1).isEmpty());
}

TEST_F(LibraryWindowTest, FollowsChangesMadeThroughTheBridgeOnAnotherThread)
{
    const ITunesTrack teardrop = bridgeTrack("Teardrop");
    const ITunesTrack roygbiv = bridgeTrack("Roygbiv");
    std::thread organizer([&] {
        teardrop.setName("Teardrop (Remastered)");
        roygbiv.deleteItem();
    });
    organizer.join();
    ASSERT_TRUE(QTest::qWaitFor([&] {
        const QStringList names = shown(Column::Name);
        return names.contains("Teardrop (Remastered)") && !names.contains("Roygbiv");
    }));
    EXPECT_EQ(table()->model()->rowCount(), 11);
}

TEST_F(LibraryWindowTest, DoubleClickOpensTheTrackProperties)
{
    table()->sortByColumn(Column::Name, Qt::AscendingOrder);
    controller.showWindow();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(controller.window()));
    const int row = int(shown(Column::Name).indexOf("Wake Up"));
    const QRect cell = table()->visualRect(table()->model()->index(row, Column::Artist));
    QTest::mouseClick(table()->viewport(), Qt::LeftButton, {}, cell.center());
    QTest::mouseDClick(table()->viewport(), Qt::LeftButton, {}, cell.center());

    const auto dialogs = controller.window()->findChildren<TrackPropertiesDialog *>();
    ASSERT_EQ(dialogs.size(), 1);
    const ITunesFileTrack track = bridgeTrack("Wake Up").as<ITunesFileTrack>();
    EXPECT_EQ(dialogs.first()->valueText("persistentID"), track.persistentID());
    EXPECT_EQ(dialogs.first()->valueText("location"), track.location());
    EXPECT_EQ(dialogs.first()->valueText("artist"), "Arcade Fire");
    EXPECT_EQ(dialogs.first()->valueText("rating"), "20");
}

} // namespace
