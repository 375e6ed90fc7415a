#include "applicationmenu.h"

#include "additions/localizedstrings.h"

#include <QApplication>
#include <QStyle>

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
    add(tr("Show Artist in Store"), actions_.showArtistInStore);
    menu_.addSeparator();
    add(tr("Orvane Help"), actions_.showHelp);
    add(tr("Support Orvane…"), actions_.showSupport);
    add(tr("Check for Updates…"), actions_.checkForUpdate);
    menu_.addSeparator();
    add(tr("Quit Orvane"), actions_.quit);

    tray_.setIcon(QApplication::style()->standardIcon(QStyle::SP_MediaPlay));
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
