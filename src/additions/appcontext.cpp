#include "additions/appcontext.h"

#include "additions/notificationadditions.h"

#include <QCoreApplication>
#include <QVariant>

namespace {

// A dynamic property of the application object: it lives exactly as long as the application,
// and is written only on the main thread before other threads start and after they ended.
constexpr char kProperty[] = "orvaneAppContext";

} // namespace

AppContext::AppContext() : notificationCenter_(std::make_unique<OVNotificationCenter>())
{
}

AppContext::~AppContext()
{
    uninstall();
}

void AppContext::install()
{
    QCoreApplication *application = QCoreApplication::instance();
    Q_ASSERT_X(application, "AppContext::install", "the application object must exist");
    if (!application)
        return;
    application->setProperty(kProperty, QVariant::fromValue(static_cast<void *>(this)));
    installed_ = true;
}

void AppContext::uninstall()
{
    if (!installed_)
        return;
    installed_ = false;
    QCoreApplication *application = QCoreApplication::instance();
    if (application && application->property(kProperty).value<void *>() == this)
        application->setProperty(kProperty, QVariant());
}

AppContext *appContext()
{
    QCoreApplication *application = QCoreApplication::instance();
    return application ? static_cast<AppContext *>(application->property(kProperty).value<void *>()) : nullptr;
}

void AppContext::setPlayerBackend(std::shared_ptr<PlayerBackend> backend)
{
    std::lock_guard lock(mutex_);
    playerBackend_ = std::move(backend);
}

std::shared_ptr<PlayerBackend> AppContext::playerBackend() const
{
    std::lock_guard lock(mutex_);
    return playerBackend_;
}

void AppContext::setLibraryBackend(std::shared_ptr<PlayerBackend> backend)
{
    std::lock_guard lock(mutex_);
    libraryBackend_ = std::move(backend);
}

std::shared_ptr<PlayerBackend> AppContext::libraryBackend() const
{
    std::lock_guard lock(mutex_);
    return libraryBackend_ ? libraryBackend_ : playerBackend_;
}

void AppContext::setExceptionHandler(ExceptionHandler handler)
{
    std::lock_guard lock(mutex_);
    exceptionHandler_ = std::move(handler);
}

AppContext::ExceptionHandler AppContext::exceptionHandler() const
{
    std::lock_guard lock(mutex_);
    return exceptionHandler_;
}

void AppContext::setAutoLoveSource(AutoLoveSource source)
{
    std::lock_guard lock(mutex_);
    autoLoveSource_ = std::move(source);
}

AppContext::AutoLoveSource AppContext::autoLoveSource() const
{
    std::lock_guard lock(mutex_);
    return autoLoveSource_;
}

void AppContext::setLovedScrobbler(LovedScrobbler scrobbler)
{
    std::lock_guard lock(mutex_);
    lovedScrobbler_ = std::move(scrobbler);
}

AppContext::LovedScrobbler AppContext::lovedScrobbler() const
{
    std::lock_guard lock(mutex_);
    return lovedScrobbler_;
}
