#pragma once

#include <QHash>
#include <QMutex>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QThread>

#include <memory>
#include <optional>

// The library's SQLite file. Qt allows a connection only on the thread that opened it, so each
// thread that touches the library gets a connection of its own, made on first use and named
// after the database object and the thread, and closed when that thread ends (whether Qt or
// not started it); callers serialise their work themselves (the library store holds one lock
// around every call).
class LibraryDatabase
{
public:
    // The schema steps applied so far; a fresh database runs them all.
    static int latestSchemaVersion();

    // Opens (creating it if needed) and brings the schema up to targetVersion, one step per
    // transaction. Throws BridgeFailure when the file cannot be opened, is not a library, was
    // made by a newer version (it is then left untouched) or a step fails.
    explicit LibraryDatabase(QString path, int targetVersion = latestSchemaVersion());
    ~LibraryDatabase();
    LibraryDatabase(const LibraryDatabase &) = delete;
    LibraryDatabase &operator=(const LibraryDatabase &) = delete;

    const QString &path() const { return path_; }
    int schemaVersion();

    QSqlDatabase connection();
    // A prepared query on this thread's connection, cached per statement text.
    QSqlQuery &prepared(const QString &statement);
    // Runs a prepared statement with positional values; throws BridgeFailure on error.
    QSqlQuery &run(const QString &statement, const QVariantList &values = {});
    // The first row of a prepared statement, or nothing; the query is finished either way, so
    // the cached statement holds no read lock afterwards.
    std::optional<QSqlRecord> singleRow(const QString &statement, const QVariantList &values = {});
    // The first column of singleRow(), or an invalid value.
    QVariant singleValue(const QString &statement, const QVariantList &values = {});

    struct Connections; // per thread: connection name and prepared queries

private:
    void migrate(int targetVersion);

    QString path_;
    QString connectionPrefix_;
    std::shared_ptr<Connections> connections_;
};

// Rolls back unless commit() was called; nests as savepoints are not needed here, so one
// guard per unit of work.
class TransactionGuard
{
public:
    explicit TransactionGuard(LibraryDatabase &database);
    ~TransactionGuard();
    TransactionGuard(const TransactionGuard &) = delete;
    TransactionGuard &operator=(const TransactionGuard &) = delete;

    void commit(); // throws BridgeFailure when the commit fails

private:
    QSqlDatabase connection_;
    bool done_ = false;
};
