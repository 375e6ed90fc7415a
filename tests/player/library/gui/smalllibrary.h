#pragma once

#include "audiofixtures.h"

#include "player/itunes.h"
#include "player/library/librarybackend.h"

#include <QFile>

struct TrackTags
{
    QString name, artist, album, albumArtist, genre;
    int year = 0, trackNumber = 0, trackCount = 0, discNumber = 0, rating = 0;
};

// A dozen tracks with the tags a real collection has: several artists and albums, a
// compilation with its album artist, two discs, missing values and non-Latin names.
inline QList<TrackTags> sampleTags()
{
    return {
        {"Come Together", "The Beatles", "Abbey Road", "", "Rock", 1969, 1, 17, 1, 100},
        {"Something", "The Beatles", "Abbey Road", "", "Rock", 1969, 2, 17, 1, 80},
        {"Here Comes the Sun", "The Beatles", "Abbey Road", "", "Rock", 1969, 7, 17, 1, 90},
        {"So What", "Miles Davis", "Kind of Blue", "", "Jazz", 1959, 1, 5, 0, 60},
        {"Blue in Green", "Miles Davis", "Kind of Blue", "", "Jazz", 1959, 3, 5, 0, 0},
        {"Teardrop", "Massive Attack", "Mezzanine", "", "Trip-Hop", 1998, 3, 11, 0, 40},
        {"Ágætis byrjun", "Sigur Rós", "Ágætis byrjun", "", "Post-Rock", 1999, 4, 10, 1, 70},
        {"Wake Up", "Arcade Fire", "Funeral", "", "Indie", 2004, 10, 10, 0, 20},
        {"Hoppípolla", "Sigur Rós", "Takk...", "", "Post-Rock", 2005, 2, 11, 1, 100},
        {"Windowlicker", "Aphex Twin", "Warp 20", "Various Artists", "Electronic", 2009, 5, 20, 2, 50},
        {"Roygbiv", "Boards of Canada", "Warp 20", "Various Artists", "Electronic", 2009, 2, 20, 1, 0},
        {"untitled", "", "", "", "", 0, 0, 0, 0, 0},
    };
}

// A library in a folder of its own whose tracks carry the given tags, in files copied from one
// made by ffmpeg (so every track is real audio).
class SmallLibrary
{
public:
    SmallLibrary(const QString &folder, const QList<TrackTags> &tags)
        : backend(std::make_shared<LibraryBackend>(folder + "/Library.sqlite"))
    {
        const QString source = makeAudio(folder + "/source", "tone.mp3");
        QStringList files;
        for (qsizetype i = 0; i < tags.size(); ++i) {
            files.append(QStringLiteral("%1/music/track%2.mp3").arg(folder).arg(i, 2, 10, QChar('0')));
            QDir().mkpath(folder + "/music");
            QFile::copy(source, files.last());
        }
        const QList<ITunesTrack> tracks = ITunesApplication::withBackend(backend).add(files);
        EXPECT_EQ(tracks.size(), tags.size());
        for (qsizetype i = 0; i < tracks.size(); ++i) {
            const ITunesTrack &track = tracks.at(i);
            const TrackTags &t = tags.at(i);
            track.setName(t.name);
            track.setArtist(t.artist);
            track.setAlbum(t.album);
            track.setAlbumArtist(t.albumArtist);
            track.setGenre(t.genre);
            track.setYear(t.year);
            track.setTrackNumber(t.trackNumber);
            track.setTrackCount(t.trackCount);
            track.setDiscNumber(t.discNumber);
            track.setRating(t.rating);
            persistentIDs.append(track.persistentID());
        }
        backend->saveAll();
    }

    std::shared_ptr<LibraryBackend> backend;
    QStringList persistentIDs; // in the order of the tags
};
