#include "pool/gui/poolsheets.h"

#include "additions/localizedstrings.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QIdentityProxyModel>
#include <QLabel>
#include <QMessageBox>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

namespace {

QString text(const char *key)
{
    return ov_localizedString(QString::fromLatin1(key));
}

// Sheets stay where the window put them.
void makeSheet(QDialog *dialog)
{
    dialog->setWindowModality(Qt::WindowModal);
    dialog->setWindowFlag(Qt::WindowContextHelpButtonHint, false);
}

// The six status images of the change log, drawn as coloured dots.
QIcon statusIcon(const QString &name)
{
    static const QHash<QString, QColor> colours{
        {QStringLiteral("OVImageStatusLogAdded"), QColor(0x2f, 0x80, 0xed)},
        {QStringLiteral("OVImageStatusLogError"), QColor(0xd9, 0x30, 0x25)},
        {QStringLiteral("OVImageStatusLogChanged"), QColor(0x2e, 0xa0, 0x43)},
        {QStringLiteral("OVImageStatusLogUnchanged"), QColor(0xa0, 0xa0, 0xa0)},
        {QStringLiteral("OVImageStatusLogMissing"), QColor(0xe8, 0x9b, 0x1a)},
        {QStringLiteral("OVImageStatusLogRemoved"), QColor(0x55, 0x55, 0x55)},
    };
    static QHash<QString, QIcon> icons;
    if (!colours.contains(name))
        return {};
    if (!icons.contains(name)) {
        QPixmap pixmap(14, 14);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(colours.value(name));
        painter.drawEllipse(QRectF(1.5, 1.5, 11, 11));
        icons.insert(name, QIcon(pixmap));
    }
    return icons.value(name);
}

// Shows a log model with titled columns, status names as their images and two-line texts.
class LogPresentationModel : public QIdentityProxyModel
{
public:
    LogPresentationModel(const QStringList &columnKeys, QObject *parent)
        : QIdentityProxyModel(parent), columnKeys_(columnKeys)
    {
    }

    QVariant data(const QModelIndex &index, int role) const override
    {
        const QVariant value = QIdentityProxyModel::data(index, Qt::DisplayRole);
        const QIcon icon = statusIcon(value.toString());
        if (!icon.isNull()) {
            if (role == Qt::DecorationRole)
                return icon;
            if (role == Qt::DisplayRole)
                return {};
        }
        return QIdentityProxyModel::data(index, role);
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section < columnKeys_.size())
            return ov_localizedString(columnKeys_.at(section));
        return QIdentityProxyModel::headerData(section, orientation, role);
    }

private:
    QStringList columnKeys_;
};

} // namespace

QMessageBox *openAlertSheet(QWidget *parent, const PoolAlert &alert, PoolFrontEnd::AlertCompletion completion)
{
    auto *box = new QMessageBox(parent);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowModality(Qt::WindowModal);
    box->setIcon(alert.isWarning() ? QMessageBox::Warning : QMessageBox::Information);
    box->setWindowTitle(alert.messageText());
    box->setText(alert.messageText());
    box->setInformativeText(alert.informativeTextShown());
    QList<QAbstractButton *> buttons;
    for (int i = 0; i < alert.buttonKeys.size(); ++i)
        buttons.append(box->addButton(ov_localizedString(alert.buttonKeys.at(i)),
                                      i == 0 ? QMessageBox::AcceptRole : QMessageBox::RejectRole));
    if (!buttons.isEmpty())
        box->setDefaultButton(qobject_cast<QPushButton *>(buttons.first()));
    if (buttons.size() > 1)
        box->setEscapeButton(buttons.at(1));
    if (alert.hasSuppression())
        box->setCheckBox(new QCheckBox(ov_localizedString(alert.suppressionKey), box));
    QObject::connect(box, &QMessageBox::finished, box, [box, buttons, completion] {
        if (!completion)
            return;
        // Closing the box by other means counts as the last button.
        const int index = buttons.indexOf(box->clickedButton());
        const int returnCode = kAlertFirstButtonReturn + (index < 0 ? int(buttons.size()) - 1 : index);
        completion(returnCode, box->checkBox() && box->checkBox()->isChecked());
    });
    box->open();
    return box;
}

