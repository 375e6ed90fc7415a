#include "functions/function0002.h"

#include "additions/textadditions.h"
#include "additions/textsearch.h"
#include "pool/functionpoolcontroller.h"

// One tag the function may change: its switch and the track's accessors.
struct Function0002::CaseTag
{
    bool Function0002::*flag;
    const char *property;
    QString label;
    QString (ITunesTrack::*read)() const;
    void (ITunesTrack::*write)(const QString &) const;
};

const QList<Function0002::CaseTag> &Function0002::caseTags()
{
    // The order in which a track's tags are read and written.
    static const QList<CaseTag> tags{
        {&Function0002::yourName_, "yourName", QStringLiteral("Name"), &ITunesTrack::name, &ITunesTrack::setName},
        {&Function0002::yourArtist_, "yourArtist", QStringLiteral("Artist"), &ITunesTrack::artist, &ITunesTrack::setArtist},
        {&Function0002::yourAlbum_, "yourAlbum", QStringLiteral("Album"), &ITunesTrack::album, &ITunesTrack::setAlbum},
        {&Function0002::yourAlbumArtist_, "yourAlbumArtist", QStringLiteral("Album Artist"), &ITunesTrack::albumArtist,
         &ITunesTrack::setAlbumArtist},
        {&Function0002::yourComposer_, "yourComposer", QStringLiteral("Composer"), &ITunesTrack::composer, &ITunesTrack::setComposer},
        {&Function0002::yourShow_, "yourShow", QStringLiteral("Show"), &ITunesTrack::show, &ITunesTrack::setShow},
        {&Function0002::yourNameSort_, "yourNameSort", QStringLiteral("Sort Name"), &ITunesTrack::sortName, &ITunesTrack::setSortName},
        {&Function0002::yourArtistSort_, "yourArtistSort", QStringLiteral("Sort Artist"), &ITunesTrack::sortArtist,
         &ITunesTrack::setSortArtist},
        {&Function0002::yourAlbumSort_, "yourAlbumSort", QStringLiteral("Sort Album"), &ITunesTrack::sortAlbum, &ITunesTrack::setSortAlbum},
        {&Function0002::yourAlbumArtistSort_, "yourAlbumArtistSort", QStringLiteral("Sort Album Artist"), &ITunesTrack::sortAlbumArtist,
         &ITunesTrack::setSortAlbumArtist},
        {&Function0002::yourComposerSort_, "yourComposerSort", QStringLiteral("Sort Composer"), &ITunesTrack::sortComposer,
         &ITunesTrack::setSortComposer},
        {&Function0002::yourShowSort_, "yourShowSort", QStringLiteral("Sort Show"), &ITunesTrack::sortShow, &ITunesTrack::setSortShow},
        {&Function0002::yourGenre_, "yourGenre", QStringLiteral("Genre"), &ITunesTrack::genre, &ITunesTrack::setGenre},
        {&Function0002::yourComment_, "yourComment", QStringLiteral("Comment"), &ITunesTrack::comment, &ITunesTrack::setComment},
        {&Function0002::yourGrouping_, "yourGrouping", QStringLiteral("Grouping"), &ITunesTrack::grouping, &ITunesTrack::setGrouping},
        {&Function0002::yourLyrics_, "yourLyrics", QStringLiteral("Lyrics"), &ITunesTrack::lyrics, &ITunesTrack::setLyrics},
        {&Function0002::yourEpisodenID_, "yourEpisodenID", QStringLiteral("Episode ID"), &ITunesTrack::episodeID,
         &ITunesTrack::setEpisodeID},
    };
    return tags;
}

QString Function0002::defaultUpperItems()
{
    return QStringLiteral(u")(.:;-_!\"&/\\=?*#\u2022\u00BB\u00AB][");
}

Function0002::Function0002(FunctionPoolController *pool, QObject *parent)
    : PoolFunction(pool, parent)
{
}

PoolFunctionAnswer Function0002::doMyFunctionCheck()
{
    for (const CaseTag &tag : caseTags())
        if (this->*tag.flag)
            return PoolStep::GoOn;
    return PoolAlertCode::IncompleteSettings;
}

