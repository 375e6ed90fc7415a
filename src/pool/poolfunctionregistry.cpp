#include "pool/poolfunctionregistry.h"

#include <QMap>

#include <mutex>

namespace {

std::mutex registryMutex;

QMap<int, PoolFunctionRegistry::Entry> &registry()
{
    static QMap<int, PoolFunctionRegistry::Entry> entries;
    return entries;
}

} // namespace

namespace PoolFunctionRegistry {

void registerFunction(int number, const QString &title, Factory factory)
{
    if (number < kFirstFunction || number > kLastFunction || !factory)
        return;
    std::lock_guard lock(registryMutex);
    registry().insert(number, Entry{number, title, std::move(factory)});
}

void unregisterFunction(int number)
{
    std::lock_guard lock(registryMutex);
    registry().remove(number);
}

bool isRegistered(int number)
{
    std::lock_guard lock(registryMutex);
    return registry().contains(number);
}

QList<Entry> entries()
{
    std::lock_guard lock(registryMutex);
    return registry().values();
}

QString className(int number)
{
    return QStringLiteral("Function%1").arg(number, 4, 10, QLatin1Char('0'));
}

} // namespace PoolFunctionRegistry
