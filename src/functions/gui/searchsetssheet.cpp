#include "functions/gui/searchsetssheet.h"

#include "functions/function0001.h"

#include <QComboBox>
#include <QDrag>
#include <QDragEnterEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

#include <algorithm>

namespace {

// The mode column as the pop-up the panel shows for its own mode: the same labels and numbers.
class ModeDelegate : public QStyledItemDelegate
{
public:
    ModeDelegate(const PanelField &modeField, QObject *parent)
        : QStyledItemDelegate(parent), labels_(modeField.choiceLabels), values_(modeField.choiceValues)
    {
    }

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &) const override
    {
        auto *popUp = new QComboBox(parent);
        for (int i = 0; i < labels_.size(); ++i)
            popUp->addItem(labels_.at(i), values_.value(i));
        // A persistent pop-up: each choice is written at once, not when the cell loses focus.
        auto *self = const_cast<ModeDelegate *>(this);
        QObject::connect(popUp, &QComboBox::activated, self, [self, popUp] { emit self->commitData(popUp); });
        return popUp;
    }

    void setEditorData(QWidget *editor, const QModelIndex &index) const override
    {
        auto *popUp = static_cast<QComboBox *>(editor);
        popUp->setCurrentIndex(popUp->findData(index.data(Qt::EditRole)));
    }

    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override
    {
        model->setData(index, static_cast<QComboBox *>(editor)->currentData(), Qt::EditRole);
    }

    QString displayText(const QVariant &value, const QLocale &) const override
    {
        return labels_.value(values_.indexOf(value.toLongLong()), value.toString());
    }

private:
    QStringList labels_;
    QVariantList values_;
};

PanelField modeField(const Function0001 *function)
{
    for (const PanelField &field : function->panelDescription().fields)
        if (field.property == QLatin1String("yourSearchMode"))
            return field;
    return {};
}

} // namespace

// --- SearchSetsTable

SearchSetsTable::SearchSetsTable(QWidget *parent) : QTableView(parent)
{
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setDragEnabled(true);
    setAcceptDrops(true);
    setDragDropMode(DragDrop);
    setDefaultDropAction(Qt::MoveAction);
    // The line between rows is drawn here; the stock indicator also offers drops onto rows.
    setDropIndicatorShown(false);
}

int SearchSetsTable::dropRowAt(const QPoint &position) const
{
    const int row = rowAt(position.y());
    if (row < 0)
        return model() ? model()->rowCount() : 0;
    return position.y() >= rowViewportPosition(row) + rowHeight(row) / 2 ? row + 1 : row;
}

void SearchSetsTable::startDrag(Qt::DropActions)
{
    const QModelIndexList rows = selectionModel()->selectedRows();
    if (rows.isEmpty())
        return;
    QRect dragged;
    for (const QModelIndex &row : rows)
        dragged |= QRect(0, rowViewportPosition(row.row()), viewport()->width(), rowHeight(row.row()));
    auto *drag = new QDrag(this);
    drag->setMimeData(model()->mimeData(rows));
    drag->setPixmap(viewport()->grab(dragged.intersected(viewport()->rect())));
    // Unlike the stock drag, nothing is removed afterwards: the drop has already moved the rows.
    drag->exec(Qt::MoveAction);
}

bool SearchSetsTable::acceptsDrop(QDropEvent *event, int row) const
{
    return model() && event->possibleActions().testFlag(Qt::MoveAction)
           && model()->canDropMimeData(event->mimeData(), Qt::MoveAction, row, 0, {});
}

void SearchSetsTable::setDropRow(int row)
{
    if (row == dropRow_)
        return;
    dropRow_ = row;
    viewport()->update();
}

void SearchSetsTable::dragEnterEvent(QDragEnterEvent *event)
{
    const int row = dropRowAt(event->position().toPoint());
    if (!acceptsDrop(event, row)) {
        event->ignore();
        return;
    }
    setState(DraggingState);
    event->setDropAction(Qt::MoveAction);
    event->accept();
    setDropRow(row);
}

void SearchSetsTable::dragMoveEvent(QDragMoveEvent *event)
{
    // Scrolls near the edges; its verdict is replaced by the one between rows.
    QTableView::dragMoveEvent(event);
    const int row = dropRowAt(event->position().toPoint());
    if (acceptsDrop(event, row)) {
        event->setDropAction(Qt::MoveAction);
        event->accept();
        setDropRow(row);
    } else {
        event->ignore();
        setDropRow(-1);
    }
}

void SearchSetsTable::dragLeaveEvent(QDragLeaveEvent *event)
{
    QTableView::dragLeaveEvent(event);
    setDropRow(-1);
}

