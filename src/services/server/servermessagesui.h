#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

// What the server messages and links show or hand to the desktop. The desktop program passes
// widgets (gui/servermessagesui_widgets.h), orvane-cli a text version, tests a recording one.
class ServerMessagesUi
{
public:
    virtual ~ServerMessagesUi() = default;

    virtual void activateApplication() = 0;
    // A modal alert with the server's own texts and buttons named by key; answers the index of
    // the chosen button. Main thread.
    virtual int showServerAlert(const QString &title, const QString &message, const QStringList &buttonKeys) = 0;
    // Hands an address to the desktop: web addresses to the browser, other schemes ("itms") to
    // their handler. "activate" says whether the handler may come to the front. Any thread.
    virtual void openURL(const QUrl &url, bool activate) = 0;
};
