#pragma once

#include <QHash>
#include <QMutex>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QString>
#include <QThread>

#include <memory>
#include <optional>

// A run of one of the library's prepared statements, read row by row. The query is finished
// when this goes, however far it was read: a statement left part-read keeps its connection
// inside a read, which then sees no later writes of other connections and cannot write itself
// ("database is locked"). Use it within the scope that made it, on that thread.
class QueryRun
{
public:
    explicit QueryRun(QSqlQuery &query) : query_(query) {}
    ~QueryRun() { query_.finish(); }
    QueryRun(const QueryRun &) = delete;
    QueryRun &operator=(const QueryRun &) = delete;

    bool next() { return query_.next(); }
    QVariant value(int index) const { return query_.value(index); }
    QSqlRecord record() const { return query_.record(); }
    QVariant lastInsertId() const { return query_.lastInsertId(); }

private:
    QSqlQuery &query_;
};

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
    // Runs a prepared statement (cached per statement text on this thread's connection) with
    // positional values; throws BridgeFailure on error.
    QueryRun run(const QString &statement, const QVariantList &values = {});
    // The first row of a prepared statement, or nothing.
    std::optional<QSqlRecord> singleRow(const QString &statement, const QVariantList &values = {});
    // The first column of singleRow(), or an invalid value.
    QVariant singleValue(const QString &statement, const QVariantList &values = {});
    // Transactions rolled back so far: a copy of rows read inside one is stale once this moves.
    quint64 rollbackCount() const { return rollbacks_; }

    struct Connections; // per thread: connection name and prepared queries

private:
    QSqlQuery &prepared(const QString &statement);
    void migrate(int targetVersion);

    friend class TransactionGuard;

    QString path_;
    QString connectionPrefix_;
    std::shared_ptr<Connections> connections_;
    quint64 rollbacks_ = 0;
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
    LibraryDatabase &database_;
    QSqlDatabase connection_;
    bool done_ = false;
};
