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
