#pragma once

#include "pool/poolfrontend.h"

#include <QDialog>

class QAbstractItemModel;
class QLabel;
class QMessageBox;
class QProgressBar;
class QPushButton;
class QTableView;

// The organizer's sheets: dialogs modal to the organizer window, opened without blocking.

// An alert of the engine or of the preferences sheet: its texts by key, one or two buttons and
// the suppression box. The completion gets 1000 or 1001 and the box's state, once. The box
// deletes itself when it ends.
QMessageBox *openAlertSheet(QWidget *parent, const PoolAlert &alert, PoolFrontEnd::AlertCompletion completion);

// The progress of a run: comment, bar, "counter of sum" and Cancel. Escape does not close it.
class ProgressSheet : public QDialog
{
    Q_OBJECT

public:
    explicit ProgressSheet(QWidget *parent);

    void empty();
    void setValues(qint64 total);
    void update(qint64 counter);
    void setComment(const QString &text);
    void setCancelEnabled(bool enabled);

    QString comment() const;
    qint64 counter() const;
    qint64 total() const;
    bool isIndeterminate() const;
    QPushButton *cancelButton() const { return cancel_; }

signals:
    void cancelClicked();

protected:
    void reject() override {}

private:
    QLabel *comment_;
    QProgressBar *bar_;
    QLabel *counts_;
    QPushButton *cancel_;
    qint64 counter_ = 0;
    qint64 total_ = 0;
};

// A log of the last run as a table. Rows are activated by double-click.
class LogSheet : public QDialog
{
    Q_OBJECT

public:
    LogSheet(const QString &titleKey, const QStringList &columnKeys, QAbstractItemModel *model, QWidget *parent);

    QTableView *table() const { return table_; }
    QList<int> selectedRows() const;

signals:
    void rowsActivated(const QList<int> &rows);

private:
    QTableView *table_;
};
