#pragma once

#include "additions/ovexception.h"
#include "player/scriptingobject.h"

class AppPreferences;
class ApplicationUi;

// Writes a failure into the exception log file and shows it in the exception dialog, each as
// its switch in the general settings says; a failed player call arrives here as the delegate
// of the controller's connection. Main thread; owned by the application controller.
class ExceptionLog : public ScriptingBridgeDelegate
{
public:
    ExceptionLog(AppPreferences &preferences, ApplicationUi &ui);

    // Never throws: a failure while logging has nowhere left to go.
    void logException(const OVException &exception);
    void eventDidFail(const QString &className, const QString &operation, const BridgeError &withError) override;

private:
    AppPreferences &preferences_;
    ApplicationUi &ui_;
};
