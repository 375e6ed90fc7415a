#include "additions/exceptionsink.h"

#include "additions/appcontext.h"

namespace ExceptionSink {

void logException(const OVException &exception)
{
    const AppContext *context = appContext();
    const AppContext::ExceptionHandler handler = context ? context->exceptionHandler() : nullptr;
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
