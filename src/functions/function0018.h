#pragma once

#include "pool/poolfunction.h"

// Organizer function 18: sorts the tracks of a run into playlists named from their tags, all
// inside one new folder playlist per run, named by the moment the run started. A name already
// made in the run's folder (matched as a LIKE pattern, so "*" and "?" in it are wildcards) takes
// further tracks; smart playlists and playlists of other folders are never touched.
class Function0018 : public PoolFunction
{
    Q_OBJECT
    Q_PROPERTY(qint64 yourTag1 MEMBER yourTag1_ NOTIFY settingsChanged)
    Q_PROPERTY(qint64 yourTag2 READ yourTag2 WRITE setYourTag2 NOTIFY tagsChanged)
    Q_PROPERTY(qint64 yourTag3 READ yourTag3 WRITE setYourTag3 NOTIFY tagsChanged)
    Q_PROPERTY(QString yourDel1 MEMBER yourDel1_ NOTIFY settingsChanged)
    Q_PROPERTY(QString yourDel2 MEMBER yourDel2_ NOTIFY settingsChanged)
    Q_PROPERTY(QString yourPrefix MEMBER yourPrefix_ NOTIFY settingsChanged)
    Q_PROPERTY(QString yourSuffix MEMBER yourSuffix_ NOTIFY settingsChanged)
    Q_PROPERTY(bool yourNoDuplicate MEMBER yourNoDuplicate_ NOTIFY settingsChanged)
    Q_PROPERTY(bool enableDel1 READ enableDel1 NOTIFY tagsChanged)
    Q_PROPERTY(bool enableDel2 READ enableDel2 NOTIFY tagsChanged)

public:
    using PoolFunction::PoolFunction;

    qint64 yourTag2() const { return yourTag2_; }
    void setYourTag2(qint64 tag);
    qint64 yourTag3() const { return yourTag3_; }
    void setYourTag3(qint64 tag);
    bool enableDel1() const { return yourTag2_ != 0; }
    bool enableDel2() const { return yourTag3_ != 0; }

    PoolFunctionAnswer doMyFunctionCheck() override { return PoolStep::GoOn; }
    PoolFunctionAnswer doMyFunctionPre() override;
    void doMyFunctionMain(const ITunesTrack &track) override;
    void doMyFunctionEnd() override;
    PanelDescription panelDescription() const override;

    // The folder of the run under way; null between runs.
    const ITunesFolderPlaylist &yourFolderPlaylist() const { return yourFolderPlaylist_; }
    // "yyyy-MM-dd HH:mm:ss" of now.
    static QString playlistContainerName();

signals:
    void settingsChanged();
    void tagsChanged();

private:
    bool preparePlaylistContainer();
    // The playlists directly inside the run's folder, told by persistentID.
    QList<ITunesUserPlaylist> folderPlaylists() const;
    QString composedName(const ITunesTrack &track) const;

    ITunesFolderPlaylist yourFolderPlaylist_;
    qint64 yourTag1_ = 4;
    qint64 yourTag2_ = 3;
    qint64 yourTag3_ = 0;
    QString yourDel1_ = QStringLiteral(" - ");
    QString yourDel2_ = QStringLiteral(" - ");
    QString yourPrefix_;
    QString yourSuffix_;
    // Unticked, a track already in the found playlist is not added again; ticked, it always is.
    bool yourNoDuplicate_ = false;
};
