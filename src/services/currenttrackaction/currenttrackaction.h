#pragma once

#include "application/services.h"
#include "player/itunes.h"

#include <QMap>
#include <QString>

#include <functional>

// What "Current Track Action".plist asks for, read anew for every run. The program never
// writes that file: the feature exists only while the user keeps one there.
struct CurrentTrackActionConfiguration
{
    // Standardised: a leading tilde is the home folder. Empty when absent or not a text.
    QString workspaceDirectoryPath;
    // Base names by file ("track", "player", "playlists", "airplay", "eq", "artwork"); a file
    // that is absent, empty or not a text is not written.
    QMap<QString, QString> fileNames;
    // The script's base name, without ".sh"; empty when absent.
    QString scriptName;

    static CurrentTrackActionConfiguration read(const QString &path);

    // The full path of a configured file, or an empty text when it is switched off. Names may
    // hold separators: they are joined to the workspace as they stand.
    QString pathForFile(const QString &file, const QString &extension) const;
    QString scriptPath() const;
};

// Hooks the player from outside: on every player event it writes the player's state as JSON
// files and the artwork as a JPEG into the user's workspace folder, then starts the user's
// script there with /bin/sh, detached. Holds no state: one is made for every run. Main thread.
class CurrentTrackAction : public OVCurrentTrackAction
{
public:
    // Starts the script without waiting for it; false when it cannot be started.
    using ScriptLauncher = std::function<bool(const QString &scriptPath)>;

    // The program's player and configuration file unless given.
    explicit CurrentTrackAction(ITunesApplication application = {}, QString configurationPath = {},
                                ScriptLauncher launcher = {});

    void run() override { runInWorkspace(); }
    // False when the workspace folder is missing; otherwise the old files are removed, the new
    // ones written (none while the player is gone) and the script started.
    bool runInWorkspace();
    // Removes every file the configuration names, ignoring failures; the script stays.
    void cleanup() override;

    bool isWorkspaceDirectoryAvailable() const;
    bool runScript() const;

    static bool launchDetached(const QString &scriptPath);

private:
    void write() const;
    void writeJsonFile(const QString &file, const QJsonObject &info) const;
    void writeArtworkFile() const;

    CurrentTrackActionConfiguration configuration_;
    ITunesApplication application_;
    ScriptLauncher launcher_;
};
