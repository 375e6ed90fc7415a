#pragma once

#include "application/services.h"

#include <QObject>
#include <QPointer>

class FunctionPoolWindow;
class FunctionSheetRegistry;
class PoolFunctionRegistry;
class QPropertyAnimation;

// Opens and closes the organizer window for the application controller, with the fades of the
// general preferences. The window closes only through closeFunctionPoolMainWindow(), which
// saves the pool settings first; once it has closed, the controller is told through
// killTargetWindow(2). Owns the window, made with the given functions and their sheets; main
// thread.
class OrganizerWindowController : public QObject, public FunctionPoolWindowController
{
    Q_OBJECT

public:
    OrganizerWindowController(FunctionPoolWindowHooks hooks, const PoolFunctionRegistry &functions,
                              const FunctionSheetRegistry &sheets);
    ~OrganizerWindowController() override;

    FunctionPoolWindow *window() const { return window_; }
    // True while the window stands open and no fade runs.
    bool yourAllowWindowChanges() const { return yourAllowWindowChanges_; }

    void showWindow() override { openFunctionPoolMainWindow(); }
    void makeKeyAndOrderFront() override;
    void orderFrontRegardless() override;
    bool isWindowVisible() const override;
    void closeWindow() override { closeFunctionPoolMainWindow(); }
    void openFunctionPoolMainWindow() override;
    void closeFunctionPoolMainWindow() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void fadeWindow(double seconds, qreal to);
    void animationDidEnd(qreal to);
    void closeNow();

    FunctionPoolWindowHooks hooks_;
    FunctionPoolWindow *window_;
    QPointer<QPropertyAnimation> fade_;
    bool yourAllowWindowChanges_ = false;
    bool closing_ = false;
};
