#pragma once

#include "additions/ovexception.h"

#include <functional>

// Where failures caught at a risky edge go: the application controller installs its
// logException() at start. Without a handler (headless tools, most tests) they are dropped,
// which is also what the program does by default. Safe to call from any thread; a handler that
// throws is ignored.
namespace ExceptionSink {

using Handler = std::function<void(const OVException &)>;

void setHandler(Handler handler);
void logException(const OVException &exception);
// Any other exception travels as an OVException named by its kind, with what() as reason.
void logException(const std::exception &exception);

} // namespace ExceptionSink
