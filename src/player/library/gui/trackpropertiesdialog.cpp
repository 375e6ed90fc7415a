#include "player/library/gui/trackpropertiesdialog.h"

#include "player/library/librarystore.h"
#include "player/library/trackcolumns.h"

#include <QDateTime>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLocale>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {

QString shownValue(ColumnType type, const QVariant &value)
{
    switch (type) {
    case ColumnType::Boolean:
        return value.toBool() ? QObject::tr("yes") : QObject::tr("no");
    case ColumnType::Code:
        return value.toLongLong() ? fourCharCodeText(FourCharCode(value.toLongLong())) : QString();
    case ColumnType::Date: {
        const QDateTime date = value.toDateTime();
        return date.isValid() ? QLocale().toString(date.toLocalTime(), QLocale::ShortFormat)
                              : QString();
    }
    case ColumnType::Real:
        return QLocale().toString(value.toDouble(), 'f', 3);
    default:
        return value.toString();
    }
}

} // namespace

TrackPropertiesDialog::TrackPropertiesDialog(LibraryStore &store, qint64 trackId, QWidget *parent)
    : QDialog(parent), table_(new QTableWidget(this))
{
    // The identity of the track first, then its stored properties in their usual order.
    QList<QPair<Prop, ColumnType>> properties = {{Prop::persistentID, ColumnType::Text},
                                                 {Prop::databaseID, ColumnType::Integer},
                                                 {Prop::location, ColumnType::Text},
                                                 {Prop::time, ColumnType::Text}};
    for (const TrackColumn &column : trackColumns())
        properties.append({column.property, column.type});

    table_->setColumnCount(2);
    table_->setHorizontalHeaderLabels({tr("Property"), tr("Value")});
    table_->setRowCount(int(properties.size()));
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->verticalHeader()->hide();
    table_->horizontalHeader()->setStretchLastSection(true);
    for (int row = 0; row < properties.size(); ++row) {
        const auto [property, type] = properties.at(row);
        QString value;
        try {
            value = shownValue(type, store.trackValue(trackId, property));
        } catch (const BridgeFailure &failure) {
            value = QString::fromUtf8(failure.what());
        }
        table_->setItem(row, 0, new QTableWidgetItem(propertyName(property)));
        table_->setItem(row, 1, new QTableWidgetItem(value));
    }
    table_->resizeColumnToContents(0);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(table_);
    layout->addWidget(buttons);

    const QString name = valueText(QStringLiteral("name"));
    setWindowTitle(name.isEmpty() ? tr("Track Properties") : tr("%1 Properties").arg(name));
    resize(560, 640);
}

QString TrackPropertiesDialog::valueText(const QString &propertyName) const
{
    for (int row = 0; row < table_->rowCount(); ++row)
        if (table_->item(row, 0)->text() == propertyName)
            return table_->item(row, 1)->text();
    return {};
}