// --- ProgressSheet

ProgressSheet::ProgressSheet(QWidget *parent) : QDialog(parent)
{
    makeSheet(this);
    setWindowTitle(text("0000.0001"));
    setWindowFlag(Qt::WindowCloseButtonHint, false);
    comment_ = new QLabel(this);
    comment_->setMinimumWidth(360);
    bar_ = new QProgressBar(this);
    bar_->setTextVisible(false);
    counts_ = new QLabel(this);
    cancel_ = new QPushButton(text("0002.0002"), this);
    cancel_->setAutoDefault(false);
    connect(cancel_, &QPushButton::clicked, this, &ProgressSheet::cancelClicked);

    auto *bottom = new QHBoxLayout;
    bottom->addWidget(counts_, 1);
    bottom->addWidget(cancel_);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(comment_);
    layout->addWidget(bar_);
    layout->addLayout(bottom);
    empty();
}

void ProgressSheet::empty()
{
    counter_ = 0;
    total_ = 0;
    bar_->setRange(0, 0); // busy until the total is known
    setComment({});
    counts_->setText(ov_localizedString(QStringLiteral("0008.0011")).arg(0).arg(0));
}

void ProgressSheet::setValues(qint64 total)
{
    total_ = total;
    counter_ = 0;
    bar_->setRange(0, int(qMin<qint64>(total, INT_MAX)));
    bar_->setValue(0);
    counts_->setText(ov_localizedString(QStringLiteral("0008.0011")).arg(counter_).arg(total_));
}

void ProgressSheet::update(qint64 counter)
{
    counter_ = counter;
    if (bar_->maximum() > 0)
        bar_->setValue(int(qMin<qint64>(counter, bar_->maximum())));
    counts_->setText(ov_localizedString(QStringLiteral("0008.0011")).arg(counter_).arg(total_));
}

void ProgressSheet::setComment(const QString &text)
{
    // An empty line above the bar looks like a message that failed to appear.
    comment_->setText(text);
    comment_->setVisible(!text.isEmpty());
}

void ProgressSheet::setCancelEnabled(bool enabled)
{
    cancel_->setEnabled(enabled);
}

QString ProgressSheet::comment() const
{
    return comment_->text();
}

qint64 ProgressSheet::counter() const
{
    return counter_;
}

qint64 ProgressSheet::total() const
{
    return total_;
}

bool ProgressSheet::isIndeterminate() const
{
    return bar_->maximum() == 0;
}

// --- LogSheet

LogSheet::LogSheet(const QString &titleKey, const QStringList &columnKeys, QAbstractItemModel *model,
                   QWidget *parent)
    : QDialog(parent)
{
    makeSheet(this);
    setWindowTitle(ov_localizedString(titleKey));
    auto *presentation = new LogPresentationModel(columnKeys, this);
    presentation->setSourceModel(model);
    table_ = new QTableView(this);
    table_->setModel(presentation);
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setWordWrap(true);
    table_->setAlternatingRowColors(true);
    table_->verticalHeader()->hide();
    table_->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    table_->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    table_->horizontalHeader()->setStretchLastSection(true);
    connect(table_, &QTableView::doubleClicked, this, [this] { emit rowsActivated(selectedRows()); });

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->button(QDialogButtonBox::Close)->setText(text("0008.0012"));
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(table_);
    layout->addWidget(buttons);
    resize(720, 420);
}

QList<int> LogSheet::selectedRows() const
{
    QList<int> rows;
    for (const QModelIndex &index : table_->selectionModel()->selectedRows())
        rows.append(index.row());
    std::sort(rows.begin(), rows.end());
    return rows;
}
