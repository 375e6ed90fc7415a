#pragma once

#include "pool/poolfunction.h"

#include <optional>

// Organizer function 2: rewrites the case of the chosen text tags of each track, as every word
// capitalised, sentence style, all capitals or all small letters. The capitalising forms walk
// the text one character at a time and capitalise after a delimiter from an editable list.
// Settings live on the main thread; doMyFunctionMain reads them on the engine's worker, which
// only runs while the settings are not being edited.
class Function0002 : public PoolFunction
{
    Q_OBJECT
    Q_PROPERTY(bool yourName MEMBER yourName_ NOTIFY tagsChanged)
    Q_PROPERTY(bool yourArtist MEMBER yourArtist_ NOTIFY tagsChanged)
    Q_PROPERTY(bool yourAlbum MEMBER yourAlbum_ NOTIFY tagsChanged)
    Q_PROPERTY(bool yourAlbumArtist MEMBER yourAlbumArtist_ NOTIFY tagsChanged)
    Q_PROPERTY(bool yourComposer MEMBER yourComposer_ NOTIFY tagsChanged)
    Q_PROPERTY(bool yourShow MEMBER yourShow_ NOTIFY tagsChanged)
    Q_PROPERTY(bool yourNameSort MEMBER yourNameSort_ NOTIFY tagsChanged)
    Q_PROPERTY(bool yourArtistSort MEMBER yourArtistSort_ NOTIFY tagsChanged)
    Q_PROPERTY(bool yourAlbumSort MEMBER yourAlbumSort_ NOTIFY tagsChanged)
    Q_PROPERTY(bool yourAlbumArtistSort MEMBER yourAlbumArtistSort_ NOTIFY tagsChanged)
    Q_PROPERTY(bool yourComposerSort MEMBER yourComposerSort_ NOTIFY tagsChanged)
    Q_PROPERTY(bool yourShowSort MEMBER yourShowSort_ NOTIFY tagsChanged)
    Q_PROPERTY(bool yourGenre MEMBER yourGenre_ NOTIFY tagsChanged)
    Q_PROPERTY(bool yourComment MEMBER yourComment_ NOTIFY tagsChanged)
    Q_PROPERTY(bool yourGrouping MEMBER yourGrouping_ NOTIFY tagsChanged)
    Q_PROPERTY(bool yourLyrics MEMBER yourLyrics_ NOTIFY tagsChanged)
    Q_PROPERTY(bool yourEpisodenID MEMBER yourEpisodenID_ NOTIFY tagsChanged)
    Q_PROPERTY(qint64 yourCaseForm MEMBER yourCaseForm_ NOTIFY yourCaseFormChanged)
    Q_PROPERTY(QString yourUpperItems MEMBER yourUpperItems_ NOTIFY settingsChanged)
    Q_PROPERTY(bool yourUpperItemsDo MEMBER yourUpperItemsDo_ NOTIFY settingsChanged)
    Q_PROPERTY(bool yourRemoveSpaces MEMBER yourRemoveSpaces_ NOTIFY settingsChanged)
    Q_PROPERTY(bool enableUpperItems READ enableUpperItems NOTIFY yourCaseFormChanged)

public:
    // The case forms by the number yourCaseForm holds.
    enum class CaseForm : qint64 {
        Capitalised = 1, // every word capitalised
        Sentence = 2,    // sentence style
        Upper = 3,
        Lower = 4,
    };

    // The delimiters a new function starts with.
    static QString defaultUpperItems();

    explicit Function0002(FunctionPoolController *pool, QObject *parent = nullptr);

    PoolFunctionAnswer doMyFunctionCheck() override;
    PoolFunctionAnswer doMyFunctionPre() override;
    void doMyFunctionMain(const ITunesTrack &track) override;
    void doMyFunctionEnd() override;
    PanelDescription panelDescription() const override;

    // The setting as a form (a number outside the forms prepares none).
    CaseForm caseForm() const { return CaseForm(yourCaseForm_); }
    // The capitalising forms use the delimiter list.
    bool enableUpperItems() const { return caseForm() == CaseForm::Capitalised || caseForm() == CaseForm::Sentence; }

    // The new value of a tag in the form prepared for the run, or none when it would stay as
    // it is (the engine is told of a change otherwise).
    std::optional<QString> runChangeCase(const QString &text);
    // The text in one form; runChangeToCap uses the delimiters of the run under way.
    QString runChangeToCap(const QString &text) const;
    static QString runChangeToUpper(const QString &text) { return text.toUpper(); }
    static QString runChangeToLower(const QString &text) { return text.toLower(); }

    // Segment 0 selects every tag, any other clears them all.
    Q_INVOKABLE void selectAllSearchTags(qint64 selectedSegment = 0);
    Q_INVOKABLE void deselectAllSearchTags() { selectAllSearchTags(1); }

signals:
    void tagsChanged();
    void yourCaseFormChanged();
    void settingsChanged();

private:
    using CaseOperation = QString (Function0002::*)(const QString &) const;
    QString upperOf(const QString &text) const { return runChangeToUpper(text); }
    QString lowerOf(const QString &text) const { return runChangeToLower(text); }
    struct CaseTag;
    static const QList<CaseTag> &caseTags();

    CaseOperation yourSel_ = nullptr; // kept from run to run, as an unknown form leaves it
    QString yourUpperItemsCurrentRun_;

    bool yourName_ = true;
    bool yourArtist_ = true;
    bool yourAlbum_ = true;
    bool yourAlbumArtist_ = true;
    bool yourComposer_ = false;
    bool yourShow_ = false;
    bool yourNameSort_ = false;
    bool yourArtistSort_ = false;
    bool yourAlbumSort_ = false;
    bool yourAlbumArtistSort_ = false;
    bool yourComposerSort_ = false;
    bool yourShowSort_ = false;
    bool yourGenre_ = false;
    bool yourComment_ = false;
    bool yourGrouping_ = false;
    bool yourLyrics_ = false;
    bool yourEpisodenID_ = false;
    qint64 yourCaseForm_ = qint64(CaseForm::Capitalised);
    QString yourUpperItems_ = defaultUpperItems();
    bool yourUpperItemsDo_ = true;
    bool yourRemoveSpaces_ = true;
};
