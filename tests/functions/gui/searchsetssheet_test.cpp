#include "additions/appcontext.h"
#include "additions/ovapplication.h"
#include "additions/propertylist.h"
#include "functions/function0001.h"
#include "functions/function0002.h"
#include "functions/gui/functionsheets.h"
#include "functions/gui/searchsetssheet.h"
#include "player/memoryplayer.h"
#include "pool/functionpoolcontroller.h"
#include "pool/gui/functionpoolwindow.h"
#include "pool/gui/functionsheetregistry.h"
#include "pool/poolfunctionregistry.h"

#include <QComboBox>
#include <QDropEvent>
#include <QMimeData>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

namespace {

QList<SearchSet> lettered(const QString &letters)
{
    QList<SearchSet> sets;
    for (const QChar letter : letters)
        sets.append({letter, letter.toLower(), 1, SearchMode::Everywhere});
    return sets;
}

QString order(const QList<SearchSet> &sets)
{
    QString letters;
    for (const SearchSet &set : sets)
        letters += set.search;
    return letters;
}

// The organizer window with function 1, its sheet opened from the panel's button over the
// sets the file held when the window was made.
class SearchSetsSheetTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        player->makeDefault();
        functions.registerFunction(1, QStringLiteral("Search and replace"),
                                   [](FunctionPoolController *p) { return new Function0001(p); });
        registerFunctionSheets(sheets);
        QVariantList saved;
        for (const SearchSet &set : QList<SearchSet>{{"ft.", "feat.", 1, SearchMode::WholeWord}, {"  ", " ", 0, SearchMode::RegularExpression}})
            saved.append(set.toMap());
        ASSERT_TRUE(PropertyList::write(OVApplication::ov_applicationOrganizerURLForPlistSearchAndReplaceSets(), saved));
        window = std::make_unique<FunctionPoolWindow>(functions, sheets);
        window->show();
        window->clickFunctionNavigator(1);
        for (QPushButton *button : window->functionView(1)->findChildren<QPushButton *>())
            if (button->text() == QLatin1String("Edit Search Sets..."))
                button->click();
        sheet = window->findChild<SearchSetsSheet *>();
        ASSERT_TRUE(sheet && QTest::qWaitFor([this] { return sheet->isVisible(); }));
    }

    void TearDown() override { appContext()->setPlayerBackend(nullptr); }

    Function0001 *function() const { return static_cast<Function0001 *>(window->functionPool()->myFunction(1)); }
    SearchSetsModel *model() const { return function()->searchSetsModel(); }
    QComboBox *modeEditor(int row) const
    {
        return qobject_cast<QComboBox *>(sheet->table()->indexWidget(model()->index(row, SearchSetsModel::ModeColumn)));
    }

    MemoryPlayerPtr player = MemoryPlayer::create();
    PoolFunctionRegistry functions;
    FunctionSheetRegistry sheets;
    std::unique_ptr<FunctionPoolWindow> window;
    SearchSetsSheet *sheet = nullptr;
};

TEST_F(SearchSetsSheetTest, ShowsTheSavedSetsInAWindowModalSheet)
{
    EXPECT_EQ(sheet->windowModality(), Qt::WindowModal);
    EXPECT_EQ(sheet->parentWidget(), window.get());
    ASSERT_EQ(sheet->table()->model()->rowCount(), 2);
    EXPECT_EQ(model()->index(0, SearchSetsModel::ReplaceColumn).data().toString(), "feat.");
    EXPECT_EQ(model()->index(1, SearchSetsModel::CaseColumn).data(Qt::CheckStateRole), Qt::Unchecked);
    ASSERT_TRUE(modeEditor(0) && modeEditor(1));
    EXPECT_EQ(modeEditor(0)->currentText(), "A whole word");
    EXPECT_EQ(modeEditor(1)->currentText(), "Regular expression");

    modeEditor(0)->setCurrentIndex(7);
    emit modeEditor(0)->activated(7);
    EXPECT_EQ(function()->yourSearchSets().first().mode, SearchMode::FirstInWord);
}

