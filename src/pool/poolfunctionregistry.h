#pragma once

#include <QList>
#include <QString>

#include <functional>

class FunctionPoolController;
class PoolFunction;

// Which numbered functions this build has. The functions' module registers each of its
// classes at start (one call per function, before the engine is made); the engine makes one
// object of every registered number and nothing else. Thread-safe.
namespace PoolFunctionRegistry {

using Factory = std::function<PoolFunction *(FunctionPoolController *pool)>;

struct Entry
{
    int number = 0;
    QString title; // for lists such as "orvane-cli organize --list"
    Factory factory;
};

inline constexpr int kFirstFunction = 1;
inline constexpr int kLastFunction = 26;

// Replaces an earlier registration of the same number; numbers outside 1 to 26 are ignored.
void registerFunction(int number, const QString &title, Factory factory);
void unregisterFunction(int number);
bool isRegistered(int number);
// Ascending by number.
QList<Entry> entries();
// "Function0007".
QString className(int number);

// Registers a function when the program starts, from a static object in the function's own
// source file:
//   static const PoolFunctionRegistry::Registration registration(
//       7, QStringLiteral("Tags from the file name"),
//       [](FunctionPoolController *pool) { return new Function0007(pool); });
// The functions are linked as object files, so every such file takes part.
struct Registration
{
    Registration(int number, const QString &title, Factory factory)
    {
        registerFunction(number, title, std::move(factory));
    }
};

} // namespace PoolFunctionRegistry
