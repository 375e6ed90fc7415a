#pragma once

#include <QAbstractTableModel>
#include <QList>
#include <QString>
#include <QVariantMap>

// How a search text is matched, by the number saved as "Mode" and set as yourSearchMode.
enum class SearchMode : qint64 {
    Everywhere = 1,
    WordStart = 2,
    WordEnd = 3,
    WholeWord = 4,
    TextStart = 5,
    TextEnd = 6,
    WholeText = 7,
    FirstInWord = 8, // the first match in each word
    RegularExpression = 9,
};

// A saved or set number as a mode. It is kept as it is, so a set written back keeps it; a
// number outside 1 to 9 replaces every occurrence, literally and with case.
constexpr SearchMode searchModeFromNumber(qint64 number) { return SearchMode(number); }

// One step of a search and replace: what to look for, what to put in its place, whether case
// is ignored ("Case" 1) and how to match. Stored as a map with the keys "Search", "Replace",
// "Case" and "Mode".
struct SearchSet
{
    QString search;
    QString replace;
    qint64 caseMode = 1;
    SearchMode mode = SearchMode::Everywhere;

    static SearchSet fromMap(const QVariantMap &map);
    QVariantMap toMap() const;
    friend bool operator==(const SearchSet &, const SearchSet &) = default;
};

// The saved search sets, in order of application, as the table of the sheet that edits them:
// one row per set, columns Search, Replace, Case, Mode. Rows are added, removed, and reordered
// by dragging them (the row numbers travel as the private drag type). Nothing is written
// until saveSearchSets(). Main thread.
class SearchSetsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { SearchColumn, ReplaceColumn, CaseColumn, ModeColumn, ColumnCount };

    SearchSetsModel(const QString &location, const QString &draggedType, QObject *parent = nullptr);

    QString location() const { return location_; }
    const QList<SearchSet> &searchSets() const { return searchSets_; }
    void setSearchSets(const QList<SearchSet> &sets);

    // The file's sets; a missing or unreadable file gives none.
    void readSearchSets();
    // Writes atomically; false when the file cannot be written.
    bool saveSearchSets() const;

    // Appends a set of the given defaults and answers its row.
    int addNewSearchSet(qint64 caseMode, const QString &text, SearchMode mode);
    void removeSearchSets(QList<int> rows);
    // Moves the given rows so that they stand, in their old order, above the row `dropRow`
    // (rowCount() for the end).
    void moveSearchSets(QList<int> rows, int dropRow);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }
    Qt::DropActions supportedDragActions() const override { return Qt::MoveAction; }
    // Drops land between rows (never on one) and always move.
    bool canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                         const QModelIndex &parent) const override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;

private:
    QString location_;
    QString draggedType_;
    QList<SearchSet> searchSets_;
};
