#pragma once

#include <QDialog>
#include <QTableView>

class Function0001;
class QPushButton;

// The table of the saved search sets. Rows are reordered by dragging them; a drop always lands
// between two rows (the upper half of a row means above it), and the model does the move
// itself, so the view never removes the dragged rows afterwards.
class SearchSetsTable : public QTableView
{
    Q_OBJECT

public:
    explicit SearchSetsTable(QWidget *parent);

    // The row a drop at `position` (viewport coordinates) lands above; rowCount() for the end.
    int dropRowAt(const QPoint &position) const;

protected:
    void startDrag(Qt::DropActions supportedActions) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    bool acceptsDrop(QDropEvent *event, int row) const;
    void setDropRow(int row);

    int dropRow_ = -1;
};

// The sheet that edits function 1's saved search sets: the table (Search, Replace, the case
// box, the mode as a pop-up), Add, Remove and Done. Done, like Escape, closes through the
// function, which saves the sets and hides the sheet. Owned by the organizer window; main thread.
class SearchSetsSheet : public QDialog
{
    Q_OBJECT

public:
    SearchSetsSheet(Function0001 *function, QWidget *window);

    SearchSetsTable *table() const { return table_; }
    QPushButton *addButton() const { return add_; }
    QPushButton *removeButton() const { return remove_; }
    QPushButton *doneButton() const { return done_; }
    QList<int> selectedRows() const;

    void reject() override;

private:
    void addSearchSet();
    void openModeEditors();

    Function0001 *function_;
    SearchSetsTable *table_;
    QPushButton *add_;
    QPushButton *remove_;
    QPushButton *done_;
};
