#pragma once

#include <QDialog>

class QTreeWidget;

// Lists the files an import refused, each with the reason, once the import is over. Not
// modal: the library window stays usable while it is open.
class ImportReportDialog : public QDialog
{
    Q_OBJECT
public:
    ImportReportDialog(int addedCount, const QList<QPair<QString, QString>> &refused,
                       QWidget *parent = nullptr);

    QTreeWidget *list() const { return list_; }

private:
    QTreeWidget *list_;
};
