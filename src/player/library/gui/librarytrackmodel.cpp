#include "player/library/gui/librarytrackmodel.h"

#include "player/library/librarystore.h"
#include "player/library/trackcolumns.h"

#include <algorithm>

namespace {

// Enough for the changes of an organizer run to arrive as one update rather than thousands.
constexpr int kApplyDelayMs = 100;

QString numberOf(qint64 number, qint64 count)
{
    if (number <= 0)
        return {};
    return count > 0 ? QStringLiteral("%1 of %2").arg(number).arg(count) : QString::number(number);
}

QString stars(qint64 rating)
{
    QString text(rating / 20, QChar(0x2605));
    if (rating % 20 >= 10)
        text.append(QChar(0x00BD));
    return text;
}

} // namespace

LibraryTrackModel::LibraryTrackModel(LibraryStore *store, QObject *parent)
    : QAbstractTableModel(parent), store_(store)
{
    applyTimer_.setSingleShot(true);
    applyTimer_.setInterval(kApplyDelayMs);
    connect(&applyTimer_, &QTimer::timeout, this, &LibraryTrackModel::applyPendingChanges);
    if (!store_)
        return;
    connect(store_, &LibraryStore::tracksChanged, this, &LibraryTrackModel::noteChanged,
            Qt::DirectConnection);
    const QList<qint64> ids = store_->trackIds();
    rows_.reserve(ids.size());
    for (qint64 id : ids)
        if (std::optional<Row> row = readRow(id))
            rows_.append(std::move(*row));
    reindex();
}

std::optional<LibraryTrackModel::Row> LibraryTrackModel::readRow(qint64 id) const
{
    try {
        const auto text = [&](Prop property) { return store_->trackValue(id, property).toString(); };
        const auto number = [&](Prop property) {
            return store_->trackValue(id, property).toLongLong();
        };
        Row row;
        row.id = id;
        row.persistentID = text(Prop::persistentID);
        row.name = text(Prop::name);
        row.artist = text(Prop::artist);
        row.album = text(Prop::album);
        row.albumArtist = text(Prop::albumArtist);
        row.genre = text(Prop::genre);
        row.kind = text(Prop::kind);
        row.location = text(Prop::location);
        row.year = number(Prop::year);
        row.trackNumber = number(Prop::trackNumber);
        row.trackCount = number(Prop::trackCount);
        row.discNumber = number(Prop::discNumber);
        row.discCount = number(Prop::discCount);
        row.rating = number(Prop::rating);
        row.duration = store_->trackValue(id, Prop::duration).toDouble();
        return row;
    } catch (const BridgeFailure &) {
        return std::nullopt; // removed meanwhile; its own change notice follows
    }
}

int LibraryTrackModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(rows_.size());
}

int LibraryTrackModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QString LibraryTrackModel::displayText(const Row &row, int column) const
{
    switch (column) {
    case Name: return row.name;
    case Artist: return row.artist;
    case Album: return row.album;
    case AlbumArtist: return row.albumArtist;
    case Genre: return row.genre;
    case Year: return row.year > 0 ? QString::number(row.year) : QString();
    case Track: return numberOf(row.trackNumber, row.trackCount);
    case Disc: return numberOf(row.discNumber, row.discCount);
    case Time: return row.duration > 0 ? formattedDuration(row.duration) : QString();
    case Rating: return stars(row.rating);
    case Kind: return row.kind;
    case Location: return row.location;
    default: return {};
    }
}

QVariantList LibraryTrackModel::sortKey(const Row &row, int column) const
{
    // Ties fall back on the album order, as a listener reads a library.
    const QVariantList albumOrder = {row.album, row.discNumber, row.trackNumber};
    switch (column) {
    case Name: return {row.name, row.artist};
    case Artist: return QVariantList{row.artist} + albumOrder;
    case Album: return albumOrder;
    case AlbumArtist:
        return QVariantList{row.albumArtist.isEmpty() ? row.artist : row.albumArtist} + albumOrder;
    case Genre: return QVariantList{row.genre, row.artist} + albumOrder;
    case Year: return QVariantList{row.year} + albumOrder;
    case Track: return {row.trackNumber, row.album};
    case Disc: return {row.discNumber, row.trackNumber};
    case Time: return {row.duration};
    case Rating: return {row.rating};
    case Kind: return {row.kind};
    case Location: return {row.location};
    default: return {};
    }
}

