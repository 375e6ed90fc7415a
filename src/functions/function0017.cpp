#include "functions/function0017.h"

#include "additions/fileadditions.h"
#include "additions/textadditions.h"
#include "pool/functionpoolcontroller.h"
#include "pool/tagtable.h"

#include <QFileInfo>

namespace {

constexpr qsizetype kLongestTrackInfo = 255;
constexpr qsizetype kShortenedTrackInfo = 252;

} // namespace

// Tag numbers are those of the tag table.
const QList<Function0017::TagChoice> &Function0017::deleteTagChoices()
{
    static const QList<TagChoice> choices = {
        {&Function0017::yourDeleteTagName, 1, "yourDeleteTagName"},
        {&Function0017::yourDeleteTagArtist, 2, "yourDeleteTagArtist"},
        {&Function0017::yourDeleteTagAlbum, 3, "yourDeleteTagAlbum"},
        {&Function0017::yourDeleteTagAlbumArtist, 4, "yourDeleteTagAlbumArtist"},
        {&Function0017::yourDeleteTagComposer, 5, "yourDeleteTagComposer"},
        {&Function0017::yourDeleteTagShow, 6, "yourDeleteTagShow"},
        {&Function0017::yourDeleteTagNameSort, 21, "yourDeleteTagNameSort"},
        {&Function0017::yourDeleteTagArtistSort, 22, "yourDeleteTagArtistSort"},
        {&Function0017::yourDeleteTagAlbumSort, 23, "yourDeleteTagAlbumSort"},
        {&Function0017::yourDeleteTagAlbumArtistSort, 24, "yourDeleteTagAlbumArtistSort"},
        {&Function0017::yourDeleteTagComposerSort, 25, "yourDeleteTagComposerSort"},
        {&Function0017::yourDeleteTagShowSort, 26, "yourDeleteTagShowSort"},
        {&Function0017::yourDeleteTagGenre, 11, "yourDeleteTagGenre"},
        {&Function0017::yourDeleteTagComment, 15, "yourDeleteTagComment"},
        {&Function0017::yourDeleteTagGrouping, 13, "yourDeleteTagGrouping"},
        {&Function0017::yourDeleteTagLyrics, 16, "yourDeleteTagLyrics"},
        {&Function0017::yourDeleteTagEpisodenID, 17, "yourDeleteTagEpisodenID"},
        {&Function0017::yourDeleteTagDiscNumber, 7, "yourDeleteTagDiscNumber"},
        {&Function0017::yourDeleteTagDiscCount, 27, "yourDeleteTagDiscCount"},
        {&Function0017::yourDeleteTagTrackNumber, 8, "yourDeleteTagTrackNumber"},
        {&Function0017::yourDeleteTagTrackCount, 28, "yourDeleteTagTrackCount"},
        {&Function0017::yourDeleteTagSeasonNumber, 9, "yourDeleteTagSeasonNumber"},
        {&Function0017::yourDeleteTagEpisodeNumber, 10, "yourDeleteTagEpisodeNumber"},
        {&Function0017::yourDeleteTagPlayedCount, 18, "yourDeleteTagPlayedCount"},
        {&Function0017::yourDeleteTagRating, 19, "yourDeleteTagRating"},
        {&Function0017::yourDeleteTagAlbumRating, 20, "yourDeleteTagAlbumRating"},
    };
    return choices;
}

const QList<Function0017::TagChoice> &Function0017::removeSpacesTagChoices()
{
    static const QList<TagChoice> choices = {
        {&Function0017::yourRemoveSpacesName, 1, "yourRemoveSpacesName"},
        {&Function0017::yourRemoveSpacesArtist, 2, "yourRemoveSpacesArtist"},
        {&Function0017::yourRemoveSpacesAlbum, 3, "yourRemoveSpacesAlbum"},
        {&Function0017::yourRemoveSpacesAlbumArtist, 4, "yourRemoveSpacesAlbumArtist"},
        {&Function0017::yourRemoveSpacesComposer, 5, "yourRemoveSpacesComposer"},
        {&Function0017::yourRemoveSpacesShow, 6, "yourRemoveSpacesShow"},
        {&Function0017::yourRemoveSpacesNameSort, 21, "yourRemoveSpacesNameSort"},
        {&Function0017::yourRemoveSpacesArtistSort, 22, "yourRemoveSpacesArtistSort"},
        {&Function0017::yourRemoveSpacesAlbumSort, 23, "yourRemoveSpacesAlbumSort"},
        {&Function0017::yourRemoveSpacesAlbumArtistSort, 24, "yourRemoveSpacesAlbumArtistSort"},
        {&Function0017::yourRemoveSpacesComposerSort, 25, "yourRemoveSpacesComposerSort"},
        {&Function0017::yourRemoveSpacesShowSort, 26, "yourRemoveSpacesShowSort"},
        {&Function0017::yourRemoveSpacesGenre, 11, "yourRemoveSpacesGenre"},
        {&Function0017::yourRemoveSpacesComment, 15, "yourRemoveSpacesComment"},
        {&Function0017::yourRemoveSpacesGrouping, 13, "yourRemoveSpacesGrouping"},
        {&Function0017::yourRemoveSpacesLyrics, 16, "yourRemoveSpacesLyrics"},
        {&Function0017::yourRemoveSpacesEpisodenID, 17, "yourRemoveSpacesEpisodenID"},
    };
    return choices;
}

