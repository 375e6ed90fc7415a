#pragma once

#include <QString>

#include <functional>

// Everything the application controller shows or asks of the desktop, so that its logic runs
// headless: the program passes the widget implementation (applicationui_widgets.h), tests a
// recording one. Main thread.
class ApplicationUi
{
public:
    virtual ~ApplicationUi() = default;

    virtual void beep() = 0;
    // Activates the application, then a modal alert titled "0003.0001" with the button
    // "0002.0001" and the text of the given key.
    virtual void showStandardAlert(const QString &informativeTextKey) = 0;
    // A modal alert of three keys: title, the one button, informative text.
    virtual void showAlert(const QString &titleKey, const QString &buttonKey, const QString &textKey) = 0;
    // The exception dialog: the composed log text with a suppression check box "0002.0004".
    // True when the box was ticked.
    virtual bool showExceptionDialog(const QString &text) = 0;
    virtual void showAboutPanel() = 0;

    // A modal window or a sheet is open; quitting is refused then.
    virtual bool isModalWindowOpen() const = 0;
    // Either Alt key is held right now.
    virtual bool isOptionKeyPressed() const = 0;

    virtual void activateApplication() = 0;
    // Asks the window system to treat the program as the foreground application.
    virtual void bringToForeground() = 0;
    virtual void openLocation(const QString &pathOrUrl) = 0;
    virtual void quit() = 0;

    // Runs the call once on the main thread after the delay, even while a menu is open.
    virtual void afterDelay(double seconds, std::function<void()> call) = 0;
};
