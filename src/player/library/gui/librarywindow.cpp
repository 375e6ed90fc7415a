#include "player/library/gui/librarywindow.h"

#include "player/library/gui/libraryfiltermodel.h"
#include "player/library/gui/librarytrackmodel.h"

#include <QAction>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QStatusBar>
#include <QTableView>
#include <QToolBar>

#include <QStyledItemDelegate>

#include <algorithm>

namespace {

// Paths are told apart by their ends: the file and its folder.
class MiddleElidingDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->textElideMode = Qt::ElideMiddle;
    }
};

} // namespace

LibraryWindow::LibraryWindow(LibraryTrackModel *tracks, QWidget *parent)
    : QMainWindow(parent),
      tracks_(tracks),
      filter_(new LibraryFilterModel(this)),
      table_(new QTableView(this)),
      search_(new QLineEdit(this)),
      count_(new QLabel(this)),
      progressText_(new QLabel(this)),
      progress_(new QProgressBar(this))
{
    setWindowTitle(tr("Library"));
    filter_->setSourceModel(tracks_);

    addFiles_ = new QAction(tr("Add Files…"), this);
    addFiles_->setShortcut(QKeySequence::Open);
    addFolder_ = new QAction(tr("Add Folder…"), this);
    remove_ = new QAction(tr("Remove from Library"), this);
    remove_->setShortcut(QKeySequence::Delete);
    properties_ = new QAction(tr("Properties"), this);
    properties_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_I));
    connect(addFiles_, &QAction::triggered, this, &LibraryWindow::addFilesRequested);
    connect(addFolder_, &QAction::triggered, this, &LibraryWindow::addFolderRequested);
    connect(remove_, &QAction::triggered, this, &LibraryWindow::removeRequested);
    connect(properties_, &QAction::triggered, this, [this] {
        const QModelIndex current = table_->currentIndex();
        if (current.isValid())
            emit propertiesRequested(filter_->mapToSource(current).row());
    });

    search_->setPlaceholderText(tr("Search name, artist, album, genre"));
    search_->setClearButtonEnabled(true);
    search_->setMaximumWidth(320);
    connect(search_, &QLineEdit::textChanged, filter_, &LibraryFilterModel::setSearchText);
    auto *find = new QAction(this);
    find->setShortcut(QKeySequence::Find);
    connect(find, &QAction::triggered, search_, qOverload<>(&QWidget::setFocus));
    addAction(find);

    QToolBar *toolbar = addToolBar(tr("Library"));
    toolbar->setMovable(false);
    toolbar->setToolButtonStyle(Qt::ToolButtonTextOnly);
    toolbar->addAction(addFiles_);
    toolbar->addAction(addFolder_);
    toolbar->addSeparator();
    toolbar->addAction(remove_);
    toolbar->addAction(properties_);
    auto *spacer = new QWidget(toolbar);
    spacer->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    toolbar->addWidget(spacer);
    toolbar->addWidget(search_);

    table_->setModel(filter_);
    table_->setSortingEnabled(true);
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setAlternatingRowColors(true);
    table_->setShowGrid(false);
    table_->setWordWrap(false);
    table_->verticalHeader()->hide();
    table_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    table_->horizontalHeader()->setHighlightSections(false);
    table_->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    table_->setItemDelegateForColumn(LibraryTrackModel::Location, new MiddleElidingDelegate(table_));
    table_->horizontalHeader()->setStretchLastSection(true);
    table_->horizontalHeader()->setSectionsMovable(true);
    table_->setContextMenuPolicy(Qt::ActionsContextMenu);
    table_->addActions({properties_, remove_});
    setInitialColumnWidths();
    table_->sortByColumn(LibraryTrackModel::Artist, Qt::AscendingOrder);
    setCentralWidget(table_);
    connect(table_, &QAbstractItemView::doubleClicked, this, [this](const QModelIndex &index) {
        emit propertiesRequested(filter_->mapToSource(index).row());
    });
    connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        updateActions();
        updateStatus();
        emit selectionChanged();
    });

    progress_->setMaximumWidth(220);
    progress_->setTextVisible(false);
    statusBar()->addWidget(count_, 1);
    statusBar()->addPermanentWidget(progressText_);
    statusBar()->addPermanentWidget(progress_);
    hideImportProgress();
    for (auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(filter_, signal, this, &LibraryWindow::updateStatus);
    connect(filter_, &QAbstractItemModel::modelReset, this, &LibraryWindow::updateStatus);
    connect(filter_, &QAbstractItemModel::layoutChanged, this, &LibraryWindow::updateStatus);
    updateStatus();
    updateActions();
    resize(1240, 720);
}