void Function0017::setYourOptionChoosen(qint64 option)
{
    if (option == yourOptionChoosen_)
        return;
    yourOptionChoosen_ = option;
    emit optionChanged();
}

PoolFunctionAnswer Function0017::doMyFunctionCheck()
{
    yourSel_ = nullptr;
    switch (option()) {
    case Option::TrackInfoToTag:
        if (yourTrackInfoOption_ == kFileName)
            yourSel_ = &Function0017::runFileNameToTag;
        else if (yourTrackInfoOption_ == kFilePath)
            yourSel_ = &Function0017::runFilePathToTag;
        else if (yourTrackInfoOption_ == kFileSize)
            yourSel_ = &Function0017::runFileSizeToTag;
        else
            return PoolStep::Stop;
        yourPerformOn_ = yourPerformOnTrackInfo_;
        return PoolStep::GoOn;
    case Option::NumberTracks:
        if (yourNumberTracksStartValue_ < 1)
            return PoolAlertCode::ContradictorySettings;
        yourSel_ = &Function0017::runNumnberTracks;
        yourNumberTracksStartValueCurrentRun_ = yourNumberTracksStartValue_;
        return PoolStep::GoOn;
    case Option::DeleteTags:
        if (!anyChosen(deleteTagChoices()))
            return PoolAlertCode::IncompleteSettings;
        yourSel_ = &Function0017::runDeleteTag;
        return PoolStep::GoOn;
    case Option::RemoveSpaces:
        if (!anyChosen(removeSpacesTagChoices()))
            return PoolAlertCode::IncompleteSettings;
        yourSel_ = &Function0017::runRemoveSpaces;
        return PoolStep::GoOn;
    case Option::SetAlbumArtist:
        yourSel_ = &Function0017::runSetAlbumArtist;
        return PoolStep::GoOn;
    default:
        return PoolStep::Stop;
    }
}

void Function0017::doMyFunctionMain(const ITunesTrack &track)
{
    if (yourSel_)
        (this->*yourSel_)(track);
}

QString Function0017::shortenedTrackInfo(const QString &text)
{
    if (text.size() <= kLongestTrackInfo)
        return text;
    return text.left(kShortenedTrackInfo) + QStringLiteral("...");
}

void Function0017::pushTrackInfo(const ITunesTrack &track, const QString &text)
{
    pushTrackTag(track, yourPerformOn_, text);
    myFunctionPool()->setYourLogNo(TrackLogState::Changed);
}

void Function0017::runFileNameToTag(const ITunesTrack &track)
{
    const QString fileName = ov_deletingPathExtension(QFileInfo(track.as<ITunesFileTrack>().location()).fileName());
    pushTrackInfo(track, shortenedTrackInfo(fileName));
}

void Function0017::runFilePathToTag(const ITunesTrack &track)
{
    pushTrackInfo(track, shortenedTrackInfo(track.as<ITunesFileTrack>().location()));
}

void Function0017::runFileSizeToTag(const ITunesTrack &track)
{
    pushTrackInfo(track, QString::asprintf("%.2f MB", double(track.size()) / 1024 / 1024));
}

void Function0017::runNumnberTracks(const ITunesTrack &track)
{
    track.setTrackNumber(yourNumberTracksStartValueCurrentRun_++);
    myFunctionPool()->setYourLogNo(TrackLogState::Changed);
}

void Function0017::runDeleteTag(const ITunesTrack &track)
{
    // The tag table writes a number tag from the text's number, so the empty text empties both.
    for (const TagChoice &choice : deleteTagChoices())
        if (this->*choice.enabled)
            pushTrackTag(track, choice.tag, QString());
    myFunctionPool()->setYourLogNo(TrackLogState::Changed);
}

void Function0017::runRemoveSpaces(const ITunesTrack &track)
{
    for (const TagChoice &choice : removeSpacesTagChoices()) {
        if (!(this->*choice.enabled))
            continue;
        const QString tidied = runRemoveSpacesSub(pullTrackTag(track, choice.tag));
        if (!tidied.isNull())
            pushTrackTag(track, choice.tag, tidied);
    }
}

QString Function0017::runRemoveSpacesSub(const QString &text)
{
    QString tidied = text;
    removeUnnecessarySpaces(tidied);
    if (tidied == text)
        return {};
    myFunctionPool()->setYourLogNo(TrackLogState::Changed);
    return tidied;
}

void Function0017::runSetAlbumArtist(const ITunesTrack &track)
{
    // A compilation is named after its album on purpose.
    track.setAlbumArtist(track.compilation() ? track.album() : track.artist());
    myFunctionPool()->setYourLogNo(TrackLogState::Changed);
}

