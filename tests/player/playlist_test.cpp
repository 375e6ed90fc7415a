#include "playertestsupport.h"

namespace {

class PlaylistTest : public MemoryPlayerTest
{
protected:
    ITunesPlaylist playlist(const MemoryObjectPtr &object)
    {
        return player->handle<ITunesPlaylist>(object);
    }
};

TEST_F(PlaylistTest, PathNamesSourceFoldersAndPlaylist)
{
    player->librarySource()->setStored(Prop::name, "Home");
    player->libraryPlaylist()->setStored(Prop::name, "Music");
    auto outer = player->addFolderPlaylist("Moods");
    auto inner = player->addFolderPlaylist("Calm", outer);
    auto nested = player->addUserPlaylist("Evening", inner);
    auto top = player->addUserPlaylist("Party");

    // The library playlist has no container to ask: the source's name stays out.
    player->injectFailure(Prop::container, MemoryPlayer::Access::Read, MemoryPlayer::kAlways,
                          player->libraryPlaylist());
    EXPECT_EQ(playlist(player->libraryPlaylist()).ov_path(), "Music");
    EXPECT_EQ(playlist(nested).ov_path(), "Home/Moods/Calm/Evening");
    EXPECT_EQ(playlist(inner).ov_path(), "Home/Moods/Calm");
    EXPECT_EQ(playlist(top).ov_path(), "Home/Party");
    EXPECT_EQ(ITunesPlaylist().ov_path(), QString());

    player->injectFailure(Prop::container, MemoryPlayer::Access::Read, 1, top);
    EXPECT_EQ(playlist(top).ov_path(), QString());
}

TEST_F(PlaylistTest, PathOfAnUnnamedPlaylistIsEmpty)
{
    auto unnamed = player->addUserPlaylist("");
    EXPECT_EQ(playlist(unnamed).ov_path(), "Library");
    player->librarySource()->setStored(Prop::name, "");
    EXPECT_EQ(playlist(unnamed).ov_path(), QString());
}

TEST_F(PlaylistTest, TracksCount)
{
    auto a = player->addFileTrack("A", "/music/a.mp3");
    auto b = player->addFileTrack("B", "/music/b.mp3");
    player->addURLTrack("Radio", "http://radio.example/");
    auto folder = player->addFolderPlaylist("Folder");
    auto first = player->addUserPlaylist("First", folder);
    auto second = player->addUserPlaylist("Second", folder);
    player->addToPlaylist(a, first);
    player->addToPlaylist(a, second);
    player->addToPlaylist(b, second);

    EXPECT_EQ(playlist(player->libraryPlaylist()).ov_tracksCount(), 3);
    EXPECT_EQ(playlist(second).ov_tracksCount(), 2);
    EXPECT_EQ(playlist(folder).ov_tracksCount(), 2); // a folder counts each track once
    EXPECT_EQ(playlist(player->libraryPlaylist()).fileTracks().size(), 2);
    EXPECT_EQ(ITunesPlaylist().ov_tracksCount(), 0);

    player->injectFailure(Prop::tracks, MemoryPlayer::Access::Read);
    EXPECT_EQ(playlist(second).ov_tracksCount(), 0);
}

} // namespace
