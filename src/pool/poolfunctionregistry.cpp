#include "pool/poolfunctionregistry.h"

void PoolFunctionRegistry::registerFunction(int number, const QString &title, Factory factory)
{
    if (number < kFirstFunction || number > kLastFunction || !factory)
        return;
    entries_.insert(number, Entry{number, title, std::move(factory)});
}

void PoolFunctionRegistry::unregisterFunction(int number)
{
    entries_.remove(number);
}

QString PoolFunctionRegistry::className(int number)
{
    return QStringLiteral("Function%1").arg(number, 4, 10, QLatin1Char('0'));
}
