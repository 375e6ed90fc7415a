#include "player/library/gui/libraryfiltermodel.h"

#include "player/library/gui/librarytrackmodel.h"

LibraryFilterModel::LibraryFilterModel(QObject *parent)
    : QSortFilterProxyModel(parent),
      // The C locale collates by code point, which puts "Ágætis" after "Zebra".
      collator_(QLocale().language() == QLocale::C ? QLocale(QLocale::English) : QLocale())
{
    collator_.setCaseSensitivity(Qt::CaseInsensitive);
    collator_.setNumericMode(true);
    setSortRole(LibraryTrackModel::SortRole);
}

void LibraryFilterModel::setSearchText(const QString &text)
{
    const QStringList words = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (words == words_)
        return;
    words_ = words;
    invalidateFilter();
}

bool LibraryFilterModel::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    if (words_.isEmpty())
        return true;
    const QString text = sourceModel()
                             ->index(sourceRow, 0, sourceParent)
                             .data(LibraryTrackModel::SearchTextRole)
                             .toString();
    return std::all_of(words_.begin(), words_.end(), [&](const QString &word) {
        return text.contains(word, Qt::CaseInsensitive);
    });
}

bool LibraryFilterModel::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    const QVariantList a = left.data(sortRole()).toList();
    const QVariantList b = right.data(sortRole()).toList();
    for (qsizetype i = 0; i < std::min(a.size(), b.size()); ++i) {
        int order = 0;
        if (a.at(i).typeId() == QMetaType::QString) {
            order = collator_.compare(a.at(i).toString(), b.at(i).toString());
        } else {
            const double x = a.at(i).toDouble();
            const double y = b.at(i).toDouble();
            order = x < y ? -1 : (y < x ? 1 : 0);
        }
        if (order != 0)
            return order < 0;
    }
    return false;
}
