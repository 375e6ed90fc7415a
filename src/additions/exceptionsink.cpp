#include "additions/exceptionsink.h"

#include <mutex>

namespace {
std::mutex handlerMutex;
ExceptionSink::Handler currentHandler;
} // namespace

namespace ExceptionSink {

void setHandler(Handler handler)
{
    std::lock_guard lock(handlerMutex);
    currentHandler = std::move(handler);
}

void logException(const OVException &exception)
{
    Handler handler;
    {
        std::lock_guard lock(handlerMutex);
        handler = currentHandler;
    }
    if (!handler)
        return;
    try {
        handler(exception);
    } catch (...) {
        // A failure while logging a failure has nowhere left to go.
    }
}

void logException(const std::exception &exception)
{
    if (const auto *own = dynamic_cast<const OVException *>(&exception)) {
        logException(*own);
        return;
    }
    logException(OVException(QStringLiteral("std::exception"), QString::fromUtf8(exception.what())));
}

} // namespace ExceptionSink
