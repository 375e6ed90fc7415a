#include "player/library/gui/importreportdialog.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QTreeWidget>
#include <QVBoxLayout>

ImportReportDialog::ImportReportDialog(int addedCount, const QList<QPair<QString, QString>> &refused,
                                       QWidget *parent)
    : QDialog(parent), list_(new QTreeWidget(this))
{
    setWindowTitle(tr("Files Not Added"));
    const QString added = addedCount == 1 ? tr("1 track was added.")
                                          : tr("%1 tracks were added.").arg(addedCount);
    const QString notAdded = refused.size() == 1
                                 ? tr("1 file could not be added:")
                                 : tr("%1 files could not be added:").arg(refused.size());
    auto *summary = new QLabel(added + QLatin1Char(' ') + notAdded, this);
    summary->setWordWrap(true);

    list_->setHeaderLabels({tr("File"), tr("Reason")});
    list_->setRootIsDecorated(false);
    list_->setTextElideMode(Qt::ElideMiddle);
    for (const auto &[path, reason] : refused) {
        auto *item = new QTreeWidgetItem(list_, {path, reason});
        item->setToolTip(0, path);
        item->setToolTip(1, reason);
    }
    list_->header()->resizeSection(0, 380);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(summary);
    layout->addWidget(list_);
    layout->addWidget(buttons);
    resize(680, 320);
}
