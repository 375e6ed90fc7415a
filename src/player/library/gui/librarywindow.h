#pragma once

#include <QMainWindow>

class LibraryFilterModel;
class LibraryTrackModel;
class QAction;
class QLabel;
class QLineEdit;
class QProgressBar;
class QTableView;

// The library window's view: the track table with its search field, the actions of the
// toolbar and the status line. What the actions do is up to LibraryWindowController, its
// owner; the window only reports what the user asked for.
class LibraryWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit LibraryWindow(LibraryTrackModel *tracks, QWidget *parent = nullptr);

    QTableView *tableView() const { return table_; }
    QLineEdit *searchField() const { return search_; }
    LibraryFilterModel *filterModel() const { return filter_; }
    QAction *addFilesAction() const { return addFiles_; }
    QAction *addFolderAction() const { return addFolder_; }
    QAction *removeAction() const { return remove_; }
    QAction *propertiesAction() const { return properties_; }

    // Rows of the track model, in the order the table shows them.
    QList<int> selectedTrackRows() const;
    // Selects the row alone, makes it current and scrolls to it; clears the search first if
    // the search hides it.
    void revealTrackRow(int row);

    // total 0: still counting. Hidden again by hideImportProgress().
    void showImportProgress(int done, int total);
    void hideImportProgress();
    // A library that cannot be opened: says so and offers nothing to do.
    void showUnavailable(const QString &reason);

signals:
    void selectionChanged();
    void addFilesRequested();
    void addFolderRequested();
    void removeRequested();
    void propertiesRequested(int row);

private:
    void updateStatus();
    void updateActions();
    void setInitialColumnWidths();

    LibraryTrackModel *tracks_;
    LibraryFilterModel *filter_;
    QTableView *table_;
    QLineEdit *search_;
    QLabel *count_;
    QLabel *progressText_;
    QProgressBar *progress_;
    QAction *addFiles_;
    QAction *addFolder_;
    QAction *remove_;
    QAction *properties_;
};