void LibraryWindow::setInitialColumnWidths()
{
    // Measured in the table's font: text columns by a typical length, the others by their
    // widest value; never narrower than the title with its sort arrow.
    const QFontMetrics metrics = table_->fontMetrics();
    const int average = metrics.averageCharWidth();
    const int padding = 2 * table_->style()->pixelMetric(QStyle::PM_FocusFrameHMargin) + 10;
    const auto text = [&](const QString &sample) { return metrics.horizontalAdvance(sample); };
    const QList<QPair<int, int>> widths = {
        {LibraryTrackModel::Name, 26 * average},
        {LibraryTrackModel::Artist, 18 * average},
        {LibraryTrackModel::Album, 20 * average},
        {LibraryTrackModel::AlbumArtist, 16 * average},
        {LibraryTrackModel::Genre, 11 * average},
        {LibraryTrackModel::Year, text(QStringLiteral("8888"))},
        {LibraryTrackModel::Track, text(QStringLiteral("88 of 88"))},
        {LibraryTrackModel::Disc, text(QStringLiteral("8 of 8"))},
        {LibraryTrackModel::Time, text(QStringLiteral("88:88"))},
        {LibraryTrackModel::Rating, text(QString(5, QChar(0x2605)))},
        {LibraryTrackModel::Kind, text(QStringLiteral("Ogg Vorbis audio file"))},
        {LibraryTrackModel::Location, 12 * average}};
    QHeaderView *header = table_->horizontalHeader();
    const int arrow = header->style()->pixelMetric(QStyle::PM_HeaderMarkSize) + 12;
    for (const auto &[column, width] : widths) {
        const QString title = tracks_->headerData(column, Qt::Horizontal).toString();
        table_->setColumnWidth(column, std::max(width + padding,
                                                header->fontMetrics().horizontalAdvance(title) + arrow));
    }
}

QList<int> LibraryWindow::selectedTrackRows() const
{
    QModelIndexList selected = table_->selectionModel()->selectedRows();
    std::sort(selected.begin(), selected.end(),
              [](const QModelIndex &a, const QModelIndex &b) { return a.row() < b.row(); });
    QList<int> rows;
    rows.reserve(selected.size());
    for (const QModelIndex &index : selected)
        rows.append(filter_->mapToSource(index).row());
    return rows;
}

void LibraryWindow::revealTrackRow(int row)
{
    QModelIndex shown = filter_->mapFromSource(tracks_->index(row, 0));
    if (!shown.isValid()) {
        search_->clear();
        shown = filter_->mapFromSource(tracks_->index(row, 0));
    }
    if (!shown.isValid())
        return;
    table_->selectionModel()->setCurrentIndex(
        shown, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    table_->scrollTo(shown, QAbstractItemView::PositionAtCenter);
}

void LibraryWindow::showImportProgress(int done, int total)
{
    progress_->setRange(0, total);
    progress_->setValue(done);
    progressText_->setText(total ? tr("Adding %1 of %2 files…").arg(done).arg(total)
                                 : tr("Looking for audio files…"));
    progress_->show();
    progressText_->show();
    addFiles_->setEnabled(false);
    addFolder_->setEnabled(false);
}

void LibraryWindow::hideImportProgress()
{
    progress_->hide();
    progressText_->hide();
    addFiles_->setEnabled(true);
    addFolder_->setEnabled(true);
}

void LibraryWindow::showUnavailable(const QString &reason)
{
    count_->setText(tr("The library cannot be opened: %1").arg(reason));
    for (QAction *action : {addFiles_, addFolder_, remove_, properties_})
        action->setEnabled(false);
    search_->setEnabled(false);
}

void LibraryWindow::updateStatus()
{
    const int all = tracks_->rowCount();
    const QString tracks = all == 1 ? tr("1 track") : tr("%1 tracks").arg(all);
    QString text = filter_->isFiltering() ? tr("%1 of %2").arg(filter_->rowCount()).arg(tracks)
                                          : tracks;
    if (const qsizetype selected = table_->selectionModel()->selectedRows().size())
        text += tr(", %1 selected").arg(selected);
    count_->setText(text);
}

void LibraryWindow::updateActions()
{
    const bool any = table_->selectionModel()->hasSelection();
    remove_->setEnabled(any);
    properties_->setEnabled(any);
}
