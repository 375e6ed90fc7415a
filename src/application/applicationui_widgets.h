#pragma once

#include "application/applicationui.h"

// ApplicationUi on QtWidgets: message boxes, the application's top-level windows, the
// desktop's file manager and browser, Qt timers.
class WidgetApplicationUi : public ApplicationUi
{
public:
    void beep() override;
    void showStandardAlert(const QString &informativeTextKey) override;
    void showAlert(const QString &titleKey, const QString &buttonKey, const QString &textKey) override;
    bool showExceptionDialog(const QString &text) override;
    void showAboutPanel() override;
    bool isModalWindowOpen() const override;
    bool isOptionKeyPressed() const override;
    void activateApplication() override;
    void bringToForeground() override;
    void openLocation(const QString &pathOrUrl) override;
    void quit() override;
    void afterDelay(double seconds, std::function<void()> call) override;
};
