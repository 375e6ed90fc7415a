#pragma once

#include "additions/ovexception.h"

// Where failures caught at a risky edge go: to the exception handler of the installed
// AppContext, which the application controller sets to its exception log. Without a context or
// handler (headless tools, most tests) they are dropped, which is also what the program does by
// default. Safe to call from any thread; a handler that throws is ignored.
namespace ExceptionSink {

void logException(const OVException &exception);
// Any other exception travels as an OVException named by its kind, with what() as reason.
void logException(const std::exception &exception);

} // namespace ExceptionSink