void SearchSetsTable::dropEvent(QDropEvent *event)
{
    const int row = dropRowAt(event->position().toPoint());
    stopAutoScroll();
    setState(NoState);
    setDropRow(-1);
    if (!acceptsDrop(event, row) || !model()->dropMimeData(event->mimeData(), Qt::MoveAction, row, 0, {})) {
        event->ignore();
        return;
    }
    event->setDropAction(Qt::MoveAction);
    event->accept();
    clearSelection();
}

void SearchSetsTable::paintEvent(QPaintEvent *event)
{
    QTableView::paintEvent(event);
    if (dropRow_ < 0 || !model())
        return;
    const int rows = model()->rowCount();
    int y = 1;
    if (rows > 0)
        y = dropRow_ < rows ? rowViewportPosition(dropRow_) : rowViewportPosition(rows - 1) + rowHeight(rows - 1) - 1;
    QPainter painter(viewport());
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.drawLine(0, y, viewport()->width(), y);
}

// --- SearchSetsSheet

SearchSetsSheet::SearchSetsSheet(Function0001 *function, QWidget *window) : QDialog(window), function_(function)
{
    setWindowModality(Qt::WindowModal);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowTitle(tr("Search Sets"));

    auto *intro = new QLabel(tr("The saved search sets run after the panel's own search, from the top down. "
                                "Drag rows to change their order."),
                             this);
    intro->setWordWrap(true);

    SearchSetsModel *model = function->searchSetsModel();
    table_ = new SearchSetsTable(this);
    table_->setModel(model);
    table_->setItemDelegateForColumn(SearchSetsModel::ModeColumn, new ModeDelegate(modeField(function), table_));
    table_->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::SelectedClicked
                            | QAbstractItemView::EditKeyPressed);
    table_->verticalHeader()->hide();
    table_->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    QHeaderView *header = table_->horizontalHeader();
    header->setSectionResizeMode(SearchSetsModel::SearchColumn, QHeaderView::Stretch);
    header->setSectionResizeMode(SearchSetsModel::ReplaceColumn, QHeaderView::Stretch);
    header->setSectionResizeMode(SearchSetsModel::CaseColumn, QHeaderView::ResizeToContents);
    header->setSectionResizeMode(SearchSetsModel::ModeColumn, QHeaderView::Fixed);
    header->resizeSection(SearchSetsModel::ModeColumn, 200);
    openModeEditors();
    connect(model, &QAbstractItemModel::modelReset, this, &SearchSetsSheet::openModeEditors);
    connect(model, &QAbstractItemModel::rowsInserted, this, &SearchSetsSheet::openModeEditors);

    add_ = new QPushButton(tr("Add"), this);
    add_->setAutoDefault(false);
    connect(add_, &QPushButton::clicked, this, &SearchSetsSheet::addSearchSet);
    remove_ = new QPushButton(tr("Remove"), this);
    remove_->setAutoDefault(false);
    connect(remove_, &QPushButton::clicked, this, [this] { function_->removeSearchSet(selectedRows()); });
    const auto updateRemove = [this] { remove_->setEnabled(!selectedRows().isEmpty()); };
    connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, this, updateRemove);
    connect(model, &QAbstractItemModel::modelReset, this, updateRemove);
    connect(model, &QAbstractItemModel::rowsRemoved, this, updateRemove);
    updateRemove();
    done_ = new QPushButton(tr("Done"), this);
    done_->setDefault(true);
    connect(done_, &QPushButton::clicked, function_, &Function0001::closeSeachSetsPanel);

    connect(function, &Function0001::searchSetsPanelOpened, this, &QDialog::open);
    connect(function, &Function0001::searchSetsPanelClosed, this, &QDialog::accept);

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(add_);
    buttons->addWidget(remove_);
    buttons->addStretch(1);
    buttons->addWidget(done_);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(intro);
    layout->addWidget(table_, 1);
    layout->addLayout(buttons);
    resize(720, 400);
}

QList<int> SearchSetsSheet::selectedRows() const
{
    QList<int> rows;
    for (const QModelIndex &index : table_->selectionModel()->selectedRows())
        rows.append(index.row());
    std::sort(rows.begin(), rows.end());
    return rows;
}

void SearchSetsSheet::reject()
{
    // Escape closes as Done does, so what the table shows is what the file holds.
    function_->closeSeachSetsPanel();
}

void SearchSetsSheet::addSearchSet()
{
    const int row = function_->addNewSearchSet();
    if (row < 0)
        return;
    table_->scrollToBottom();
    table_->selectRow(row);
}

void SearchSetsSheet::openModeEditors()
{
    for (int row = 0; row < table_->model()->rowCount(); ++row)
        table_->openPersistentEditor(table_->model()->index(row, SearchSetsModel::ModeColumn));
}
