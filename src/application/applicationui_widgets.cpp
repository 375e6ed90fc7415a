#include "application/applicationui_widgets.h"

#include "additions/localizedstrings.h"
#include "additions/ovapplication.h"

#include <QApplication>
#include <QCheckBox>
#include <QDesktopServices>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QUrl>
#include <QWidget>

namespace {

// A modal alert with one button; the caller adds what else it needs before exec().
void runAlert(QMessageBox &box, const QString &title, const QString &buttonKey, const QString &text)
{
    box.setIcon(QMessageBox::Warning);
    box.setText(title);
    box.setInformativeText(text);
    box.addButton(ov_localizedString(buttonKey), QMessageBox::AcceptRole);
    box.exec();
}

QWidget *frontWindow()
{
    if (QWidget *active = QApplication::activeWindow())
        return active;
    // The status strip never takes the focus, so it is never the window to bring forward.
    for (QWidget *widget : QApplication::topLevelWidgets())
        if (widget->isVisible() && widget->isWindow() && !widget->windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus))
            return widget;
    return nullptr;
}

} // namespace

void WidgetApplicationUi::beep()
{
    QApplication::beep();
}

void WidgetApplicationUi::showStandardAlert(const QString &informativeTextKey)
{
    activateApplication();
    QMessageBox box;
    runAlert(box, ov_localizedString(QStringLiteral("0003.0001")), QStringLiteral("0002.0001"),
             ov_localizedString(informativeTextKey));
}

void WidgetApplicationUi::showAlert(const QString &titleKey, const QString &buttonKey, const QString &textKey)
{
    QMessageBox box;
    runAlert(box, ov_localizedString(titleKey), buttonKey, ov_localizedString(textKey));
}

bool WidgetApplicationUi::showExceptionDialog(const QString &text)
{
    QMessageBox box;
    auto *suppress = new QCheckBox(ov_localizedString(QStringLiteral("0002.0004")));
    box.setCheckBox(suppress);
    runAlert(box, ov_localizedString(QStringLiteral("0003.0001")), QStringLiteral("0002.0001"), text);
    return suppress->isChecked();
}

void WidgetApplicationUi::showAboutPanel()
{
    QMessageBox::about(frontWindow(), OVApplication::ov_name(),
                       QStringLiteral("%1 %2").arg(OVApplication::ov_name(), OVApplication::ov_version()));
}

bool WidgetApplicationUi::isModalWindowOpen() const
{
    return QApplication::activeModalWidget() != nullptr;
}

bool WidgetApplicationUi::isOptionKeyPressed() const
{
    return QGuiApplication::queryKeyboardModifiers().testFlag(Qt::AltModifier);
}

void WidgetApplicationUi::activateApplication()
{
    if (QWidget *window = frontWindow()) {
        window->raise();
        window->activateWindow();
    }
}

void WidgetApplicationUi::bringToForeground()
{
    for (QWidget *widget : QApplication::topLevelWidgets())
        if (widget->isVisible() && widget->isWindow())
            widget->raise();
}

void WidgetApplicationUi::openLocation(const QString &pathOrUrl)
{
    const QUrl url = QUrl::fromUserInput(pathOrUrl);
    if (url.isValid())
        QDesktopServices::openUrl(url);
}

void WidgetApplicationUi::quit()
{
    QCoreApplication::quit();
}

void WidgetApplicationUi::afterDelay(double seconds, std::function<void()> call)
{
    QTimer::singleShot(qRound(seconds * 1000), qApp, std::move(call));
}
