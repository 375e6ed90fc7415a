#pragma once

#include <QDialog>

class LibraryStore;
class QTableWidget;

// A track's properties as the player bridge names them, read only: what the player's info
// dialog shows, for a track of the library. Reads the store once, when made.
class TrackPropertiesDialog : public QDialog
{
    Q_OBJECT
public:
    TrackPropertiesDialog(LibraryStore &store, qint64 trackId, QWidget *parent = nullptr);

    // The shown value of a property, "" when the track has none.
    QString valueText(const QString &propertyName) const;

private:
    QTableWidget *table_;
};