TEST_F(SearchSetsSheetTest, AddAppendsADefaultSetAndRemoveTakesTheSelectedRows)
{
    EXPECT_FALSE(sheet->removeButton()->isEnabled());
    sheet->addButton()->click();
    ASSERT_EQ(model()->rowCount(), 3);
    EXPECT_EQ(function()->yourSearchSets().last(), SearchSet({"*** ??? ***", "*** ??? ***", 1, SearchMode::Everywhere}));
    EXPECT_EQ(sheet->selectedRows(), QList<int>{2});
    EXPECT_TRUE(modeEditor(2)) << "new rows get their pop-up too";

    sheet->table()->selectionModel()->select(model()->index(0, 0),
                                             QItemSelectionModel::Select | QItemSelectionModel::Rows);
    ASSERT_TRUE(sheet->removeButton()->isEnabled());
    sheet->removeButton()->click();
    EXPECT_EQ(order(function()->yourSearchSets()), "  ");
    EXPECT_FALSE(sheet->removeButton()->isEnabled());
}

TEST_F(SearchSetsSheetTest, DropsOnTheTableMoveRowsAboveTheRowUnderTheUpperHalf)
{
    struct DropCase
    {
        QList<int> dragged;
        int row;      // the row under the pointer; -1 for the empty space below the rows
        bool lowerHalf;
        QString expected;
    };
    const QList<DropCase> cases = {
        {{0}, 2, true, "BCADE"}, {{4}, 0, false, "EABCD"}, {{0, 4}, 1, true, "BAECD"},
        {{1, 2}, -1, false, "ADEBC"}, {{3, 1}, 0, false, "BDACE"}, {{2}, 2, false, "ABCDE"},
    };
    SearchSetsTable *table = sheet->table();
    table->resize(600, 400);
    for (const DropCase &c : cases) {
        model()->setSearchSets(lettered("ABCDE"));
        QModelIndexList indexes;
        for (int row : c.dragged)
            indexes.append(model()->index(row, SearchSetsModel::SearchColumn));
        std::unique_ptr<QMimeData> data(model()->mimeData(indexes));
        QPoint at(20, table->rowViewportPosition(4) + table->rowHeight(4) + 10);
        if (c.row >= 0)
            at.setY(table->rowViewportPosition(c.row) + table->rowHeight(c.row) * (c.lowerHalf ? 3 : 1) / 4);

        // Qt hands a drop to the widget that accepted the drag's entry.
        QDragEnterEvent copy(at, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(table->viewport(), &copy);
        EXPECT_FALSE(copy.isAccepted()) << "copies are refused";
        QDragEnterEvent enter(at, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(table->viewport(), &enter);
        ASSERT_TRUE(enter.isAccepted());
        QDropEvent drop(at, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(table->viewport(), &drop);
        EXPECT_TRUE(drop.isAccepted());
        EXPECT_EQ(order(model()->searchSets()), c.expected) << c.row;
        EXPECT_TRUE(sheet->selectedRows().isEmpty());
    }
}

TEST_F(SearchSetsSheetTest, DoneAndEscapeSaveTheSetsAndCloseTheSheet)
{
    for (const bool escape : {false, true}) {
        model()->setSearchSets(lettered(escape ? "XY" : "Z"));
        if (!sheet->isVisible())
            function()->openSeachSetsPanel();
        ASSERT_TRUE(sheet->isVisible());
        if (escape)
            QTest::keyClick(sheet, Qt::Key_Escape);
        else
            sheet->doneButton()->click();
        EXPECT_FALSE(sheet->isVisible());
        QList<SearchSet> saved;
        for (const QVariant &entry : PropertyList::read(model()->location()).toList())
            saved.append(SearchSet::fromMap(entry.toMap()));
        EXPECT_EQ(saved, lettered(escape ? "XY" : "Z"));
    }
}

TEST(FunctionSheets, OnlyFunctionOneGetsTheSearchSetsSheet)
{
    FunctionSheetRegistry sheets;
    registerFunctionSheets(sheets);
    QWidget window;
    Function0001 searchReplace(nullptr);
    Function0002 changeCase(nullptr);
    sheets.attachSheets(2, &searchReplace, &window);
    sheets.attachSheets(1, &changeCase, &window);
    EXPECT_TRUE(window.findChildren<SearchSetsSheet *>().isEmpty());
    sheets.attachSheets(1, &searchReplace, &window);
    EXPECT_EQ(window.findChildren<SearchSetsSheet *>().size(), 1);
    // Without the module's sheets the window gets none.
    FunctionSheetRegistry().attachSheets(1, &searchReplace, &window);
    EXPECT_EQ(window.findChildren<SearchSetsSheet *>().size(), 1);
}

} // namespace
