#pragma once

#include <QCollator>
#include <QSortFilterProxyModel>

// Sorts the library's tracks by LibraryTrackModel::SortRole (texts in the user's collation,
// case ignored; numbers as numbers) and keeps the rows whose text columns hold every word of the
// search text.
class LibraryFilterModel : public QSortFilterProxyModel
{
    Q_OBJECT
public:
    explicit LibraryFilterModel(QObject *parent = nullptr);

    void setSearchText(const QString &text);
    bool isFiltering() const { return !words_.isEmpty(); }

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;

private:
    QStringList words_;
    QCollator collator_;
};
