#pragma once

#include "application/services.h"

#include <QObject>

#include <array>
#include <memory>
#include <optional>

// The application controller's windows. The numbers are the ones the windows pass when they
// close, so that a hook carrying a number converts once, at the boundary.
enum class AppWindow {
    TrackInfo = 1,
    FunctionPool = 2,
    License = 3,
    Preferences = 4,
    Navigation = 5,
    Lyrics = 6,
};

// The window of a number, or none for a number no window has.
std::optional<AppWindow> appWindowFromNumber(int number);

// The controller interface and the factory operation of each window.
template <AppWindow> struct AppWindowTraits;
template <> struct AppWindowTraits<AppWindow::TrackInfo>
{
    using Type = TrackInfoWindowController;
    static constexpr auto create = &ServiceFactory::createTrackInfoWindowController;
};
template <> struct AppWindowTraits<AppWindow::FunctionPool>
{
    using Type = FunctionPoolWindowController;
    static constexpr auto create = &ServiceFactory::createFunctionPoolWindowController;
};
template <> struct AppWindowTraits<AppWindow::License>
{
    using Type = AppLicenseWindowController;
    static constexpr auto create = &ServiceFactory::createLicenseWindowController;
};
template <> struct AppWindowTraits<AppWindow::Preferences>
{
    using Type = AppPreferencesWindowController;
    static constexpr auto create = &ServiceFactory::createPreferencesWindowController;
};
template <> struct AppWindowTraits<AppWindow::Navigation>
{
    using Type = TuneControllerNavigatonWindowController;
    static constexpr auto create = &ServiceFactory::createNavigationWindowController;
};
template <> struct AppWindowTraits<AppWindow::Lyrics>
{
    using Type = TrackLyricsWindowController;
    static constexpr auto create = &ServiceFactory::createTrackLyricsWindowController;
};

// Keeps the one controller of each window the program has open: a window is present from its
// making until it reports its closing (release()). Makes windows through the service factory.
// Main thread; owned by the application controller.
class WindowRegistry : public QObject
{
    Q_OBJECT

public:
    explicit WindowRegistry(ServiceFactory &factory, QObject *parent = nullptr);

    template <AppWindow W>
    using Window = typename AppWindowTraits<W>::Type;

    template <AppWindow W>
    std::shared_ptr<Window<W>> get() const
    {
        // The stored base pointer came from a Window<W>, so the cast back is exact.
        return std::static_pointer_cast<Window<W>>(windows_[index(W)]);
    }
    template <AppWindow W>
    void set(std::shared_ptr<Window<W>> window)
    {
        windows_[index(W)] = std::move(window);
    }
    bool has(AppWindow window) const { return windows_[index(window)] != nullptr; }

    // Made by the factory, not yet kept; null when the factory has none.
    template <AppWindow W>
    std::shared_ptr<Window<W>> create() const
    {
        return (factory_.*AppWindowTraits<W>::create)();
    }
    // Made and kept if missing; the window that is kept (possibly null).
    template <AppWindow W>
    std::shared_ptr<Window<W>> ensure()
    {
        if (!has(W))
            set<W>(create<W>());
        return get<W>();
    }
    // A missing window is made and shown, a visible one comes to the front, a hidden one opens.
    template <AppWindow W>
    void bringUp(void (Window<W>::*open)())
    {
        if (const std::shared_ptr<Window<W>> window = get<W>()) {
            if (window->isWindowVisible())
                window->makeKeyAndOrderFront();
            else
                (window.get()->*open)();
            return;
        }
        if (const std::shared_ptr<Window<W>> made = ensure<W>())
            made->showWindow();
    }

    // The window closed: it is no longer kept. Its controller may be inside its own close
    // handling, so the object itself is let go on the next turn of the event loop.
    void release(AppWindow window);
    // Let go at once, outside any close handling.
    void reset(AppWindow window) { windows_[index(window)].reset(); }

private:
    static constexpr std::size_t index(AppWindow window) { return std::size_t(window) - 1; }

    ServiceFactory &factory_;
    std::array<std::shared_ptr<WindowController>, 6> windows_;
};
