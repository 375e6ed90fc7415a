#pragma once

#include "application/preferenceobject.h"
#include "pool/poolfrontend.h"

#include <QStringList>

class FunctionPoolController;

// The alerts of the preferences sheet by number: the two failures that refuse the sheet, and
// the question before a reset. None: the settings may be saved.
enum class PoolPreferencesAlert : qint64 {
    None = 0,
    ContradictorySettings = -1,
    InvalidSettings = -2,
    ConfirmReset = 2,
};

// The organizer's settings: fixed values and paths set once, and the user's settings in
// "Organizer"/"Preferences".plist, edited on the preferences sheet. Owns the organizer's
// folder and its temporary folder, which is emptied by openFunctionPool() and removed by
// closeFunctionPool(). Main thread; the engine's worker only reads.
class FunctionPoolPreferences : public PreferenceObject
{
    Q_OBJECT
    Q_PROPERTY(bool prefConfirmFunction READ prefConfirmFunction WRITE setPrefConfirmFunction NOTIFY settingsChanged)
    Q_PROPERTY(bool prefLogChangedTracks READ prefLogChangedTracks WRITE setPrefLogChangedTracks NOTIFY settingsChanged)
    Q_PROPERTY(bool prefLogUnchangedTracks READ prefLogUnchangedTracks WRITE setPrefLogUnchangedTracks NOTIFY settingsChanged)
    Q_PROPERTY(bool prefLogDisplayOnFunctionEnd READ prefLogDisplayOnFunctionEnd WRITE setPrefLogDisplayOnFunctionEnd NOTIFY settingsChanged)
    Q_PROPERTY(qint64 prefArtworkFrontPosition READ prefArtworkFrontPosition WRITE setPrefArtworkFrontPosition NOTIFY settingsChanged)
    Q_PROPERTY(qint64 prefArtworkBackPosition READ prefArtworkBackPosition WRITE setPrefArtworkBackPosition NOTIFY settingsChanged)
    Q_PROPERTY(QString prefArtworkFrontSuffix READ prefArtworkFrontSuffix WRITE setPrefArtworkFrontSuffix NOTIFY settingsChanged)
    Q_PROPERTY(QString prefArtworkBackSuffix READ prefArtworkBackSuffix WRITE setPrefArtworkBackSuffix NOTIFY settingsChanged)
    Q_PROPERTY(QString prefAlbumDiscFolderName READ prefAlbumDiscFolderName WRITE setPrefAlbumDiscFolderName NOTIFY settingsChanged)
    Q_PROPERTY(QString prefFileAudioSuffixs READ prefFileAudioSuffixs WRITE setPrefFileAudioSuffixs NOTIFY settingsChanged)
    Q_PROPERTY(QString prefFileImageSuffixs READ prefFileImageSuffixs WRITE setPrefFileImageSuffixs NOTIFY settingsChanged)

public:
    explicit FunctionPoolPreferences(FunctionPoolController *pool = nullptr, QObject *parent = nullptr);

    FunctionPoolController *myFunctionPool() const { return myFunctionPool_; }
    QString preferencesLocation() const override { return prefUserPrefPlistLocation_; }
    void readUserPreferences() override;

    // Start of the organizer: its folder made, the temporary folder emptied, the file read if
    // there is one.
    void openFunctionPool();
    // End of the organizer: settings saved, temporary folder deleted.
    void closeFunctionPool();

    // The checks of the preferences sheet in order: None when the settings may be saved, else
    // the alert of the first failure. Rebuilds the suffix lists on the way.
    PoolPreferencesAlert validatePreferences();
    // Validates and, when the settings pass, saves them. The result as validatePreferences().
    PoolPreferencesAlert closePreferencesPanel();
    // The alert the sheet shows; the same texts as the engine's alerts of those meanings.
    static PoolAlert preferencesAlert(PoolPreferencesAlert value);
    // Asks through the front end and resets on the first button.
    void tryResetPreferences(PoolFrontEnd *frontEnd);