PoolFunctionAnswer Function0002::doMyFunctionPre()
{
    yourUpperItemsCurrentRun_ = QString();
    if (yourUpperItemsDo_)
        yourUpperItemsCurrentRun_ += yourUpperItems_;
    yourUpperItemsCurrentRun_ += QStringLiteral("\r\n");
    switch (caseForm()) {
    case CaseForm::Capitalised:
        yourUpperItemsCurrentRun_ += QLatin1Char(' ');
        yourSel_ = &Function0002::runChangeToCap;
        break;
    case CaseForm::Sentence:
        // Sentence style: a space never starts a capital, even one the user listed.
        yourUpperItemsCurrentRun_.remove(QLatin1Char(' '));
        yourSel_ = &Function0002::runChangeToCap;
        break;
    case CaseForm::Upper: yourSel_ = &Function0002::upperOf; break;
    case CaseForm::Lower: yourSel_ = &Function0002::lowerOf; break;
    default: break;
    }
    return PoolStep::GoOn;
}

void Function0002::doMyFunctionMain(const ITunesTrack &track)
{
    for (const CaseTag &tag : caseTags()) {
        if (!(this->*tag.flag))
            continue;
        if (const auto changed = runChangeCase((track.*tag.read)()))
            (track.*tag.write)(*changed);
    }
}

void Function0002::doMyFunctionEnd()
{
    yourUpperItemsCurrentRun_ = QString();
}

std::optional<QString> Function0002::runChangeCase(const QString &text)
{
    QString result = yourSel_ ? (this->*yourSel_)(text) : text;
    if (yourRemoveSpaces_)
        removeUnnecessarySpaces(result);
    if (result == text)
        return std::nullopt;
    myFunctionPool()->setYourLogNo(TrackLogState::Changed);
    return result;
}

QString Function0002::runChangeToCap(const QString &text) const
{
    QString result;
    result.reserve(text.size());
    bool capitalNext = true;
    for (qsizetype i = 0; i < text.size();) {
        // A surrogate pair is mapped as the one character it encodes; a lone half as itself.
        const qsizetype length = text.at(i).isHighSurrogate() && i + 1 < text.size()
                                         && text.at(i + 1).isLowSurrogate() ? 2 : 1;
        const QString character = text.mid(i, length);
        result += capitalNext ? character.toUpper() : character.toLower();
        capitalNext = containsString(yourUpperItemsCurrentRun_, character, SearchOption::CaseInsensitive);
        i += length;
    }
    return result;
}

void Function0002::selectAllSearchTags(qint64 selectedSegment)
{
    for (const CaseTag &tag : caseTags())
        this->*tag.flag = selectedSegment == 0;
    emit tagsChanged();
}

PanelDescription Function0002::panelDescription() const
{
    PanelDescription panel;
    panel.title = QStringLiteral("Change Case");
    panel.summary = QStringLiteral("Rewrites the chosen tags with every word capitalised, as sentences, in capitals "
                                   "or in small letters.");
    using Kind = PanelField::Kind;
    for (const CaseTag &tag : caseTags())
        panel.fields.append({.kind = Kind::Check, .property = QLatin1String(tag.property), .label = tag.label,
                             .group = QStringLiteral("Tags")});
    panel.fields.append({.kind = Kind::Button, .label = QStringLiteral("Select All"),
                         .action = QStringLiteral("selectAllSearchTags"), .group = QStringLiteral("Tags")});
    panel.fields.append({.kind = Kind::Button, .label = QStringLiteral("Select None"),
                         .action = QStringLiteral("deselectAllSearchTags"), .group = QStringLiteral("Tags")});
    panel.fields.append({.kind = Kind::Choice, .property = QStringLiteral("yourCaseForm"), .label = QStringLiteral("Form"),
                         .choiceLabels = {QStringLiteral("Every Word Capitalised"), QStringLiteral("Sentence style"),
                                          QStringLiteral("ALL CAPITALS"), QStringLiteral("all small letters")},
                         .choiceValues = {qint64(CaseForm::Capitalised), qint64(CaseForm::Sentence),
                                          qint64(CaseForm::Upper), qint64(CaseForm::Lower)},
                         .group = QStringLiteral("Case")});
    panel.fields.append({.kind = Kind::Check, .property = QStringLiteral("yourUpperItemsDo"),
                         .label = QStringLiteral("Also capitalise after these characters:"),
                         .enabledBy = QStringLiteral("enableUpperItems"), .group = QStringLiteral("Case")});
    panel.fields.append({.kind = Kind::Text, .property = QStringLiteral("yourUpperItems"),
                         .enabledBy = QStringLiteral("enableUpperItems"), .group = QStringLiteral("Case")});
    panel.fields.append({.kind = Kind::Check, .property = QStringLiteral("yourRemoveSpaces"),
                         .label = QStringLiteral("Remove unnecessary spaces"), .group = QStringLiteral("Case")});
    return panel;
}
