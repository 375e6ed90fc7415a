#pragma once

#include "functions/function0001searchsets.h"
#include "pool/poolfunction.h"

#include <QStringList>

#include <bitset>

// Organizer function 1, search and replace: applies the panel's search set, then (if asked)
// the saved ones, to the chosen text tags of each track. Some search modes work on the whole
// text, the word modes on its words, split by the organizer's own word characters.
// Owns the model of the saved sets that the organizer window's sheet edits.
class Function0001 : public PoolFunction
{
    Q_OBJECT
    Q_PROPERTY(QString yourSearchText MEMBER yourSearchText NOTIFY settingsChanged)
    Q_PROPERTY(QString yourReplaceText MEMBER yourReplaceText NOTIFY settingsChanged)
    Q_PROPERTY(bool yourIgnoreCase MEMBER yourIgnoreCase NOTIFY settingsChanged)
    Q_PROPERTY(qint64 yourSearchMode READ yourSearchMode WRITE setYourSearchMode NOTIFY yourSearchModeChanged)
    Q_PROPERTY(bool enableCase READ enableCase NOTIFY yourSearchModeChanged)
    Q_PROPERTY(bool yourName MEMBER yourName NOTIFY settingsChanged)
    Q_PROPERTY(bool yourArtist MEMBER yourArtist NOTIFY settingsChanged)
    Q_PROPERTY(bool yourAlbum MEMBER yourAlbum NOTIFY settingsChanged)
    Q_PROPERTY(bool yourAlbumArtist MEMBER yourAlbumArtist NOTIFY settingsChanged)
    Q_PROPERTY(bool yourComposer MEMBER yourComposer NOTIFY settingsChanged)
    Q_PROPERTY(bool yourShow MEMBER yourShow NOTIFY settingsChanged)
    Q_PROPERTY(bool yourNameSort MEMBER yourNameSort NOTIFY settingsChanged)
    Q_PROPERTY(bool yourArtistSort MEMBER yourArtistSort NOTIFY settingsChanged)
    Q_PROPERTY(bool yourAlbumSort MEMBER yourAlbumSort NOTIFY settingsChanged)
    Q_PROPERTY(bool yourAlbumArtistSort MEMBER yourAlbumArtistSort NOTIFY settingsChanged)
    Q_PROPERTY(bool yourComposerSort MEMBER yourComposerSort NOTIFY settingsChanged)
    Q_PROPERTY(bool yourShowSort MEMBER yourShowSort NOTIFY settingsChanged)
    Q_PROPERTY(bool yourGenre MEMBER yourGenre NOTIFY settingsChanged)
    Q_PROPERTY(bool yourComment MEMBER yourComment NOTIFY settingsChanged)
    Q_PROPERTY(bool yourGrouping MEMBER yourGrouping NOTIFY settingsChanged)
    Q_PROPERTY(bool yourLyrics MEMBER yourLyrics NOTIFY settingsChanged)
    Q_PROPERTY(bool yourEpisodenID MEMBER yourEpisodenID NOTIFY settingsChanged)
    Q_PROPERTY(bool yourSearchSetSearch MEMBER yourSearchSetSearch NOTIFY settingsChanged)
    Q_PROPERTY(bool yourRemoveSpaces MEMBER yourRemoveSpaces NOTIFY settingsChanged)

public:
    explicit Function0001(FunctionPoolController *pool, QObject *parent = nullptr);

    PoolFunctionAnswer doMyFunctionCheck() override;
    PoolFunctionAnswer doMyFunctionPre() override;
    void doMyFunctionMain(const ITunesTrack &track) override;
    void doMyFunctionEnd() override;
    PanelDescription panelDescription() const override;

    qint64 yourSearchMode() const { return yourSearchMode_; }
    void setYourSearchMode(qint64 mode);
    bool enableCase() const { return searchModeFromNumber(yourSearchMode_) != SearchMode::RegularExpression; }

    // The saved sets and the sets of the run under way (the panel's set first).
    SearchSetsModel *searchSetsModel() const { return searchSetsModel_; }
    const QList<SearchSet> &yourSearchSets() const { return searchSetsModel_->searchSets(); }
    const QList<SearchSet> &yourSearchSetsCurrentRun() const { return yourSearchSetsCurrentRun_; }
    // How often the word list was built since the run began.
    qint64 wordListBuildCount() const { return wordListBuildCount_; }

    // The new text of a tag after all sets of the run, or a null text when nothing changed.
    QString runSearchReplace(const QString &tagText);
    // Words and the single characters between them, in order: joined they give the text back.
    void runCreateWordList(const QString &text, QStringList &wordList);
    // Rebuilds `text` from the word list with each entry searched; true when one was replaced.
    // caseMode is handed along by the caller and not looked at.
    bool runScanWordList(QString &text, const QStringList &wordList, const QString &search,
                         const QString &replace, qint64 caseSum, SearchMode searchMode, bool caseMode);

    // The panel's and the sheet's actions. A segment of 0 means the first segment ("all", "add").
    Q_INVOKABLE void selectAllSearchTags(int selectedSegment);
    Q_INVOKABLE void selectAllTags() { selectAllSearchTags(0); }
    Q_INVOKABLE void deselectAllTags() { selectAllSearchTags(1); }
    // Asks the organizer window for the sheet of the saved sets; the sheet saves on close.
    Q_INVOKABLE void openSeachSetsPanel();
    Q_INVOKABLE void closeSeachSetsPanel();
    void addOrRemoveSearchSet(int selectedSegment, const QList<int> &selectedRows);
    // Answers the row of the new set.
    int addNewSearchSet();
    void removeSearchSet(const QList<int> &selectedRows);
    Q_INVOKABLE void reloadSearchSets() { readSearchSets(); }
    void readSearchSets();
    bool saveSearchSets() const;

    // The settings as members, so that the panel and orvane-cli reach them by name.
    QString yourSearchText = QStringLiteral("ft.");
    QString yourReplaceText = QStringLiteral("feat.");
    bool yourIgnoreCase = true;
    bool yourName = true;
    bool yourArtist = true;
    bool yourAlbum = true;
    bool yourAlbumArtist = true;
    bool yourComposer = false;
    bool yourShow = false;
    bool yourNameSort = false;
    bool yourArtistSort = false;
    bool yourAlbumSort = false;
    bool yourAlbumArtistSort = false;
    bool yourComposerSort = false;
    bool yourShowSort = false;
    bool yourGenre = false;
    bool yourComment = false;
    bool yourGrouping = false;
    bool yourLyrics = false;
    bool yourEpisodenID = false;
    bool yourSearchSetSearch = true;
    bool yourRemoveSpaces = true;

signals:
    void settingsChanged();
    void yourSearchModeChanged();
    // The organizer window shows the sheet over searchSetsModel() and hides it again.
    void searchSetsPanelOpened();
    void searchSetsPanelClosed();

private:
    bool isWordCharacter(QChar character) const { return wordCharacters_.test(character.toCaseFolded().unicode()); }
    void setWordCharacters(const QString &wordText);

    qint64 yourSearchMode_ = 1;
    SearchSetsModel *searchSetsModel_;
    QList<SearchSet> yourSearchSetsCurrentRun_;
    std::bitset<0x10000> wordCharacters_; // by case-folded UTF-16 unit
    qint64 wordListBuildCount_ = 0;
};