    // Fixed values.
    QString prefOrvaneDraggedType() const { return QStringLiteral("Orvane | Drag & Drop"); }
    QString prefAppSupportLocation() const { return prefAppSupportLocation_; }
    QString prefSearchSetsPlistLocation() const { return prefSearchSetsPlistLocation_; }
    QString prefLyricsSourcesPlistLocation() const { return prefLyricsSourcesPlistLocation_; }
    QString prefScriptsPlistLocation() const { return prefScriptsPlistLocation_; }
    QString prefUserPrefPlistLocation() const { return prefUserPrefPlistLocation_; }
    QString prefAppTmpIdentifer() const { return QStringLiteral("_tmp"); }
    QString prefAppSupportLocationTmp() const;
    QString prefFunctionCheckLocation() const;
    qint64 prefSearchSetCaseStateDefault() const { return 1; }
    qint64 prefSearchSetSearchOptopnDefault() const { return 1; }
    QString prefTableDefaultText() const { return QStringLiteral("*** ??? ***"); }
    QString prefSearchSetWildcard() const { return QStringLiteral("*"); }
    QString prefLyricsSourcesArtistIdentifer() const { return QStringLiteral("[ARTIST]"); }
    QString prefLyricsSourcesTitleIdentifer() const { return QStringLiteral("[NAME]"); }
    static QString prefWordChars();
    QString prefWordItems() const { return QStringLiteral("'0123456789"); }
    QString prefWordText() const { return prefWordChars() + prefWordItems(); }
    QStringList prefIgnoreFileLocations() const { return {QStringLiteral("/."), QStringLiteral(".app/")}; }
    qint64 prefLyricsParagraphsMinimum() const { return 10; }

    // User settings.
    bool prefConfirmFunction() const { return boolSetting("prefConfirmFunction"); }
    void setPrefConfirmFunction(bool on) { setSetting(QStringLiteral("prefConfirmFunction"), on); }
    bool prefLogChangedTracks() const { return boolSetting("prefLogChangedTracks"); }
    void setPrefLogChangedTracks(bool on) { setSetting(QStringLiteral("prefLogChangedTracks"), on); }
    bool prefLogUnchangedTracks() const { return boolSetting("prefLogUnchangedTracks"); }
    void setPrefLogUnchangedTracks(bool on) { setSetting(QStringLiteral("prefLogUnchangedTracks"), on); }
    bool prefLogDisplayOnFunctionEnd() const { return boolSetting("prefLogDisplayOnFunctionEnd"); }
    void setPrefLogDisplayOnFunctionEnd(bool on) { setSetting(QStringLiteral("prefLogDisplayOnFunctionEnd"), on); }
    qint64 prefArtworkFrontPosition() const { return integerSetting("prefArtworkFrontPosition"); }
    void setPrefArtworkFrontPosition(qint64 v) { setSetting(QStringLiteral("prefArtworkFrontPosition"), v); }
    qint64 prefArtworkBackPosition() const { return integerSetting("prefArtworkBackPosition"); }
    void setPrefArtworkBackPosition(qint64 v) { setSetting(QStringLiteral("prefArtworkBackPosition"), v); }
    QString prefArtworkFrontSuffix() const { return textSetting("prefArtworkFrontSuffix"); }
    void setPrefArtworkFrontSuffix(const QString &v) { setSetting(QStringLiteral("prefArtworkFrontSuffix"), v); }
    QString prefArtworkBackSuffix() const { return textSetting("prefArtworkBackSuffix"); }
    void setPrefArtworkBackSuffix(const QString &v) { setSetting(QStringLiteral("prefArtworkBackSuffix"), v); }
    QString prefAlbumDiscFolderName() const { return textSetting("prefAlbumDiscFolderName"); }
    void setPrefAlbumDiscFolderName(const QString &v) { setSetting(QStringLiteral("prefAlbumDiscFolderName"), v); }
    QString prefFileAudioSuffixs() const { return textSetting("prefFileAudioSuffixs"); }
    void setPrefFileAudioSuffixs(const QString &v) { setSetting(QStringLiteral("prefFileAudioSuffixs"), v); }
    QString prefFileImageSuffixs() const { return textSetting("prefFileImageSuffixs"); }
    void setPrefFileImageSuffixs(const QString &v) { setSetting(QStringLiteral("prefFileImageSuffixs"), v); }

    // The two suffix texts split at ", ", as of the last read or validation.
    QStringList prefFileAudioSuffixList() const { return prefFileAudioSuffixList_; }
    QStringList prefFileImageSuffixList() const { return prefFileImageSuffixList_; }

private:
    void rebuildSuffixLists();

    FunctionPoolController *myFunctionPool_;
    QString prefAppSupportLocation_;
    QString prefSearchSetsPlistLocation_;
    QString prefLyricsSourcesPlistLocation_;
    QString prefScriptsPlistLocation_;
    QString prefUserPrefPlistLocation_;
    QStringList prefFileAudioSuffixList_;
    QStringList prefFileImageSuffixList_;
};
