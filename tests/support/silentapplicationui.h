#pragma once

#include "application/applicationui.h"

// An interface that shows nothing and answers no to every question; tests override the calls
// they want to see.
struct SilentApplicationUi : ApplicationUi
{
    void beep() override {}
    void showStandardAlert(const QString &) override {}
    void showAlert(const QString &, const QString &, const QString &) override {}
    bool showExceptionDialog(const QString &) override { return false; }
    void showAboutPanel() override {}
    bool isModalWindowOpen() const override { return false; }
    bool isOptionKeyPressed() const override { return false; }
    void activateApplication() override {}
    void bringToForeground() override {}
    void openLocation(const QString &) override {}
    void quit() override {}
    void afterDelay(double, std::function<void()>) override {}
};
