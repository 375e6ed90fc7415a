#include "controller/gui/statusstripwindow.h"

#include "controller/tunecontrollerlayout.h"

#include <QGuiApplication>
#include <QScreen>

StatusStripWindow::StatusStripWindow(QWidget *parent)
    : QWidget(parent, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus
                          | Qt::X11BypassWindowManagerHint)
{
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFocusPolicy(Qt::NoFocus);
    setWindowTitle(QStringLiteral("Orvane Controller"));
    if (QScreen *screen = QGuiApplication::primaryScreen())
        connect(screen, &QScreen::availableGeometryChanged, this, &StatusStripWindow::placeOnScreen);
}

bool StatusStripWindow::hasScreen()
{
    return QGuiApplication::primaryScreen() != nullptr;
}

void StatusStripWindow::setContent(QWidget *view, int length)
{
    if (content_ && content_ != view)
        delete content_;
    content_ = view;
    length_ = view ? length : 0;
    if (length_ <= 0) {
        if (view)
            view->hide();
        hide();
        return;
    }
    view->setParent(this);
    view->setGeometry(0, 0, length_, TuneControllerLayout::kThickness);
    view->show();
    placeOnScreen();
    show();
    raise();
}

void StatusStripWindow::placeOnScreen()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen || length_ <= 0)
        return;
    const QRect frame = TuneControllerLayout::stripFrame(screen->availableGeometry(), length_);
    if (frame == geometry() && isVisible())
        return;
    setFixedSize(frame.size());
    move(frame.topLeft());
    emit stripMoved();
}
