#include "smalllibrary.h"

#include "player/library/gui/librarytrackmodel.h"
#include "player/library/gui/librarywindow.h"
#include "player/library/gui/librarywindowcontroller.h"

#include <QGuiApplication>
#include <QHeaderView>
#include <QImage>
#include <QScrollBar>
#include <QSet>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

// Shows the window with a small library on the X server the test runs on, checks what would
// look broken at a glance and keeps the picture for a person to look at.
TEST(LibraryWindowOnScreen, ShowsASmallLibraryReadably)
{
    ASSERT_EQ(QGuiApplication::platformName(), "xcb");
    QTemporaryDir dir;
    SmallLibrary library(dir.path(), sampleTags());
    LibraryWindowController controller(library.backend);
    LibraryWindow *window = controller.window();
    QTableView *table = window->tableView();
    controller.showWindow();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    table->selectRow(3);
    table->selectionModel()->select(table->model()->index(4, 0),
                                    QItemSelectionModel::Select | QItemSelectionModel::Rows);

    // Every column title fits its column, and the columns fill the table without a scroll bar.
    QHeaderView *header = table->horizontalHeader();
    for (int column = 0; column < LibraryTrackModel::ColumnCount; ++column) {
        const QString title = table->model()->headerData(column, Qt::Horizontal).toString();
        EXPECT_GE(header->sectionSize(column), header->fontMetrics().horizontalAdvance(title) + 8)
            << title.toStdString();
    }
    EXPECT_EQ(header->length(), table->viewport()->width());
    EXPECT_FALSE(table->horizontalScrollBar()->isVisible());
    // And every row of a small library is in view.
    EXPECT_GE(table->viewport()->height(), table->rowViewportPosition(11) + table->rowHeight(11));

    const QImage picture = window->grab().toImage();
    const QString folder = qEnvironmentVariable("ORVANE_SCREENSHOT_DIR");
    ASSERT_FALSE(folder.isEmpty());
    QDir().mkpath(folder);
    const QString path = folder + "/library-window.png";
    ASSERT_TRUE(picture.save(path));
    std::cout << "screenshot: " << path.toStdString() << std::endl;

    // Text was drawn: a blank or single-colour window has only a handful of colours.
    QSet<QRgb> colours;
    for (int y = 0; y < picture.height(); y += 3)
        for (int x = 0; x < picture.width(); x += 3)
            colours.insert(picture.pixel(x, y));
    EXPECT_GT(colours.size(), 50);
}
