#include "functions/function0025.h"

#include "additions/fileadditions.h"
#include "functions/albumfiles.h"
#include "functions/imageadvanced.h"
#include "pool/functionpoolcontroller.h"
#include "pool/functionpoolpreferences.h"

PoolFunctionAnswer Function0025::doMyFunctionCheck()
{
    if (!yourFrontArtworkEmbed && !yourBackArtworkEmbed)
        return PoolAlertCode::IncompleteSettings;
    if ((yourFrontArtworkEmbed && yourIdentifierFrontArtwork.isEmpty())
        || (yourBackArtworkEmbed && yourIdentifierBackArtwork.isEmpty()))
        return PoolAlertCode::IncompleteSettings;
    // One file would answer to both sides.
    if (yourFrontArtworkEmbed && yourBackArtworkEmbed
        && (yourIdentifierFrontArtwork.contains(yourIdentifierBackArtwork, Qt::CaseInsensitive)
            || yourIdentifierBackArtwork.contains(yourIdentifierFrontArtwork, Qt::CaseInsensitive)))
        return PoolAlertCode::InvalidSettings;
    return PoolStep::GoOn;
}

void Function0025::doMyFunctionMain(const ITunesTrack &track)
{
    const QString folder = albumFolderOfTrack(myFunctionPool(), track);
    const qint64 count = track.artworks().size();
    const FunctionPoolPreferences *preferences = myFunctionPool()->myPreferences();
    if (yourFrontArtworkEmbed)
        runEmbedArtwork(track, yourFrontArtworkReplace, yourIdentifierFrontArtwork, yourFrontArtworkSize, count,
                        folder, preferences->prefArtworkFrontPosition(), yourFrontScaleArtworkUp);
    if (yourBackArtworkEmbed)
        runEmbedArtwork(track, yourBackArtworkReplace, yourIdentifierBackArtwork, yourBackArtworkSize, count,
                        folder, preferences->prefArtworkBackPosition(), yourBackScaleArtworkUp);
}

qint64 Function0025::runEmbedArtwork(const ITunesTrack &track, bool replace, const QString &identifier,
                                     qint64 sizeOption, qint64 countOfArtworks, const QString &albumFolderLocation,
                                     qint64 artworkPosition, bool allowUpperScale)
{
    if (!replace && countOfArtworks >= artworkPosition)
        return countOfArtworks;
    const QString name = fileFromList(imageFilesIn(myFunctionPool(), albumFolderLocation), identifier);
    if (name.isNull())
        return countOfArtworks;
    const QString path = albumFolderLocation + QLatin1Char('/') + name;
    const QByteArray bytes = readWholeFile(path);
    const BitmapImageFileType type = ov_embeddableImageType(contentStorageTypeForImageData(bytes));
    QString problem;
    QImage image = ov_imageFromData(bytes, &problem);
    if (image.isNull())
        throwArtworkFailure(QStringLiteral("cannot embed %1: %2; the track's artworks were left as they were")
                                .arg(path, problem));

    if (sizeOption != 0) {
        const double target = double(sizeOption) * 100.0;
        const double width = image.width();
        const double height = image.height();
        if (allowUpperScale || (width > target && height > target)) {
            const QImage scaled = height > width ? scaleImage(image, 0, target) : scaleImage(image, target, 0);
            if (!scaled.isNull())
                image = scaled;
        }
    }
    // Encoded afresh even when the size stays, so that the tag always gets a clean picture.
    const QByteArray encoded = ov_encodedImage(image, type, &problem);
    if (encoded.isEmpty())
        throwArtworkFailure(QStringLiteral("cannot embed %1: %2").arg(path, problem));
    track.artworkAt(artworkPosition - 1).setRawData(encoded);
    myFunctionPool()->setYourLogNo(TrackLogState::Changed);
    return countOfArtworks;
}

PanelDescription Function0025::panelDescription() const
{
    using Kind = PanelField::Kind;
    PanelDescription panel;
    panel.title = QStringLiteral("Embed artwork from the album folder");
    panel.summary = QStringLiteral("Embeds the picture files of each track's album folder whose names hold "
                                   "the identifier as the front and back artworks, at the positions of the "
                                   "organizer's preferences, scaled to the size.");
    const auto side = [&panel](const QString &group, const QString &prefix, const QString &enabledBy) {
        PanelField embed{Kind::Check, QStringLiteral("your%1ArtworkEmbed").arg(prefix),
                         QStringLiteral("Embed the %1 artwork").arg(prefix.toLower())};
        embed.group = group;
        PanelField identifier{Kind::Text, QStringLiteral("yourIdentifier%1Artwork").arg(prefix),
                              QStringLiteral("File name contains")};
        PanelField size{Kind::Number, QStringLiteral("your%1ArtworkSize").arg(prefix),
                        QStringLiteral("Size in hundreds of pixels (0 keeps it)")};
        size.maximum = 50;
        PanelField up{Kind::Check, QStringLiteral("your%1ScaleArtworkUp").arg(prefix),
                      QStringLiteral("Also enlarge smaller pictures")};
        PanelField replace{Kind::Check, QStringLiteral("your%1ArtworkReplace").arg(prefix),
                           QStringLiteral("Replace an artwork at its position")};
        for (PanelField *field : {&identifier, &size, &up, &replace}) {
            field->group = group;
            field->enabledBy = enabledBy;
        }
        panel.fields << embed << identifier << size << up << replace;
    };
    side(QStringLiteral("Front artwork"), QStringLiteral("Front"), QStringLiteral("enableFrontArtworkOptions"));
    side(QStringLiteral("Back artwork"), QStringLiteral("Back"), QStringLiteral("enableBackArtworkOptions"));
    return panel;
}
