#include "functions/function0018.h"

#include "functions/likepattern.h"
#include "pool/functionpoolcontroller.h"
#include "pool/tagtable.h"

#include <QDateTime>

namespace {

QVariantMap named(const QString &name)
{
    return {{QStringLiteral("name"), name}};
}

} // namespace

void Function0018::setYourTag2(qint64 tag)
{
    if (tag == yourTag2_)
        return;
    yourTag2_ = tag;
    emit tagsChanged();
}

void Function0018::setYourTag3(qint64 tag)
{
    if (tag == yourTag3_)
        return;
    yourTag3_ = tag;
    emit tagsChanged();
}

QString Function0018::playlistContainerName()
{
    return QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

PoolFunctionAnswer Function0018::doMyFunctionPre()
{
    if (preparePlaylistContainer())
        return PoolStep::GoOn;
    return PoolAlertCode::LibraryPlaylistMissing;
}

bool Function0018::preparePlaylistContainer()
{
    const QString name = playlistContainerName();
    const ITunesSource source = myFunctionPool()->subLibrarySource();
    if (name.isEmpty() || source.isNull())
        return false;
    yourFolderPlaylist_ =
        source.makeUserPlaylist(named(name), ObjectClass::FolderPlaylist, 0).as<ITunesFolderPlaylist>();
    return !yourFolderPlaylist_.isNull();
}

QList<ITunesUserPlaylist> Function0018::folderPlaylists() const
{
    const QString folderID = yourFolderPlaylist_.persistentID();
    const ITunesSource source = myFunctionPool()->subLibrarySource();
    if (folderID.isEmpty() || source.isNull())
        return {};
    QList<ITunesUserPlaylist> inside;
    for (const ITunesUserPlaylist &playlist : source.userPlaylists()) {
        const QString parentID = playlist.parent().persistentID();
        if (!parentID.isEmpty() && parentID == folderID)
            inside.append(playlist);
    }
    return inside;
}

QString Function0018::composedName(const ITunesTrack &track) const
{
    // Unlike file names, playlist names keep every character of their tags.
    QString name = yourPrefix_;
    if (yourTag1_ != 0)
        name += pullTrackTag(track, yourTag1_);
    if (yourTag2_ != 0)
        name += yourDel1_ + pullTrackTag(track, yourTag2_);
    if (yourTag3_ != 0)
        name += yourDel2_ + pullTrackTag(track, yourTag3_);
    return name + yourSuffix_;
}

void Function0018::doMyFunctionMain(const ITunesTrack &track)
{
    const QString name = composedName(track);
    if (name.isEmpty())
        return;

    ITunesUserPlaylist found;
    for (const ITunesUserPlaylist &playlist : folderPlaylists()) {
        if (matchesLikePattern(playlist.name(), name) && !playlist.smart()) {
            found = playlist;
            break;
        }
    }

    if (found.isNull()) {
        const ITunesUserPlaylist made =
            myFunctionPool()->subLibrarySource().makeUserPlaylist(named(name), ObjectClass::UserPlaylist, 0);
        made.moveTo(yourFolderPlaylist_);
        track.duplicateTo(made);
    } else {
        if (!yourNoDuplicate_) {
            const qint64 databaseID = track.databaseID();
            for (const ITunesTrack &present : found.tracks())
                if (present.databaseID() == databaseID)
                    return;
        }
        track.duplicateTo(found);
    }
    myFunctionPool()->setYourLogNo(TrackLogState::Changed);
}

void Function0018::doMyFunctionEnd()
{
    yourFolderPlaylist_ = {};
}

PanelDescription Function0018::panelDescription() const
{
    PanelDescription panel;
    panel.title = QStringLiteral("Playlists from tags");
    panel.summary = QStringLiteral("Puts the tracks into playlists named from their tags, inside a new playlist "
                                   "folder named by the time the run starts.");
    QVariantList optionalTags{0};
    for (qint64 tag = 1; tag <= 29; ++tag)
        optionalTags.append(tag);
    PanelField prefix{PanelField::Kind::Text, QStringLiteral("yourPrefix"), QStringLiteral("Prefix")};
    PanelField tag1{PanelField::Kind::Tag, QStringLiteral("yourTag1"), QStringLiteral("First tag")};
    PanelField del1{PanelField::Kind::Text, QStringLiteral("yourDel1"), QStringLiteral("Delimiter")};
    del1.enabledBy = QStringLiteral("enableDel1");
    PanelField tag2{PanelField::Kind::Tag, QStringLiteral("yourTag2"), QStringLiteral("Second tag")};
    PanelField del2{PanelField::Kind::Text, QStringLiteral("yourDel2"), QStringLiteral("Delimiter")};
    del2.enabledBy = QStringLiteral("enableDel2");
    PanelField tag3{PanelField::Kind::Tag, QStringLiteral("yourTag3"), QStringLiteral("Third tag")};
    for (PanelField *tag : {&tag1, &tag2, &tag3})
        tag->choiceValues = optionalTags;
    PanelField suffix{PanelField::Kind::Text, QStringLiteral("yourSuffix"), QStringLiteral("Suffix")};
    PanelField duplicates{PanelField::Kind::Check, QStringLiteral("yourNoDuplicate"),
                          QStringLiteral("Add a track again without looking whether the playlist has it")};
    panel.fields = {prefix, tag1, del1, tag2, del2, tag3, suffix, duplicates};
    return panel;
}
