#include "pool/poolfunction.h"

#include "additions/ovexception.h"

PoolFunction::PoolFunction(FunctionPoolController *pool, QObject *parent)
    : QObject(parent), myFunctionPool_(pool)
{
}

void PoolFunction::runSynchronizeLibrary(const ITunesTrack &, qint64)
{
    throw OVException(QStringLiteral("NSInvalidArgumentException"),
                      QStringLiteral("%1 does not synchronise the library")
                          .arg(QString::fromLatin1(metaObject()->className())));
}

void PoolFunction::runSearchLibrary(const ITunesTrack &, qint64)
{
    throw OVException(QStringLiteral("NSInvalidArgumentException"),
                      QStringLiteral("%1 does not search the library")
                          .arg(QString::fromLatin1(metaObject()->className())));
}
