#include "player/library/gui/librarywindowcontroller.h"

#include "player/library/gui/importreportdialog.h"
#include "player/library/gui/libraryimporter.h"
#include "player/library/gui/librarytrackmodel.h"
#include "player/library/gui/librarywindow.h"
#include "player/library/gui/trackpropertiesdialog.h"
#include "player/library/librarybackend.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QStatusBar>

LibraryWindowController::LibraryWindowController(std::shared_ptr<LibraryBackend> library,
                                                 QObject *parent)
    : QObject(parent),
      library_(std::move(library)),
      tracks_(new LibraryTrackModel(library_->store(), this)),
      window_(std::make_unique<LibraryWindow>(tracks_)),
      importer_(new LibraryImporter(library_, this))
{
    LibraryWindow *window = window_.get();
    connect(window, &LibraryWindow::selectionChanged, this, &LibraryWindowController::publishSelection);
    connect(window, &LibraryWindow::addFilesRequested, this, &LibraryWindowController::addFiles);
    connect(window, &LibraryWindow::addFolderRequested, this, &LibraryWindowController::addFolder);
    connect(window, &LibraryWindow::removeRequested, this,
            &LibraryWindowController::removeSelectedTracks);
    connect(window, &LibraryWindow::propertiesRequested, this,
            &LibraryWindowController::openProperties);
    connect(importer_, &LibraryImporter::progressed, window, &LibraryWindow::showImportProgress);
    connect(importer_, &LibraryImporter::finished, this,
            [this](const LibraryStore::ImportResult &result) {
                tracks_->applyPendingChanges();
                window_->hideImportProgress();
                window_->statusBar()->showMessage(
                    result.added.size() == 1 ? tr("1 track added")
                                             : tr("%1 tracks added").arg(result.added.size()),
                    5000);
                if (!result.refused.isEmpty()) {
                    delete importReport_;
                    importReport_ = new ImportReportDialog(int(result.added.size()),
                                                           result.refused, window_.get());
                    importReport_->setAttribute(Qt::WA_DeleteOnClose);
                    importReport_->show();
                }
                emit importFinished();
            });

    LibraryStore *store = library_->store();
    if (!store) {
        window->showUnavailable(library_->openError());
        return;
    }
    // Both may be raised on the organizer's thread.
    connect(store, &LibraryStore::revealRequested, this, &LibraryWindowController::reveal,
            Qt::QueuedConnection);
    connect(
        store, &LibraryStore::tagSaveFailed, this,
        [this](const QString &, const QString &message) {
            window_->statusBar()->showMessage(message, 10000);
        },
        Qt::QueuedConnection);
}

LibraryWindowController::~LibraryWindowController()
{
    // The importer's thread finishes its step before the window and model go.
    delete importer_;
}

ImportReportDialog *LibraryWindowController::importReport() const
{
    return importReport_;
}

void LibraryWindowController::showWindow()
{
    window_->show();
    window_->setWindowState(window_->windowState() & ~Qt::WindowMinimized);
    window_->raise();
    window_->activateWindow();
}

void LibraryWindowController::addFiles()
{
    const QStringList files = QFileDialog::getOpenFileNames(
        window_.get(), tr("Add Files to Library"), library_->musicFolder(),
        tr("Audio files (*.mp3 *.m4a *.m4b *.mp4 *.aac *.flac *.ogg *.oga *.opus);;All files (*)"));
    importPaths(files);
}

void LibraryWindowController::addFolder()
{
    const QString folder = QFileDialog::getExistingDirectory(
        window_.get(), tr("Add Folder to Library"), library_->musicFolder());
    if (!folder.isEmpty())
        importPaths({folder});
}

void LibraryWindowController::importPaths(const QStringList &paths)
{
    if (!paths.isEmpty() && library_->isRunning())
        importer_->start(paths);
}

void LibraryWindowController::removeSelectedTracks()
{
    const QList<int> rows = window_->selectedTrackRows();
    if (rows.isEmpty() || !library_->store())
        return;
    const QString question =
        rows.size() == 1
            ? tr("Remove “%1” from the library?").arg(tracks_->index(rows.first(), 0).data().toString())
            : tr("Remove the %1 selected tracks from the library?").arg(rows.size());
    QMessageBox confirm(QMessageBox::Question, tr("Remove from Library"), question,
                        QMessageBox::Cancel, window_.get());
    confirm.setInformativeText(tr("The files stay where they are on disk."));
    QAbstractButton *remove = confirm.addButton(tr("Remove"), QMessageBox::DestructiveRole);
    confirm.setDefaultButton(QMessageBox::Cancel);
    confirm.exec();
    if (confirm.clickedButton() != remove)
        return;

    QList<qint64> ids;
    for (int row : rows)
        ids.append(tracks_->trackIdAt(row));
    for (qint64 id : ids) {
        try {
            library_->store()->removeTrack(id);
        } catch (const BridgeFailure &failure) {
            window_->statusBar()->showMessage(QString::fromUtf8(failure.what()), 10000);
        }
    }
    tracks_->applyPendingChanges();
    publishSelection();
}

void LibraryWindowController::publishSelection()
{
    if (!library_->isRunning())
        return;
    QStringList persistentIDs;
    for (int row : window_->selectedTrackRows())
        persistentIDs.append(tracks_->persistentIDAt(row));
    library_->setSelection(persistentIDs);
}

void LibraryWindowController::reveal(const QString &persistentID)
{
    tracks_->applyPendingChanges();
    const int row = tracks_->rowOfPersistentID(persistentID);
    if (row < 0)
        return;
    window_->revealTrackRow(row);
    showWindow();
}

void LibraryWindowController::showProperties(const QString &persistentID)
{
    reveal(persistentID);
    openProperties(tracks_->rowOfPersistentID(persistentID));
}

void LibraryWindowController::openProperties(int row)
{
    const qint64 id = tracks_->trackIdAt(row);
    if (!id || !library_->store())
        return;
    auto *dialog = new TrackPropertiesDialog(*library_->store(), id, window_.get());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->show();
}
