#pragma once

#include "player/itunes.h"

#include <QAbstractTableModel>
#include <QVariantMap>

class FunctionPoolController;
class FunctionPoolPreferences;

// What happened to a track in a run, as the change log shows it and orvane-cli prints it. Only
// Unchanged and Changed are subject to the log filters.
enum class TrackLogState : qint64 {
    Error = -1, // a write failed or the function raised; the error log says why
    Unchanged = 0,
    Changed = 1,
    Removed = 2,    // taken out of the library (library functions)
    Missing = 3,    // its file is gone (library functions)
    Refreshed = 4,  // changed by the library functions, logged whatever the filters
    NoLocation = 5, // a track without a file
    Added = 6,      // a file added to the library
};

// The change log of the last run: one entry per track worth reporting, each a map of "Icon"
// (the name of a status image, mapped to a picture by the window) and "InfoText". The model
// lives on the main thread; the engine's worker adds entries without waiting and empties the
// log waiting for the main thread, so entries appear in call order.
class FunctionPoolLog : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { IconColumn, InfoTextColumn, ColumnCount };

    FunctionPoolLog(FunctionPoolController *pool, FunctionPoolPreferences *preferences,
                    QObject *parent = nullptr);

    // The image name of a change state; whether a state is logged depends on the filters.
    static QString iconForChangeState(TrackLogState changeState);
    bool isLogged(TrackLogState changeState) const;

    // Any thread. The track and counter are not kept.
    void addLogEntry(const ITunesTrack &track, qint64 trackCounter, TrackLogState changeState,
                     const QString &infoText);
    // Any thread; returns once the table is empty.
    void emptyLog();
    void openLogPanel();
    // The double-click action: the file of the last selected row, if it exists, is shown.
    void revealItem(const QList<int> &selectedRows);

    QList<QVariantMap> yourLogEntries() const { return yourLogEntries_; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

signals:
    // After an entry was added; the state travels with it for front ends that print it.
    void logEntryAdded(TrackLogState changeState, const QString &infoText);

private:
    FunctionPoolController *myFunctionPool_;
    FunctionPoolPreferences *preferences_;
    QList<QVariantMap> yourLogEntries_;
};

// The error log of the last run: one entry per exception, a map of "Error" ("name | reason")
// and "Date". Threads as FunctionPoolLog; every entry also goes to the exception sink.
class FunctionPoolErrorLog : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { ErrorColumn, DateColumn, ColumnCount };

    explicit FunctionPoolErrorLog(FunctionPoolController *pool, QObject *parent = nullptr);

    void addErrorLogEntry(const std::exception &exception);
    void emptyErrorLog();
    void openErrorLogPanel();

    QList<QVariantMap> yourErrorLogEntries() const { return yourErrorLogEntries_; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

signals:
    void errorLogEntryAdded(const QString &error);

private:
    FunctionPoolController *myFunctionPool_;
    QList<QVariantMap> yourErrorLogEntries_;
};
