#include "services/server/gui/servermessagesui_widgets.h"

#include "additions/localizedstrings.h"
#include "additions/ovapplication.h"
#include "application/applicationui.h"

#include <QApplication>
#include <QDesktopServices>
#include <QMessageBox>
#include <QPushButton>
#include <QThread>

void WidgetServerMessagesUi::activateApplication()
{
    application_.activateApplication();
}

int WidgetServerMessagesUi::showServerAlert(const QString &title, const QString &message,
                                            const QStringList &buttonKeys)
{
    QMessageBox box;
    box.setWindowTitle(OVApplication::ov_name());
    box.setIcon(QMessageBox::Information);
    // The server's texts are shown as they are, never read as markup; the title stands out.
    const auto plain = [](const QString &text) { return text.toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br>")); };
    box.setTextFormat(Qt::RichText);
    box.setText(QStringLiteral("<b>%1</b>").arg(plain(title)));
    box.setInformativeText(plain(message));
    // Wide enough that a message of a few sentences reads as lines, not as a column.
    box.setStyleSheet(QStringLiteral("QLabel#qt_msgbox_informativelabel { min-width: 360px; }"));
    QList<QAbstractButton *> buttons;
    for (qsizetype i = 0; i < buttonKeys.size(); ++i)
        buttons.append(box.addButton(ov_localizedString(buttonKeys.at(i)),
                                     i == 0 ? QMessageBox::AcceptRole : QMessageBox::RejectRole));
    if (!buttons.isEmpty())
        box.setDefaultButton(qobject_cast<QPushButton *>(buttons.first()));
    box.exec();
    return int(buttons.indexOf(box.clickedButton()));
}

void WidgetServerMessagesUi::openURL(const QUrl &url, bool activate)
{
    // Store links come from other threads; the desktop is asked from the main one.
    auto open = [url] { QDesktopServices::openUrl(url); };
    if (QThread::currentThread() == qApp->thread())
        open();
    else
        QMetaObject::invokeMethod(qApp, open, Qt::QueuedConnection);
    Q_UNUSED(activate) // the desktop's handler decides whether it comes to the front
}