QVariant LibraryTrackModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rows_.size())
        return {};
    const Row &row = rows_.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return displayText(row, index.column());
    case Qt::ToolTipRole:
        return index.column() == Location || index.column() == Name ? displayText(row, index.column())
                                                                    : QVariant();
    case Qt::TextAlignmentRole:
        if (index.column() >= Year && index.column() <= Time)
            return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
        return {};
    case SortRole:
        return sortKey(row, index.column());
    case SearchTextRole:
        return QStringList{row.name, row.artist, row.album, row.albumArtist, row.genre}.join(
            QLatin1Char('\n'));
    case PersistentIDRole:
        return row.persistentID;
    default:
        return {};
    }
}

QVariant LibraryTrackModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole && section >= Year && section <= Time)
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    static const QStringList titles = {tr("Name"),  tr("Artist"), tr("Album"), tr("Album Artist"),
                                       tr("Genre"), tr("Year"),   tr("Track"), tr("Disc"),
                                       tr("Time"),  tr("Rating"), tr("Kind"),  tr("Location")};
    return titles.value(section);
}

QString LibraryTrackModel::persistentIDAt(int row) const
{
    return row >= 0 && row < rows_.size() ? rows_.at(row).persistentID : QString();
}

qint64 LibraryTrackModel::trackIdAt(int row) const
{
    return row >= 0 && row < rows_.size() ? rows_.at(row).id : 0;
}

int LibraryTrackModel::rowOfPersistentID(const QString &persistentID) const
{
    return rowOfPersistentID_.value(persistentID.toUpper(), -1);
}

void LibraryTrackModel::noteChanged(const QList<qint64> &ids)
{
    QMutexLocker locker(&pendingMutex_);
    const bool first = pending_.isEmpty();
    for (qint64 id : ids)
        pending_.insert(id);
    if (first)
        QMetaObject::invokeMethod(&applyTimer_, qOverload<>(&QTimer::start), Qt::QueuedConnection);
}

void LibraryTrackModel::applyPendingChanges()
{
    applyTimer_.stop();
    QList<qint64> ids;
    {
        QMutexLocker locker(&pendingMutex_);
        ids = QList<qint64>(pending_.begin(), pending_.end());
        pending_.clear();
    }
    if (ids.isEmpty())
        return;
    std::sort(ids.begin(), ids.end()); // new tracks then appear in the order they were added

    QList<Row> added;
    QList<int> gone;
    int firstChanged = int(rows_.size());
    int lastChanged = -1;
    for (qint64 id : ids) {
        const int at = rowOfId_.value(id, -1);
        std::optional<Row> row = store_->hasTrack(id) ? readRow(id) : std::nullopt;
        if (row && at >= 0) {
            rows_[at] = std::move(*row);
            firstChanged = std::min(firstChanged, at);
            lastChanged = std::max(lastChanged, at);
        } else if (row) {
            added.append(std::move(*row));
        } else if (at >= 0) {
            gone.append(at);
        }
    }
    // One notice for the whole span: the sorting proxy then re-sorts once, not per track.
    if (lastChanged >= 0)
        emit dataChanged(index(firstChanged, 0), index(lastChanged, ColumnCount - 1));
    if (!gone.isEmpty())
        removeRows(gone);
    if (!added.isEmpty()) {
        beginInsertRows({}, int(rows_.size()), int(rows_.size() + added.size() - 1));
        rows_.append(added);
        reindex();
        endInsertRows();
    }
}

void LibraryTrackModel::removeRows(QList<int> rows)
{
    // From the end, one contiguous run at a time, so the rows before stay where they are.
    std::sort(rows.begin(), rows.end(), std::greater<int>());
    qsizetype i = 0;
    while (i < rows.size()) {
        const int last = rows.at(i);
        int first = last;
        while (++i < rows.size() && rows.at(i) == first - 1)
            first = rows.at(i);
        beginRemoveRows({}, first, last);
        rows_.remove(first, last - first + 1);
        endRemoveRows();
    }
    reindex();
}

void LibraryTrackModel::reindex()
{
    rowOfId_.clear();
    rowOfPersistentID_.clear();
    rowOfId_.reserve(rows_.size());
    rowOfPersistentID_.reserve(rows_.size());
    for (int i = 0; i < rows_.size(); ++i) {
        rowOfId_.insert(rows_.at(i).id, i);
        rowOfPersistentID_.insert(rows_.at(i).persistentID, i);
    }
}
