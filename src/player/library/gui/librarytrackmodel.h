#pragma once

#include <QAbstractTableModel>
#include <QHash>
#include <QMutex>
#include <QSet>
#include <QTimer>

#include <optional>

class LibraryStore;

// The library's tracks as table rows for the library window. Keeps its own copy of the shown
// values, so painting and sorting never wait on the store's lock (the organizer may hold it on
// a worker thread while it saves a file). The copy follows the store's tracksChanged(), which
// may come from any thread; changes are gathered and applied together a moment later, or at
// once by applyPendingChanges().
//
// Lives on the GUI thread; owned by the library window controller.
class LibraryTrackModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column {
        Name,
        Artist,
        Album,
        AlbumArtist,
        Genre,
        Year,
        Track,
        Disc,
        Time,
        Rating,
        Kind,
        Location,
        ColumnCount
    };
    enum Role {
        SortRole = Qt::UserRole + 1, // a QVariantList: the column's value, then the tie breakers
        SearchTextRole,              // the text columns joined, for the search field
        PersistentIDRole,
    };

    // The store may be null (a library that could not be opened): the model is then empty.
    explicit LibraryTrackModel(LibraryStore *store, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    QString persistentIDAt(int row) const;
    qint64 trackIdAt(int row) const;
    int rowOfPersistentID(const QString &persistentID) const; // -1 when not shown

    // Shows what the store has announced and the model not yet taken in.
    void applyPendingChanges();

private:
    struct Row
    {
        qint64 id = 0;
        QString persistentID;
        QString name, artist, album, albumArtist, genre, kind, location;
        qint64 year = 0, trackNumber = 0, trackCount = 0, discNumber = 0, discCount = 0;
        qint64 rating = 0;
        double duration = 0;
    };

    std::optional<Row> readRow(qint64 id) const;
    QString displayText(const Row &row, int column) const;
    QVariantList sortKey(const Row &row, int column) const;
    void noteChanged(const QList<qint64> &ids);
    void removeRows(QList<int> rows);
    void reindex();

    LibraryStore *store_;
    QList<Row> rows_;
    QHash<qint64, int> rowOfId_;
    QHash<QString, int> rowOfPersistentID_;
    QMutex pendingMutex_; // pending_ is filled on the thread of each change
    QSet<qint64> pending_;
    QTimer applyTimer_;
};