bool Function0017::anyChosen(const QList<TagChoice> &choices) const
{
    return std::any_of(choices.begin(), choices.end(),
                       [this](const TagChoice &choice) { return this->*choice.enabled; });
}

void Function0017::setAll(const QList<TagChoice> &choices, bool on)
{
    for (const TagChoice &choice : choices)
        this->*choice.enabled = on;
    emit tagChoicesChanged();
}

void Function0017::selectAllDeleteTags(qint64 selectedSegment)
{
    setAll(deleteTagChoices(), selectedSegment == 0);
}

void Function0017::selectAllRemoveSpacesTags(qint64 selectedSegment)
{
    setAll(removeSpacesTagChoices(), selectedSegment == 0);
}

namespace {

// "yourDeleteTagAlbumArtistSort" -> "Album Artist Sort".
QString choiceLabel(const char *property, const char *prefix)
{
    const QString name = QString::fromLatin1(property).mid(qsizetype(qstrlen(prefix)));
    if (name == QLatin1String("EpisodenID"))
        return QStringLiteral("Episode ID");
    QString label;
    for (const QChar c : name) {
        if (c.isUpper() && !label.isEmpty())
            label += QLatin1Char(' ');
        label += c;
    }
    return label;
}

void addChoiceFields(QList<PanelField> &fields, const QList<Function0017::TagChoice> &choices,
                     const char *prefix, const QString &group, const QString &enabledBy)
{
    for (const Function0017::TagChoice &choice : choices) {
        PanelField field{PanelField::Kind::Check, QString::fromLatin1(choice.property),
                         choiceLabel(choice.property, prefix)};
        field.enabledBy = enabledBy;
        field.group = group;
        fields.append(field);
    }
}

} // namespace

PanelDescription Function0017::panelDescription() const
{
    PanelDescription panel;
    panel.title = QStringLiteral("Tag tools");
    panel.summary = QStringLiteral("One small tool per run: a file fact into a tag, track numbers in run order, "
                                   "empty tags, tidy spaces, or the album artist from album or artist.");
    PanelField tool{PanelField::Kind::Choice, QStringLiteral("yourOptionChoosen"), QStringLiteral("Tool")};
    tool.choiceLabels = {QStringLiteral("File fact to tag"), QStringLiteral("Number the tracks"),
                         QStringLiteral("Empty tags"), QStringLiteral("Tidy spaces"),
                         QStringLiteral("Album artist from album (compilations) or artist")};
    tool.choiceValues = {qint64(Option::TrackInfoToTag), qint64(Option::NumberTracks), qint64(Option::DeleteTags),
                         qint64(Option::RemoveSpaces), qint64(Option::SetAlbumArtist)};

    const QString infoGroup = QStringLiteral("File fact to tag");
    PanelField fact{PanelField::Kind::Choice, QStringLiteral("yourTrackInfoOption"), QStringLiteral("Fact")};
    fact.choiceLabels = {QStringLiteral("File name"), QStringLiteral("File path"), QStringLiteral("File size")};
    fact.choiceValues = {kFileName, kFilePath, kFileSize};
    PanelField target{PanelField::Kind::Tag, QStringLiteral("yourPerformOnTrackInfo"), QStringLiteral("Into tag")};
    for (PanelField *field : {&fact, &target}) {
        field->enabledBy = QStringLiteral("enableTrackInfo");
        field->group = infoGroup;
    }

    PanelField start{PanelField::Kind::Number, QStringLiteral("yourNumberTracksStartValue"),
                     QStringLiteral("First track number")};
    start.minimum = 1;
    start.enabledBy = QStringLiteral("enableNumberTracks");
    start.group = QStringLiteral("Number the tracks");

    panel.fields = {tool, fact, target, start};
    const QString deleteGroup = QStringLiteral("Empty tags");
    addChoiceFields(panel.fields, deleteTagChoices(), "yourDeleteTag", deleteGroup,
                    QStringLiteral("enableDeleteTags"));
    const QString spacesGroup = QStringLiteral("Tidy spaces");
    addChoiceFields(panel.fields, removeSpacesTagChoices(), "yourRemoveSpaces", spacesGroup,
                    QStringLiteral("enableRemoveSpaces"));
    for (const auto &[action, label, group, enabledBy] :
         {std::tuple{"selectAllDeleteTags", "Select all", deleteGroup, "enableDeleteTags"},
          std::tuple{"deselectAllDeleteTags", "Select none", deleteGroup, "enableDeleteTags"},
          std::tuple{"selectAllRemoveSpacesTags", "Select all", spacesGroup, "enableRemoveSpaces"},
          std::tuple{"deselectAllRemoveSpacesTags", "Select none", spacesGroup, "enableRemoveSpaces"}}) {
        PanelField button{PanelField::Kind::Button};
        button.label = QString::fromLatin1(label);
        button.action = QString::fromLatin1(action);
        button.group = group;
        button.enabledBy = QString::fromLatin1(enabledBy);
        panel.fields.append(button);
    }
    return panel;
}
