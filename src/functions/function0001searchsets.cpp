#include "functions/function0001searchsets.h"

#include "additions/propertylist.h"

#include <QDataStream>
#include <QIODevice>
#include <QMimeData>

#include <algorithm>

SearchSet SearchSet::fromMap(const QVariantMap &map)
{
    return {map.value(QStringLiteral("Search")).toString(), map.value(QStringLiteral("Replace")).toString(),
            map.value(QStringLiteral("Case")).toLongLong(),
            searchModeFromNumber(map.value(QStringLiteral("Mode")).toLongLong())};
}

QVariantMap SearchSet::toMap() const
{
    return {{QStringLiteral("Search"), search},
            {QStringLiteral("Replace"), replace},
            {QStringLiteral("Case"), caseMode},
            {QStringLiteral("Mode"), qint64(mode)}};
}

SearchSetsModel::SearchSetsModel(const QString &location, const QString &draggedType, QObject *parent)
    : QAbstractTableModel(parent), location_(location), draggedType_(draggedType)
{
}

void SearchSetsModel::setSearchSets(const QList<SearchSet> &sets)
{
    beginResetModel();
    searchSets_ = sets;
    endResetModel();
}

void SearchSetsModel::readSearchSets()
{
    QList<SearchSet> sets;
    for (const QVariant &entry : PropertyList::read(location_).toList())
        sets.append(SearchSet::fromMap(entry.toMap()));
    setSearchSets(sets);
}

bool SearchSetsModel::saveSearchSets() const
{
    QVariantList entries;
    for (const SearchSet &set : searchSets_)
        entries.append(set.toMap());
    return PropertyList::write(location_, entries);
}

int SearchSetsModel::addNewSearchSet(qint64 caseMode, const QString &text, SearchMode mode)
{
    const int row = int(searchSets_.size());
    beginInsertRows({}, row, row);
    searchSets_.append({text, text, caseMode, mode});
    endInsertRows();
    return row;
}

void SearchSetsModel::removeSearchSets(QList<int> rows)
{
    std::sort(rows.begin(), rows.end(), std::greater<int>());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    for (int row : rows) {
        if (row < 0 || row >= searchSets_.size())
            continue;
        beginRemoveRows({}, row, row);
        searchSets_.removeAt(row);
        endRemoveRows();
    }
}

void SearchSetsModel::moveSearchSets(QList<int> rows, int dropRow)
{
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    rows.erase(std::remove_if(rows.begin(), rows.end(),
                              [this](int row) { return row < 0 || row >= searchSets_.size(); }),
               rows.end());
    if (rows.isEmpty())
        return;
    dropRow = std::clamp(dropRow, 0, int(searchSets_.size()));
    // Rows at or before the drop row go in above it one after the other; the rows after it
    // follow them, so the moved rows keep their order.
    QList<SearchSet> above, moved, below;
    for (int row = 0; row < searchSets_.size(); ++row) {
        if (rows.contains(row))
            moved.append(searchSets_.at(row));
        else
            (row < dropRow ? above : below).append(searchSets_.at(row));
    }
    setSearchSets(above + moved + below);
}

int SearchSetsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(searchSets_.size());
}

int SearchSetsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant SearchSetsModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= searchSets_.size())
        return {};
    const SearchSet &set = searchSets_.at(index.row());
    if (index.column() == CaseColumn && role == Qt::CheckStateRole)
        return set.caseMode != 0 ? Qt::Checked : Qt::Unchecked;
    if (role != Qt::DisplayRole && role != Qt::EditRole)
        return {};
    switch (index.column()) {
    case SearchColumn: return set.search;
    case ReplaceColumn: return set.replace;
    case ModeColumn: return qint64(set.mode);
    default: return {};
    }
}

bool SearchSetsModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || index.row() >= searchSets_.size())
        return false;
    SearchSet &set = searchSets_[index.row()];
    if (index.column() == CaseColumn && role == Qt::CheckStateRole)
        set.caseMode = value.toInt() == Qt::Checked ? 1 : 0;
    else if (role != Qt::EditRole)
        return false;
    else if (index.column() == SearchColumn)
        set.search = value.toString();
    else if (index.column() == ReplaceColumn)
        set.replace = value.toString();
    else if (index.column() == ModeColumn)
        set.mode = searchModeFromNumber(std::clamp<qint64>(value.toLongLong(), 1, 9));
    else
        return false;
    emit dataChanged(index, index);
    return true;
}

QVariant SearchSetsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    static const QStringList titles = {QStringLiteral("Search"), QStringLiteral("Replace"),
                                       QStringLiteral("Ignore Case"), QStringLiteral("Mode")};
    return titles.value(section);
}

Qt::ItemFlags SearchSetsModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::ItemIsDropEnabled;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled;
    return flags | (index.column() == CaseColumn ? Qt::ItemIsUserCheckable : Qt::ItemIsEditable);
}

QStringList SearchSetsModel::mimeTypes() const
{
    return {draggedType_};
}

QMimeData *SearchSetsModel::mimeData(const QModelIndexList &indexes) const
{
    QList<int> rows;
    for (const QModelIndex &index : indexes)
        if (index.isValid() && !rows.contains(index.row()))
            rows.append(index.row());
    std::sort(rows.begin(), rows.end());
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << rows;
    auto *data = new QMimeData;
    data->setData(draggedType_, bytes);
    return data;
}

bool SearchSetsModel::canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int,
                                      const QModelIndex &parent) const
{
    return data && data->hasFormat(draggedType_) && action == Qt::MoveAction && !parent.isValid()
           && row >= 0;
}

bool SearchSetsModel::dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                                   const QModelIndex &parent)
{
    if (!canDropMimeData(data, action, row, column, parent))
        return false;
    QList<int> rows;
    QDataStream stream(data->data(draggedType_));
    stream >> rows;
    moveSearchSets(rows, row);
    return true;
}
