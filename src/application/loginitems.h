#pragma once

#include <QList>
#include <QString>

// One entry of the user's login items: an XDG autostart entry, one ".desktop" file.
class SystemEventsLoginItem
{
public:
    SystemEventsLoginItem() = default;
    SystemEventsLoginItem(QString file, QString path, bool hidden);

    QString file() const { return file_; } // the .desktop file
    QString path() const { return path_; } // the program it starts
    bool hidden() const { return hidden_; }

    // The identifier of the application at path(): this program's own, or the name of an
    // installed desktop entry that starts the same program. Empty when there is none.
    QString ov_bundleIdentifier() const;

private:
    QString file_;
    QString path_;
    bool hidden_ = false;
};

// The user's login items. The entries live in one folder, $XDG_CONFIG_HOME/autostart unless
// another folder is given; with none given the folder is looked up at each call, so a changed
// environment takes effect at once. Holds no state of its own: any thread.
class SystemEventsApplication
{
public:
    explicit SystemEventsApplication(QString folder = {});

    static SystemEventsApplication ov_SystemEventsApplication() { return SystemEventsApplication(); }

    QString folder() const;
    // Entries that are disabled (Hidden=true) or start nothing are not login items.
    QList<SystemEventsLoginItem> loginItems() const;

    // Paths are compared without regard to case; an empty path never matches.
    bool ov_addLoginItemWithPath(const QString &path, bool hidden) const;
    bool ov_removeLoginItemWithPath(const QString &path) const;
    bool ov_hasLoginItemWithPath(const QString &path) const;

private:
    QString folder_;
};

// This program as a login item.
namespace OVApplicationLogin {

bool ov_isLaunchingAtLogin(const SystemEventsApplication &events = SystemEventsApplication());
// Writes only when the wish does not hold yet. False when this program's path is unknown.
bool ov_setLaunchingAtLogin(bool launch, const SystemEventsApplication &events = SystemEventsApplication());

} // namespace OVApplicationLogin
