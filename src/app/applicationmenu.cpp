#include "applicationmenu.h"

#include "additions/localizedstrings.h"
#include "controller/gui/controllericons.h"
#include "widgets/templateicon.h"

#include <QApplication>

ApplicationMenu::ApplicationMenu(Actions actions, QObject *parent)
    : QObject(parent), actions_(std::move(actions))
{
    auto add = [this](const QString &text, const std::function<void()> &action) {
        QAction *item = menu_.addAction(text);
        connect(item, &QAction::triggered, this, [action] {
            if (action)
                action();
        });
    };
    add(tr("Library…"), actions_.showLibrary);
    add(tr("Organizer…"), actions_.showOrganizer);
    add(tr("Controller Panel…"), actions_.showControllerPanel);
    add(tr("Show Artist in Store"), actions_.showArtistInStore);
    menu_.addSeparator();
    add(tr("Orvane Help"), actions_.showHelp);
    add(tr("Support Orvane…"), actions_.showSupport);
    add(tr("Check for Updates…"), actions_.checkForUpdate);
    menu_.addSeparator();
    add(tr("Quit Orvane"), actions_.quit);

    QIcon icon;
    for (const int side : {16, 22, 24, 32, 48, 64})
        icon.addPixmap(TemplateIcon::pixmap(ControllerIcons::path("tray"), QSizeF(side, side), 1.0, QColor()));
    tray_.setIcon(icon);
    tray_.setToolTip(QStringLiteral("Orvane"));
    tray_.setContextMenu(&menu_);
}

bool ApplicationMenu::show()
{
    if (!QSystemTrayIcon::isSystemTrayAvailable())
        return false;
    tray_.show();
    return true;
}
