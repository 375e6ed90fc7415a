#pragma once

#include <QObject>
#include <QPointer>

#include <memory>

class ImportReportDialog;
class LibraryBackend;
class LibraryImporter;
class LibraryTrackModel;
class LibraryWindow;

// Owns the library window and carries out what is asked there on the library: the selection
// becomes the library's selection (what an organizer run on the selection covers), files and
// folders are added on a worker thread, tracks are removed from the library (never from disk),
// and a track revealed through the bridge is selected and shown. GUI thread only.
class LibraryWindowController : public QObject
{
    Q_OBJECT
public:
    explicit LibraryWindowController(std::shared_ptr<LibraryBackend> library,
                                     QObject *parent = nullptr);
    ~LibraryWindowController() override;

    // Shows the window, brings it to the front and gives it the focus.
    void showWindow();
    LibraryWindow *window() const { return window_.get(); }
    LibraryTrackModel *trackModel() const { return tracks_; }

    // Ask for files or a folder with a file dialog, then import them.
    void addFiles();
    void addFolder();
    void importPaths(const QStringList &paths);
    // After the user confirms. The files stay where they are.
    void removeSelectedTracks();
    // Selects the track in the window and opens its properties.
    void showProperties(const QString &persistentID);
    void reveal(const QString &persistentID);

    // The report of the last import that refused files, while it is open.
    ImportReportDialog *importReport() const;

signals:
    void importFinished();

private:
    void publishSelection();
    void openProperties(int row);

    std::shared_ptr<LibraryBackend> library_;
    LibraryTrackModel *tracks_;
    std::unique_ptr<LibraryWindow> window_;
    LibraryImporter *importer_;
    QPointer<ImportReportDialog> importReport_;
};
