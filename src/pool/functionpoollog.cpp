#include "pool/functionpoollog.h"

#include "additions/exceptionsink.h"
#include "pool/functionpoolcontroller.h"
#include "pool/functionpoolpreferences.h"

#include <QDateTime>
#include <QFileInfo>
#include <QThread>

namespace {

const QString kIcon = QStringLiteral("Icon");
const QString kInfoText = QStringLiteral("InfoText");
const QString kError = QStringLiteral("Error");
const QString kDate = QStringLiteral("Date");

// Runs on the model's thread: at once there, else queued (or waited for). Through the engine
// when there is one, so that closing it lets a waiting worker go.
void onOwnerThread(QObject *owner, FunctionPoolController *pool, std::function<void()> work, bool wait)
{
    if (QThread::currentThread() == owner->thread())
        work();
    else if (pool)
        pool->onMainThread(std::move(work), wait);
    else
        QMetaObject::invokeMethod(owner, std::move(work),
                                  wait ? Qt::BlockingQueuedConnection : Qt::QueuedConnection);
}

OVException asOVException(const std::exception &exception)
{
    if (const auto *own = dynamic_cast<const OVException *>(&exception))
        return *own;
    return OVException(QStringLiteral("std::exception"), QString::fromUtf8(exception.what()));
}

} // namespace

FunctionPoolLog::FunctionPoolLog(FunctionPoolController *pool, FunctionPoolPreferences *preferences,
                                 QObject *parent)
    : QAbstractTableModel(parent), myFunctionPool_(pool), preferences_(preferences)
{
}

QString FunctionPoolLog::iconForChangeState(TrackLogState changeState)
{
    switch (changeState) {
    case TrackLogState::Unchanged: return QStringLiteral("OVImageStatusLogUnchanged");
    case TrackLogState::Changed:
    case TrackLogState::Refreshed: return QStringLiteral("OVImageStatusLogChanged");
    case TrackLogState::Removed: return QStringLiteral("OVImageStatusLogRemoved");
    case TrackLogState::Missing:
    case TrackLogState::NoLocation: return QStringLiteral("OVImageStatusLogMissing");
    case TrackLogState::Added: return QStringLiteral("OVImageStatusLogAdded");
    case TrackLogState::Error: break;
    }
    // Error, and any number outside the set.
    return QStringLiteral("OVImageStatusLogError");
}

bool FunctionPoolLog::isLogged(TrackLogState changeState) const
{
    if (changeState == TrackLogState::Unchanged)
        return !preferences_ || preferences_->prefLogUnchangedTracks();
    if (changeState == TrackLogState::Changed)
        return !preferences_ || preferences_->prefLogChangedTracks();
    return true;
}

void FunctionPoolLog::addLogEntry(const ITunesTrack &, qint64, TrackLogState changeState,
                                  const QString &infoText)
{
    if (!isLogged(changeState))
        return;
    const QVariantMap entry{{kIcon, iconForChangeState(changeState)}, {kInfoText, infoText}};
    onOwnerThread(this, myFunctionPool_, [this, entry, changeState, infoText] {
        const int row = int(yourLogEntries_.size());
        beginInsertRows({}, row, row);
        yourLogEntries_.append(entry);
        endInsertRows();
        emit logEntryAdded(changeState, infoText);
    }, false);
}

void FunctionPoolLog::emptyLog()
{
    onOwnerThread(this, myFunctionPool_, [this] {
        beginResetModel();
        yourLogEntries_.clear();
        endResetModel();
    }, true);
}

void FunctionPoolLog::openLogPanel()
{
    if (myFunctionPool_ && myFunctionPool_->frontEnd())
        myFunctionPool_->frontEnd()->openLogPanel();
}

void FunctionPoolLog::revealItem(const QList<int> &selectedRows)
{
    if (selectedRows.isEmpty())
        return;
    try {
        const int row = selectedRows.last();
        if (row < 0 || row >= yourLogEntries_.size())
            return;
        const QStringList parts = yourLogEntries_.at(row).value(kInfoText).toString().split(QLatin1Char('\n'));
        const QString path = parts.size() >= 2 ? parts.at(1) : parts.first();
        if (QFileInfo::exists(path) && myFunctionPool_ && myFunctionPool_->frontEnd())
            myFunctionPool_->frontEnd()->revealFile(path);
    } catch (const std::exception &exception) {
        ExceptionSink::logException(exception);
    }
}

int FunctionPoolLog::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(yourLogEntries_.size());
}

int FunctionPoolLog::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant FunctionPoolLog::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= yourLogEntries_.size() || role != Qt::DisplayRole)
        return {};
    return yourLogEntries_.at(index.row()).value(index.column() == IconColumn ? kIcon : kInfoText);
}

// --- Error log

FunctionPoolErrorLog::FunctionPoolErrorLog(FunctionPoolController *pool, QObject *parent)
    : QAbstractTableModel(parent), myFunctionPool_(pool)
{
}

void FunctionPoolErrorLog::addErrorLogEntry(const std::exception &exception)
{
    const OVException failure = asOVException(exception);
    const QString error = QStringLiteral("%1 | %2").arg(failure.name(), failure.reason());
    const QVariantMap entry{{kError, error}, {kDate, QDateTime::currentDateTime()}};
    onOwnerThread(this, myFunctionPool_, [this, entry, error] {
        const int row = int(yourErrorLogEntries_.size());
        beginInsertRows({}, row, row);
        yourErrorLogEntries_.append(entry);
        endInsertRows();
        emit errorLogEntryAdded(error);
    }, false);
    ExceptionSink::logException(failure);
}

void FunctionPoolErrorLog::emptyErrorLog()
{
    onOwnerThread(this, myFunctionPool_, [this] {
        beginResetModel();
        yourErrorLogEntries_.clear();
        endResetModel();
    }, true);
}

void FunctionPoolErrorLog::openErrorLogPanel()
{
    if (myFunctionPool_ && myFunctionPool_->frontEnd())
        myFunctionPool_->frontEnd()->openErrorLogPanel();
}

int FunctionPoolErrorLog::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(yourErrorLogEntries_.size());
}

int FunctionPoolErrorLog::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant FunctionPoolErrorLog::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= yourErrorLogEntries_.size() || role != Qt::DisplayRole)
        return {};
    return yourErrorLogEntries_.at(index.row()).value(index.column() == ErrorColumn ? kError : kDate);
}
