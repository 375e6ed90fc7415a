#pragma once

#include "pool/poolfunction.h"

// Organizer function 17: five small tag tools, one per run, chosen by yourOptionChoosen.
class Function0017 : public PoolFunction
{
    Q_OBJECT
    Q_PROPERTY(qint64 yourOptionChoosen READ yourOptionChoosen WRITE setYourOptionChoosen NOTIFY optionChanged)
    Q_PROPERTY(qint64 yourPerformOnTrackInfo MEMBER yourPerformOnTrackInfo_ NOTIFY settingsChanged)
    Q_PROPERTY(qint64 yourTrackInfoOption MEMBER yourTrackInfoOption_ NOTIFY settingsChanged)
    Q_PROPERTY(qint64 yourNumberTracksStartValue MEMBER yourNumberTracksStartValue_ NOTIFY settingsChanged)
    Q_PROPERTY(bool enableTrackInfo READ enableTrackInfo NOTIFY optionChanged)
    Q_PROPERTY(bool enableNumberTracks READ enableNumberTracks NOTIFY optionChanged)
    Q_PROPERTY(bool enableDeleteTags READ enableDeleteTags NOTIFY optionChanged)
    Q_PROPERTY(bool enableRemoveSpaces READ enableRemoveSpaces NOTIFY optionChanged)

    Q_PROPERTY(bool yourDeleteTagName MEMBER yourDeleteTagName NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourDeleteTagArtist MEMBER yourDeleteTagArtist NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourDeleteTagAlbum MEMBER yourDeleteTagAlbum NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourDeleteTagAlbumArtist MEMBER yourDeleteTagAlbumArtist NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourDeleteTagComposer MEMBER yourDeleteTagComposer NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourDeleteTagShow MEMBER yourDeleteTagShow NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourDeleteTagNameSort MEMBER yourDeleteTagNameSort NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourDeleteTagArtistSort MEMBER yourDeleteTagArtistSort NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourDeleteTagAlbumSort MEMBER yourDeleteTagAlbumSort NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourDeleteTagAlbumArtistSort MEMBER yourDeleteTagAlbumArtistSort NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourDeleteTagComposerSort MEMBER yourDeleteTagComposerSort NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourDeleteTagShowSort MEMBER yourDeleteTagShowSort NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourDeleteTagGenre MEMBER yourDeleteTagGenre NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourDeleteTagComment MEMBER yourDeleteTagComment NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourDeleteTagGrouping MEMBER yourDeleteTagGrouping NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourDeleteTagLyrics MEMBER yourDeleteTagLyrics NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourDeleteTagEpisodenID MEMBER yourDeleteTagEpisodenID NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourDeleteTagDiscNumber MEMBER yourDeleteTagDiscNumber NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourDeleteTagDiscCount MEMBER yourDeleteTagDiscCount NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourDeleteTagTrackNumber MEMBER yourDeleteTagTrackNumber NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourDeleteTagTrackCount MEMBER yourDeleteTagTrackCount NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourDeleteTagSeasonNumber MEMBER yourDeleteTagSeasonNumber NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourDeleteTagEpisodeNumber MEMBER yourDeleteTagEpisodeNumber NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourDeleteTagPlayedCount MEMBER yourDeleteTagPlayedCount NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourDeleteTagRating MEMBER yourDeleteTagRating NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourDeleteTagAlbumRating MEMBER yourDeleteTagAlbumRating NOTIFY tagChoicesChanged)

    Q_PROPERTY(bool yourRemoveSpacesName MEMBER yourRemoveSpacesName NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourRemoveSpacesArtist MEMBER yourRemoveSpacesArtist NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourRemoveSpacesAlbum MEMBER yourRemoveSpacesAlbum NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourRemoveSpacesAlbumArtist MEMBER yourRemoveSpacesAlbumArtist NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourRemoveSpacesComposer MEMBER yourRemoveSpacesComposer NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourRemoveSpacesShow MEMBER yourRemoveSpacesShow NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourRemoveSpacesNameSort MEMBER yourRemoveSpacesNameSort NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourRemoveSpacesArtistSort MEMBER yourRemoveSpacesArtistSort NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourRemoveSpacesAlbumSort MEMBER yourRemoveSpacesAlbumSort NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourRemoveSpacesAlbumArtistSort MEMBER yourRemoveSpacesAlbumArtistSort NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourRemoveSpacesComposerSort MEMBER yourRemoveSpacesComposerSort NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourRemoveSpacesShowSort MEMBER yourRemoveSpacesShowSort NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourRemoveSpacesGenre MEMBER yourRemoveSpacesGenre NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourRemoveSpacesComment MEMBER yourRemoveSpacesComment NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourRemoveSpacesGrouping MEMBER yourRemoveSpacesGrouping NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourRemoveSpacesLyrics MEMBER yourRemoveSpacesLyrics NOTIFY tagChoicesChanged)
    Q_PROPERTY(bool yourRemoveSpacesEpisodenID MEMBER yourRemoveSpacesEpisodenID NOTIFY tagChoicesChanged)

public:
    // The tools by the number yourOptionChoosen holds.
    enum class Option : qint64 {
        TrackInfoToTag = 1, // a file fact (name, path or size) into a tag
        NumberTracks = 2,   // track numbers in run order
        DeleteTags = 3,     // empty the chosen tags
        RemoveSpaces = 4,   // tidy the spaces of the chosen tags
        SetAlbumArtist = 5, // album artist from album (compilations) or artist
    };

