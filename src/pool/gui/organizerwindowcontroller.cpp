#include "pool/gui/organizerwindowcontroller.h"

#include "application/apppreferences.h"
#include "pool/functionpoolcontroller.h"
#include "pool/functionpoolpreferences.h"
#include "pool/gui/functionpoolwindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QPropertyAnimation>
#include <QScreen>

OrganizerWindowController::OrganizerWindowController(FunctionPoolWindowHooks hooks,
                                                     const PoolFunctionRegistry &functions,
                                                     const FunctionSheetRegistry &sheets)
    : hooks_(std::move(hooks)), window_(new FunctionPoolWindow(functions, sheets))
{
    window_->setOpenLibraryWindow(hooks_.openLibraryWindow);
    window_->installEventFilter(this);
}

OrganizerWindowController::~OrganizerWindowController()
{
    window_->removeEventFilter(this);
    delete window_;
}

void OrganizerWindowController::makeKeyAndOrderFront()
{
    window_->show();
    window_->raise();
    window_->activateWindow();
}

void OrganizerWindowController::orderFrontRegardless()
{
    window_->show();
    window_->raise();
}

bool OrganizerWindowController::isWindowVisible() const
{
    return window_->isVisible();
}

void OrganizerWindowController::openFunctionPoolMainWindow()
{
    yourAllowWindowChanges_ = false;
    if (QScreen *screen = QGuiApplication::primaryScreen()) {
        QRect frame = window_->frameGeometry();
        frame.moveCenter(screen->availableGeometry().center());
        window_->move(frame.topLeft());
    }
    const double seconds = AppPreferences::kWindowFadeTimeIn;
    if (seconds > 0) {
        window_->setWindowOpacity(0);
        makeKeyAndOrderFront();
        fadeWindow(seconds, 1);
        return;
    }
    makeKeyAndOrderFront();
    yourAllowWindowChanges_ = true;
}

void OrganizerWindowController::closeFunctionPoolMainWindow()
{
    if (!yourAllowWindowChanges_)
        return;
    yourAllowWindowChanges_ = false;
    window_->functionPool()->myPreferences()->closeFunctionPool();
    const double seconds = AppPreferences::kWindowFadeTimeOut;
    if (seconds > 0)
        fadeWindow(seconds, 0);
    else
        closeNow();
}

void OrganizerWindowController::fadeWindow(double seconds, qreal to)
{
    fade_ = new QPropertyAnimation(window_, "windowOpacity", this);
    fade_->setDuration(int(seconds * 1000));
    fade_->setEndValue(to);
    connect(fade_, &QPropertyAnimation::finished, this, [this, to] { animationDidEnd(to); });
    fade_->start(QAbstractAnimation::DeleteWhenStopped);
}

void OrganizerWindowController::animationDidEnd(qreal to)
{
    yourAllowWindowChanges_ = true;
    window_->setWindowOpacity(to);
    if (to == 0)
        closeNow();
}

void OrganizerWindowController::closeNow()
{
    yourAllowWindowChanges_ = false;
    closing_ = true;
    window_->close();
    if (hooks_.killTargetWindow)
        hooks_.killTargetWindow(2);
}

bool OrganizerWindowController::eventFilter(QObject *watched, QEvent *event)
{
    // The window manager's close button goes the same way as every other close.
    if (watched == window_ && event->type() == QEvent::Close && !closing_) {
        event->ignore();
        closeFunctionPoolMainWindow();
        return true;
    }
    return QObject::eventFilter(watched, event);
}
