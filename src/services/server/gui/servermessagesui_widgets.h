#pragma once

#include "services/server/servermessagesui.h"

class ApplicationUi;

// The server's alerts as message boxes; addresses go to QDesktopServices on the main thread.
class WidgetServerMessagesUi : public ServerMessagesUi
{
public:
    explicit WidgetServerMessagesUi(ApplicationUi &application) : application_(application) {}

    void activateApplication() override;
    int showServerAlert(const QString &title, const QString &message, const QStringList &buttonKeys) override;
    void openURL(const QUrl &url, bool activate) override;

private:
    ApplicationUi &application_;
};
