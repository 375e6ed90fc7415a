#include "functions/function0001.h"

#include "additions/ovapplication.h"
#include "additions/textadditions.h"
#include "additions/textsearch.h"
#include "pool/functionpoolcontroller.h"
#include "pool/functionpoolpreferences.h"
#include "regex/regexreplace.h"

#include <array>

namespace {

// The tags a run may touch, in the order they are worked on, with the setting that chooses each.
struct SearchTag
{
    bool Function0001::*chosen;
    const char *property;
    const char *label;
    QString (ITunesTrack::*read)() const;
    void (ITunesTrack::*write)(const QString &) const;
};

const std::array<SearchTag, 17> &searchTags()
{
    static const std::array<SearchTag, 17> tags = {{
        {&Function0001::yourName, "yourName", "Name", &ITunesTrack::name, &ITunesTrack::setName},
        {&Function0001::yourArtist, "yourArtist", "Artist", &ITunesTrack::artist, &ITunesTrack::setArtist},
        {&Function0001::yourAlbum, "yourAlbum", "Album", &ITunesTrack::album, &ITunesTrack::setAlbum},
        {&Function0001::yourAlbumArtist, "yourAlbumArtist", "Album Artist", &ITunesTrack::albumArtist, &ITunesTrack::setAlbumArtist},
        {&Function0001::yourComposer, "yourComposer", "Composer", &ITunesTrack::composer, &ITunesTrack::setComposer},
        {&Function0001::yourShow, "yourShow", "Show", &ITunesTrack::show, &ITunesTrack::setShow},
        {&Function0001::yourNameSort, "yourNameSort", "Sort Name", &ITunesTrack::sortName, &ITunesTrack::setSortName},
        {&Function0001::yourArtistSort, "yourArtistSort", "Sort Artist", &ITunesTrack::sortArtist, &ITunesTrack::setSortArtist},
        {&Function0001::yourAlbumSort, "yourAlbumSort", "Sort Album", &ITunesTrack::sortAlbum, &ITunesTrack::setSortAlbum},
        {&Function0001::yourAlbumArtistSort, "yourAlbumArtistSort", "Sort Album Artist", &ITunesTrack::sortAlbumArtist,
         &ITunesTrack::setSortAlbumArtist},
        {&Function0001::yourComposerSort, "yourComposerSort", "Sort Composer", &ITunesTrack::sortComposer, &ITunesTrack::setSortComposer},
        {&Function0001::yourShowSort, "yourShowSort", "Sort Show", &ITunesTrack::sortShow, &ITunesTrack::setSortShow},
        {&Function0001::yourGenre, "yourGenre", "Genre", &ITunesTrack::genre, &ITunesTrack::setGenre},
        {&Function0001::yourComment, "yourComment", "Comment", &ITunesTrack::comment, &ITunesTrack::setComment},
        {&Function0001::yourGrouping, "yourGrouping", "Grouping", &ITunesTrack::grouping, &ITunesTrack::setGrouping},
        {&Function0001::yourLyrics, "yourLyrics", "Lyrics", &ITunesTrack::lyrics, &ITunesTrack::setLyrics},
        {&Function0001::yourEpisodenID, "yourEpisodenID", "Episode ID", &ITunesTrack::episodeID, &ITunesTrack::setEpisodeID},
    }};
    return tags;
}

// The option sum of a set: its case bit, plus anchoring at the start (of a word or the text)
// or at the end.
qint64 caseSumOf(const SearchSet &set)
{
    qint64 sum = set.caseMode != 0 ? 1 : 0;
    if (set.mode == SearchMode::WordStart || set.mode == SearchMode::TextStart)
        sum += 8;
    else if (set.mode == SearchMode::WordEnd || set.mode == SearchMode::TextEnd)
        sum += 12;
    return sum;
}

} // namespace

Function0001::Function0001(FunctionPoolController *pool, QObject *parent)
    : PoolFunction(pool, parent),
      searchSetsModel_(new SearchSetsModel(
          pool ? pool->myPreferences()->prefSearchSetsPlistLocation()
               : OVApplication::ov_applicationOrganizerURLForPlistSearchAndReplaceSets(),
          pool ? pool->myPreferences()->prefOrvaneDraggedType() : QString(), this))
{
    if (pool)
        setWordCharacters(pool->myPreferences()->prefWordText());
    readSearchSets();
}

void Function0001::setYourSearchMode(qint64 mode)
{
    if (mode == yourSearchMode_)
        return;
    yourSearchMode_ = mode;
    emit yourSearchModeChanged();
}

