#pragma once

#include <QList>
#include <QMap>
#include <QString>

#include <functional>

class FunctionPoolController;
class PoolFunction;

// Which numbered functions a program has. Its composition root makes one, fills it (the
// functions' module through registerBuiltInFunctions, a test with just the functions it needs)
// and hands it to whoever makes engines or lists the functions: the engine makes one object of
// every registered number and nothing else. Owned by the composition root, which keeps it alive
// longer than everything it was handed to; main thread.
class PoolFunctionRegistry
{
public:
    using Factory = std::function<PoolFunction *(FunctionPoolController *pool)>;

    struct Entry
    {
        int number = 0;
        QString title; // for lists such as "orvane-cli organize --list"
        Factory factory;
    };

    static constexpr int kFirstFunction = 1;
    static constexpr int kLastFunction = 26;

    // Replaces an earlier registration of the same number; numbers outside 1 to 26 and empty
    // factories are ignored.
    void registerFunction(int number, const QString &title, Factory factory);
    void unregisterFunction(int number);
    bool isRegistered(int number) const { return entries_.contains(number); }
    // Ascending by number.
    QList<Entry> entries() const { return entries_.values(); }
    // "Function0007".
    static QString className(int number);

private:
    QMap<int, Entry> entries_;
};
