#pragma once

#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>

#include <functional>

// The program's menu in the desktop's system tray, where there is one: the library window, the
// organizer, the status strip's panel, the playing artist in the store, the website, the update check and quitting. Until the controller strip exists it is the way into the windows in
// default mode; the organizer window reaches the library through its own toolbar.
class ApplicationMenu : public QObject
{
    Q_OBJECT
public:
    struct Actions
    {
        std::function<void()> showLibrary;
        std::function<void()> showOrganizer;
        // The status strip's panel, as its menu button drops it.
        std::function<void()> showControllerPanel;
        std::function<void()> showArtistInStore;
        std::function<void()> showHelp;
        std::function<void()> showSupport;
        std::function<void()> checkForUpdate;
        std::function<void()> quit;
    };

    explicit ApplicationMenu(Actions actions, QObject *parent = nullptr);

    // Shows the tray icon; false when the desktop has no tray.
    bool show();
    QMenu *menu() { return &menu_; }

private:
    Actions actions_;
    QMenu menu_;
    QSystemTrayIcon tray_;
};
