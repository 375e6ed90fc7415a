#include "application/windowregistry.h"

std::optional<AppWindow> appWindowFromNumber(int number)
{
    if (number < int(AppWindow::TrackInfo) || number > int(AppWindow::Lyrics))
        return std::nullopt;
    return AppWindow(number);
}

WindowRegistry::WindowRegistry(ServiceFactory &factory, QObject *parent) : QObject(parent), factory_(factory)
{
}

void WindowRegistry::release(AppWindow window)
{
    std::shared_ptr<WindowController> held = std::move(windows_[index(window)]);
    if (held)
        QMetaObject::invokeMethod(this, [held = std::move(held)]() mutable { held.reset(); }, Qt::QueuedConnection);
}