PoolFunctionAnswer Function0001::doMyFunctionCheck()
{
    if (yourSearchText.isEmpty() && yourReplaceText.isEmpty()
        && (!yourSearchSetSearch || yourSearchSets().isEmpty()))
        return PoolAlertCode::IncompleteSettings;
    for (const SearchTag &tag : searchTags())
        if (this->*tag.chosen)
            return PoolStep::GoOn;
    return PoolAlertCode::IncompleteSettings;
}

PoolFunctionAnswer Function0001::doMyFunctionPre()
{
    const SearchSet panelSet{yourSearchText, yourReplaceText, yourIgnoreCase ? 1 : 0,
                             searchModeFromNumber(yourSearchMode_)};
    yourSearchSetsCurrentRun_ = yourSearchSetSearch ? yourSearchSets() : QList<SearchSet>();
    yourSearchSetsCurrentRun_.prepend(panelSet);
    if (myFunctionPool())
        setWordCharacters(myFunctionPool()->myPreferences()->prefWordText());
    wordListBuildCount_ = 0;
    return PoolStep::GoOn;
}

void Function0001::doMyFunctionMain(const ITunesTrack &track)
{
    for (const SearchTag &tag : searchTags()) {
        if (!(this->*tag.chosen))
            continue;
        const QString changed = runSearchReplace((track.*tag.read)());
        if (!changed.isNull())
            (track.*tag.write)(changed);
    }
}

void Function0001::doMyFunctionEnd()
{
    yourSearchSetsCurrentRun_.clear();
}

QString Function0001::runSearchReplace(const QString &tagText)
{
    QString text = tagText;
    QStringList wordList;
    bool rebuildWordList = true;
    for (const SearchSet &set : std::as_const(yourSearchSetsCurrentRun_)) {
        if (text.isEmpty()) {
            // The one way a set fills an empty tag.
            if (set.search.isEmpty()) {
                text = set.replace;
                rebuildWordList = true;
            }
            continue;
        }
        const qint64 caseSum = caseSumOf(set);
        switch (set.mode) {
        case SearchMode::Everywhere:
        case SearchMode::TextStart:
        case SearchMode::TextEnd:
            if (replaceOccurrencesOfString(text, set.search, set.replace, searchOptionsFromValue(caseSum)) > 0)
                rebuildWordList = true;
            break;
        case SearchMode::WholeText:
            if (compareText(text, set.search, searchOptionsFromValue(caseSum)) == ComparisonResult::OrderedSame) {
                text = set.replace;
                rebuildWordList = true;
            }
            break;
        case SearchMode::RegularExpression:
            if (replaceOccurrencesOfRegex(text, set.search, set.replace) > 0)
                rebuildWordList = true;
            break;
        case SearchMode::WordStart:
        case SearchMode::WordEnd:
        case SearchMode::WholeWord:
        case SearchMode::FirstInWord:
            if (rebuildWordList)
                runCreateWordList(text, wordList);
            rebuildWordList = runScanWordList(text, wordList, set.search, set.replace, caseSum, set.mode,
                                              set.caseMode != 0);
            break;
        default: // a number outside the modes
            if (replaceOccurrencesOfString(text, set.search, set.replace) > 0)
                rebuildWordList = true;
            break;
        }
    }
    if (yourRemoveSpaces)
        removeUnnecessarySpaces(text);
    if (text == tagText)
        return {};
    if (myFunctionPool())
        myFunctionPool()->setYourLogNo(TrackLogState::Changed);
    return text.isNull() ? QStringLiteral("") : text;
}

void Function0001::runCreateWordList(const QString &text, QStringList &wordList)
{
    ++wordListBuildCount_;
    wordList.clear();
    QString word;
    for (const QChar character : text) {
        if (isWordCharacter(character)) {
            word.append(character);
            continue;
        }
        wordList.append(word);
        wordList.append(QString(character));
        word.clear();
    }
    if (!word.isEmpty())
        wordList.append(word);
}

bool Function0001::runScanWordList(QString &text, const QStringList &wordList, const QString &search,
                                   const QString &replace, qint64 caseSum, SearchMode searchMode, bool)
{
    text.clear();
    bool replaced = false;
    const SearchOptions options = searchOptionsFromValue(caseSum);
    for (const QString &entry : wordList) {
        const TextRange range = rangeOfString(entry, search, options);
        if (!range.found()) {
            text.append(entry);
        } else if (range.length >= entry.size()) {
            text.append(replace);
            replaced = true;
        } else if (searchMode == SearchMode::WholeWord) {
            text.append(entry);
        } else {
            text.append(QStringView(entry).left(range.location));
            text.append(replace);
            text.append(QStringView(entry).mid(range.location + range.length));
            replaced = true;
        }
    }
    return replaced;
}

