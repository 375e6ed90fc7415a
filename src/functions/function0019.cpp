#include "functions/function0019.h"

#include "additions/textadditions.h"
#include "functions/albumfiles.h"
#include "functions/imageadvanced.h"
#include "player/fourcharcode.h"
#include "player/playervalues.h"
#include "pool/functionpoolcontroller.h"
#include "pool/functionpoolpreferences.h"

#include <QFileInfo>

namespace {

struct ExtractType
{
    qint64 choice;
    const char *extension;
    BitmapImageFileType type;
};

constexpr ExtractType kExtractTypes[] = {
    {1, ".jpg", BitmapImageFileType::JPEG}, {2, ".png", BitmapImageFileType::PNG},
    {3, ".gif", BitmapImageFileType::GIF},  {4, ".bmp", BitmapImageFileType::BMP},
    {5, ".tiff", BitmapImageFileType::TIFF},
};

} // namespace

PoolFunctionAnswer Function0019::doMyFunctionCheck()
{
    if (!yourExtractArtworkA && !yourExtractArtworkB)
        return PoolAlertCode::IncompleteSettings;
    const FunctionPoolPreferences *preferences = myFunctionPool()->myPreferences();
    yourArtworkSuffixA = preferences->prefArtworkFrontSuffix();
    yourArtworkSuffixB = preferences->prefArtworkBackSuffix();
    // Any option but the album folder writes to the chosen folder.
    if (yourExtractOption == kAlbumFolder)
        return PoolStep::GoOn;
    return askForTargetFolder(myFunctionPool(), QStringLiteral("0003.0007"), [this](const QString &path) {
        yourExtractTargetFolderOwn = path;
        emit settingsChanged();
    });
}

PoolFunctionAnswer Function0019::doMyFunctionPre()
{
    yourExtractFileTyp = kAsStored;
    for (const ExtractType &type : kExtractTypes) {
        if (type.choice != yourExtractTyp)
            continue;
        yourExtractFileTyp = qint64(type.type);
        yourArtworkSuffixA += QLatin1String(type.extension);
        yourArtworkSuffixB += QLatin1String(type.extension);
    }
    return PoolStep::GoOn;
}

QString Function0019::extractBaseName(const ITunesTrack &track)
{
    if (track.videoKind() != kNon)
        return track.name();
    const QString album = track.album();
    if (track.compilation())
        return album;
    QString artist = track.albumArtist();
    if (artist.isEmpty())
        artist = track.artist();
    // Without an album the name stays empty and nothing is written, whatever the artist.
    if (artist == album || album.isEmpty())
        return album;
    return artist + QStringLiteral(" - ") + album;
}

void Function0019::doMyFunctionMain(const ITunesTrack &track)
{
    const QList<ITunesArtwork> artworks = track.artworks();
    if (artworks.isEmpty())
        return;
    QString name = extractBaseName(track);
    removeIllegalCharacters(name);
    if (name.isEmpty())
        return;
    const QString folder = yourExtractOption == kAlbumFolder ? albumFolderOfTrack(myFunctionPool(), track)
                                                             : yourExtractTargetFolderOwn;
    const FunctionPoolPreferences *preferences = myFunctionPool()->myPreferences();
    const QString base = folder + QLatin1Char('/') + name;
    if (yourExtractArtworkA && artworks.size() >= preferences->prefArtworkFrontPosition())
        runWriteArtworkDataToFile(track, artworks, base + yourArtworkSuffixA, preferences->prefArtworkFrontPosition());
    if (yourExtractArtworkB && artworks.size() >= preferences->prefArtworkBackPosition())
        runWriteArtworkDataToFile(track, artworks, base + yourArtworkSuffixB, preferences->prefArtworkBackPosition());
}

void Function0019::runWriteArtworkDataToFile(const ITunesTrack &, const QList<ITunesArtwork> &allArtworks,
                                             const QString &extractPath, qint64 artworkOption)
{
    // Every track of an album comes here: the first one writes, the others find the file.
    QString path = extractPath;
    if (QFileInfo::exists(path))
        return;
    const ITunesArtwork artwork = allArtworks.at(artworkOption - 1);
    const QByteArray bytes = artwork.rawData();
    qint64 type = yourExtractFileTyp;
    if (type < 0) {
        const FourCharCode format = artwork.format();
        if (format != 0) {
            const bool png = format == fourCharCode("PNGf");
            path += png ? QStringLiteral(".png") : QStringLiteral(".jpg");
            type = qint64(png ? BitmapImageFileType::PNG : BitmapImageFileType::JPEG);
        }
        if (QFileInfo::exists(path))
            return;
    }
    QString problem;
    const QImage image = ov_imageFromData(bytes, &problem);
    if (image.isNull())
        throwArtworkFailure(QStringLiteral("cannot write artwork %1 to %2: %3").arg(artworkOption).arg(path, problem));
    // A picture of no known kind is written as the bytes it is stored as.
    const QByteArray encoded = type < 0 ? bytes : ov_encodedImage(image, BitmapImageFileType(type), &problem);
    if (encoded.isEmpty())
        throwArtworkFailure(QStringLiteral("cannot write artwork %1 to %2: %3").arg(artworkOption).arg(path, problem));
    writeNewFile(path, encoded);
    myFunctionPool()->setYourLogNo(TrackLogState::Changed);
}

PanelDescription Function0019::panelDescription() const
{
    using Kind = PanelField::Kind;
    PanelDescription panel;
    panel.title = QStringLiteral("Artwork to image files");
    panel.summary = QStringLiteral("Writes the front and back artworks of each track to image files named after "
                                   "the album (a video's after the track), ending in the artwork suffixes of the "
                                   "organizer's preferences. Files that are there are kept.");
    PanelField where{Kind::Choice, QStringLiteral("yourExtractOption"), QStringLiteral("Write to")};
    where.choiceLabels = {QStringLiteral("The album folder"), QStringLiteral("A folder chosen at each run")};
    where.choiceValues = {kAlbumFolder, kChosenFolder};
    PanelField front{Kind::Check, QStringLiteral("yourExtractArtworkA"), QStringLiteral("Front artwork")};
    PanelField back{Kind::Check, QStringLiteral("yourExtractArtworkB"), QStringLiteral("Back artwork")};
    PanelField type{Kind::Choice, QStringLiteral("yourExtractTyp"), QStringLiteral("File type")};
    type.choiceLabels = {QStringLiteral("As stored"), QStringLiteral("JPEG"), QStringLiteral("PNG"),
                         QStringLiteral("GIF"), QStringLiteral("BMP"), QStringLiteral("TIFF")};
    type.choiceValues = {kAsStored, qint64(1), qint64(2), qint64(3), qint64(4), qint64(5)};
    panel.fields = {where, front, back, type};
    return panel;
}
