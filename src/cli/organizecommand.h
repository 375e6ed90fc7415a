#pragma once

#include <QStringList>

class AppContext;
class PoolFunctionRegistry;

// "orvane-cli organize ...": lists the organizer's functions, describes one's settings, or runs
// one over the library in $XDG_DATA_HOME/Orvane Library. Returns the exit status.
// The run's library becomes the context's player backend for the run; `functions` are the ones
// listed and run.
int runOrganizeCommand(const QStringList &arguments, AppContext &context, const PoolFunctionRegistry &functions);