void Function0001::setWordCharacters(const QString &wordText)
{
    wordCharacters_.reset();
    for (const QChar character : wordText)
        wordCharacters_.set(character.toCaseFolded().unicode());
}

void Function0001::selectAllSearchTags(int selectedSegment)
{
    for (const SearchTag &tag : searchTags())
        this->*tag.chosen = selectedSegment == 0;
    emit settingsChanged();
}

void Function0001::openSeachSetsPanel()
{
    emit searchSetsPanelOpened();
}

void Function0001::closeSeachSetsPanel()
{
    saveSearchSets();
    emit searchSetsPanelClosed();
}

void Function0001::addOrRemoveSearchSet(int selectedSegment, const QList<int> &selectedRows)
{
    if (selectedSegment == 0)
        addNewSearchSet();
    else
        removeSearchSet(selectedRows);
}

int Function0001::addNewSearchSet()
{
    const FunctionPoolPreferences *preferences = myFunctionPool() ? myFunctionPool()->myPreferences() : nullptr;
    if (!preferences)
        return -1;
    return searchSetsModel_->addNewSearchSet(preferences->prefSearchSetCaseStateDefault(),
                                             preferences->prefTableDefaultText(),
                                             searchModeFromNumber(preferences->prefSearchSetSearchOptopnDefault()));
}

void Function0001::removeSearchSet(const QList<int> &selectedRows)
{
    searchSetsModel_->removeSearchSets(selectedRows);
}

void Function0001::readSearchSets()
{
    searchSetsModel_->readSearchSets();
}

bool Function0001::saveSearchSets() const
{
    return searchSetsModel_->saveSearchSets();
}

PanelDescription Function0001::panelDescription() const
{
    PanelDescription panel;
    panel.title = QStringLiteral("Search and Replace");
    panel.summary = QStringLiteral("Replaces text in the chosen tags: first the search below, then the saved "
                                   "search sets in their order.");
    const QString searchGroup = QStringLiteral("Search");
    auto field = [](PanelField::Kind kind, const QString &property, const QString &label, const QString &group) {
        PanelField f;
        f.kind = kind;
        f.property = property;
        f.label = label;
        f.group = group;
        return f;
    };
    panel.fields.append(field(PanelField::Kind::Text, "yourSearchText", "Search for:", searchGroup));
    panel.fields.append(field(PanelField::Kind::Text, "yourReplaceText", "Replace with:", searchGroup));
    PanelField mode = field(PanelField::Kind::Choice, "yourSearchMode", "Match:", searchGroup);
    mode.choiceLabels = {"Everywhere in the text", "At the start of a word", "At the end of a word",
                         "A whole word", "At the start of the text", "At the end of the text",
                         "The whole text", "First time in each word", "Regular expression"};
    for (qint64 number = qint64(SearchMode::Everywhere); number <= qint64(SearchMode::RegularExpression); ++number)
        mode.choiceValues.append(number);
    panel.fields.append(mode);
    PanelField ignoreCase = field(PanelField::Kind::Check, "yourIgnoreCase", "Ignore case", searchGroup);
    ignoreCase.enabledBy = QStringLiteral("enableCase");
    panel.fields.append(ignoreCase);

    const QString tagsGroup = QStringLiteral("Tags");
    for (const SearchTag &tag : searchTags())
        panel.fields.append(field(PanelField::Kind::Check, QString::fromLatin1(tag.property),
                                  QString::fromLatin1(tag.label), tagsGroup));
    PanelField all = field(PanelField::Kind::Button, {}, "Select All", tagsGroup);
    all.action = QStringLiteral("selectAllTags");
    panel.fields.append(all);
    PanelField none = field(PanelField::Kind::Button, {}, "Select None", tagsGroup);
    none.action = QStringLiteral("deselectAllTags");
    panel.fields.append(none);

    const QString optionsGroup = QStringLiteral("Options");
    panel.fields.append(field(PanelField::Kind::Check, "yourSearchSetSearch", "Then apply the saved search sets",
                              optionsGroup));
    PanelField edit = field(PanelField::Kind::Button, {}, "Edit Search Sets...", optionsGroup);
    edit.action = QStringLiteral("openSeachSetsPanel");
    panel.fields.append(edit);
    panel.fields.append(field(PanelField::Kind::Check, "yourRemoveSpaces", "Remove unnecessary spaces",
                              optionsGroup));
    return panel;
}
