#include "widgets/screenflash.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QPainter>
#include <QRasterWindow>
#include <QScreen>
#include <QSequentialAnimationGroup>
#include <QThread>
#include <QVariantAnimation>

#include <memory>
#include <vector>

namespace {

// A white pane over one whole screen that lets every click through.
class FlashWindow : public QRasterWindow
{
public:
    explicit FlashWindow(QScreen *screen)
    {
        setFlags(Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint
                 | Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus);
        setScreen(screen);
        setGeometry(screen->geometry());
        setOpacity(0);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter(this).fillRect(QRect(QPoint(), size()), Qt::white);
    }
};

QVariantAnimation *fade(double from, double to, QObject *parent)
{
    auto *animation = new QVariantAnimation(parent);
    animation->setDuration(100);
    animation->setStartValue(from);
    animation->setEndValue(to);
    return animation;
}

} // namespace

// Two fades of a tenth of a second: up to 0.4 white, then from full white back to 0.4, after
// which the panes go and the screens are as they were. The caller waits in a local event loop
// so that the panes are painted.
void ScreenFlash::flashDisplays()
{
    auto *application = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
    if (!application || QThread::currentThread() != application->thread())
        return;

    std::vector<std::unique_ptr<FlashWindow>> windows;
    for (QScreen *screen : QGuiApplication::screens()) {
        windows.push_back(std::make_unique<FlashWindow>(screen));
        windows.back()->show();
    }

    QSequentialAnimationGroup fades;
    fades.addAnimation(fade(0.0, 0.4, &fades));
    fades.addAnimation(fade(1.0, 0.4, &fades));
    for (int i = 0; i < fades.animationCount(); ++i)
        QObject::connect(static_cast<QVariantAnimation *>(fades.animationAt(i)),
                         &QVariantAnimation::valueChanged, [&windows](const QVariant &blend) {
                             for (const auto &window : windows)
                                 window->setOpacity(blend.toDouble());
                         });
    QEventLoop loop;
    QObject::connect(&fades, &QAbstractAnimation::finished, &loop, &QEventLoop::quit);
    fades.start();
    loop.exec();
}