    // yourTrackInfoOption
    static constexpr qint64 kFileName = 1;
    static constexpr qint64 kFilePath = 2;
    static constexpr qint64 kFileSize = 3;

    using PoolFunction::PoolFunction;

    qint64 yourOptionChoosen() const { return yourOptionChoosen_; }
    void setYourOptionChoosen(qint64 option);
    // The setting as a tool; a number outside the tools runs nothing.
    Option option() const { return Option(yourOptionChoosen_); }
    bool enableTrackInfo() const { return option() == Option::TrackInfoToTag; }
    bool enableNumberTracks() const { return option() == Option::NumberTracks; }
    bool enableDeleteTags() const { return option() == Option::DeleteTags; }
    bool enableRemoveSpaces() const { return option() == Option::RemoveSpaces; }

    PoolFunctionAnswer doMyFunctionCheck() override;
    void doMyFunctionMain(const ITunesTrack &track) override;
    PanelDescription panelDescription() const override;

    // Segment 0 ticks every tag of the group, any other segment clears them.
    Q_INVOKABLE void selectAllDeleteTags(qint64 selectedSegment = 0);
    Q_INVOKABLE void deselectAllDeleteTags() { selectAllDeleteTags(1); }
    Q_INVOKABLE void selectAllRemoveSpacesTags(qint64 selectedSegment = 0);
    Q_INVOKABLE void deselectAllRemoveSpacesTags() { selectAllRemoveSpacesTags(1); }

    // A file fact fit for a tag: 256 characters and more are cut to 252 and "...".
    static QString shortenedTrackInfo(const QString &text);

    // Tag choices in their working order, with the tag number each one acts on.
    struct TagChoice
    {
        bool Function0017::*enabled;
        qint64 tag;
        const char *property; // the setting that enables it
    };
    static const QList<TagChoice> &deleteTagChoices();
    static const QList<TagChoice> &removeSpacesTagChoices();

signals:
    void optionChanged();
    void settingsChanged();
    void tagChoicesChanged();

private:
    using Tool = void (Function0017::*)(const ITunesTrack &);

    void runFileNameToTag(const ITunesTrack &track);
    void runFilePathToTag(const ITunesTrack &track);
    void runFileSizeToTag(const ITunesTrack &track);
    void runNumnberTracks(const ITunesTrack &track);
    void runDeleteTag(const ITunesTrack &track);
    void runRemoveSpaces(const ITunesTrack &track);
    // The tidied text, or a null text when tidying changes nothing.
    QString runRemoveSpacesSub(const QString &text);
    void runSetAlbumArtist(const ITunesTrack &track);

    bool anyChosen(const QList<TagChoice> &choices) const;
    void setAll(const QList<TagChoice> &choices, bool on);
    void pushTrackInfo(const ITunesTrack &track, const QString &text);

    bool yourDeleteTagName = false, yourDeleteTagArtist = false, yourDeleteTagAlbum = false,
         yourDeleteTagAlbumArtist = false, yourDeleteTagComposer = false, yourDeleteTagShow = false,
         yourDeleteTagNameSort = false, yourDeleteTagArtistSort = false, yourDeleteTagAlbumSort = false,
         yourDeleteTagAlbumArtistSort = false, yourDeleteTagComposerSort = false,
         yourDeleteTagShowSort = false, yourDeleteTagGenre = false, yourDeleteTagComment = false,
         yourDeleteTagGrouping = false, yourDeleteTagLyrics = false, yourDeleteTagEpisodenID = false,
         yourDeleteTagDiscNumber = false, yourDeleteTagDiscCount = false, yourDeleteTagTrackNumber = false,
         yourDeleteTagTrackCount = false, yourDeleteTagSeasonNumber = false,
         yourDeleteTagEpisodeNumber = false, yourDeleteTagPlayedCount = false, yourDeleteTagRating = false,
         yourDeleteTagAlbumRating = false;

    bool yourRemoveSpacesName = true, yourRemoveSpacesArtist = true, yourRemoveSpacesAlbum = true,
         yourRemoveSpacesAlbumArtist = true, yourRemoveSpacesComposer = true, yourRemoveSpacesShow = true,
         yourRemoveSpacesNameSort = true, yourRemoveSpacesArtistSort = true,
         yourRemoveSpacesAlbumSort = true, yourRemoveSpacesAlbumArtistSort = true,
         yourRemoveSpacesComposerSort = true, yourRemoveSpacesShowSort = true,
         yourRemoveSpacesGenre = true, yourRemoveSpacesComment = true, yourRemoveSpacesGrouping = true,
         yourRemoveSpacesLyrics = true, yourRemoveSpacesEpisodenID = true;

    Tool yourSel_ = nullptr;
    qint64 yourNumberTracksStartValueCurrentRun_ = 1; // the next number of the run under way
    qint64 yourPerformOn_ = 0;                        // the tag the run writes to

    qint64 yourOptionChoosen_ = qint64(Option::RemoveSpaces);
    qint64 yourPerformOnTrackInfo_ = 15;
    qint64 yourTrackInfoOption_ = kFileName;
    qint64 yourNumberTracksStartValue_ = 1;
};
