#pragma once

#include <QString>
#include <QStringList>

#include <functional>

// The organizer's alerts by number; the numbers are the ones the engine and its functions have
// always used. Negative codes end a run, 1 and 2 ask whether to run.
enum class PoolAlertCode : qint64 {
    FetchFailed = -14, // the library failed while the tracks were fetched
    ServerInfoUnreadable = -13,
    LyricsSourcesUnreadable = -12,
    ServerUnreachable = -11,
    LibraryNotOpen = -10,
    FunctionUnavailable = -9,
    LibraryWithoutTracks = -8, // no tracks with files in the library
    NoSelection = -7,
    MusicFolderIsRoot = -6,
    MusicFolderMissing = -5,
    LibraryPlaylistMissing = -4,
    InvalidSettings = -3,
    ContradictorySettings = -2,
    IncompleteSettings = -1,
    Failure = 0, // anything else: "something went wrong", the run stops
    ConfirmSelection = 1,
    ConfirmLibrary = 2,
    ConfirmReset = 3, // reset the organizer's settings (preferences sheet, not the engine)
};

// An alert of the organizer as its front end shows it: a message, an informative text, one or
// two buttons and, for the confirmations, a suppression check box. Texts are given by key;
// informativeText, when set, is shown instead of the text of informativeKey (the server's own
// messages have no key).
struct PoolAlert
{
    PoolAlertCode code = PoolAlertCode::Failure;
    QString messageKey = QStringLiteral("0003.0001");
    QString informativeKey;
    QString informativeText;
    QStringList buttonKeys{QStringLiteral("0002.0001")};
    QString suppressionKey; // empty: no check box

    QString messageText() const;
    QString informativeTextShown() const;
    bool hasSuppression() const { return !suppressionKey.isEmpty(); }
    bool isWarning() const { return code < PoolAlertCode::Failure; }
};

// Return codes of an alert's buttons, first and second.
inline constexpr int kAlertFirstButtonReturn = 1000;
inline constexpr int kAlertSecondButtonReturn = 1001;

// What the pool engine needs of whoever shows it: the organizer window or orvane-cli. Every
// call arrives on the main thread; the engine never opens anything itself.
class PoolFrontEnd
{
public:
    // Called with the button's return code and the state of the suppression check box.
    using AlertCompletion = std::function<void(int returnCode, bool suppressionOn)>;
    // Called with the chosen folder, or an empty path when the user declined.
    using FolderAnswer = std::function<void(const QString &path)>;

    virtual ~PoolFrontEnd() = default;

    // The progress sheet. progressEmpty: indeterminate, counters "0", comment empty.
    virtual void progressOpen() = 0;
    virtual void progressEmpty() = 0;
    virtual void progressValues(qint64 total) = 0; // determinate from here, value 0
    virtual void progressUpdate(qint64 counter) = 0;
    virtual void progressComment(const QString &text) = 0; // empty clears it
    virtual void progressClose() = 0;
    virtual void setCancelEnabled(bool enabled) = 0;

    // An alert sheet. A completion is given for alerts with two buttons only; the front end
    // calls it once when the sheet ends.
    virtual void presentAlert(const PoolAlert &alert, AlertCompletion completion) = 0;
    // A function asks for a folder (the message is a text key).
    virtual void chooseFolder(const QString &messageKey, FolderAnswer answer) = 0;

    // Held modifier: a run then covers the other track set.
    virtual bool isAltKeyHeld() const = 0;

    virtual void openLogPanel() = 0;
    virtual void openErrorLogPanel() = 0;
    // Show a file in the file manager.
    virtual void revealFile(const QString &path) = 0;

    // A run went through to its end (doMyFunctionEnd done, progress closed).
    virtual void functionRunDidEnd() {}
};
