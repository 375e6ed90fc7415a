#include "functions/function0022.h"

#include "functions/albumfiles.h"
#include "functions/imageadvanced.h"
#include "pool/functionpoolcontroller.h"

#include <algorithm>
#include <cmath>

PoolFunctionAnswer Function0022::doMyFunctionCheck()
{
    if (yourScaleArtworkTargetPosition < 1 || yourScaleArtworkTargetSize < 1.0)
        return PoolAlertCode::ContradictorySettings;
    return PoolStep::GoOn;
}

void Function0022::doMyFunctionMain(const ITunesTrack &track)
{
    if (track.artworks().size() < yourScaleArtworkTargetPosition)
        return;
    const ITunesArtwork artwork = track.artworkAt(yourScaleArtworkTargetPosition - 1);
    const QByteArray bytes = artwork.rawData();
    if (bytes.isEmpty())
        return;
    QString problem;
    const QImage image = ov_imageFromData(bytes, &problem);
    if (image.isNull())
        throwArtworkFailure(QStringLiteral("cannot scale artwork %1: %2; it was left as it was")
                                .arg(yourScaleArtworkTargetPosition)
                                .arg(problem));
    const double width = image.width();
    const double height = image.height();
    const double target = yourScaleArtworkTargetSize;
    double newWidth = 0;
    double newHeight = 0;
    if (yourScaleArtworkOption == kWidth) {
        if ((!yourScaleArtworkUp && target >= width) || width == target)
            return;
        newWidth = target;
        newHeight = height / (width / target);
    } else {
        if ((!yourScaleArtworkUp && target >= height) || height == target)
            return;
        newHeight = target;
        newWidth = width / (height / target);
    }
    const QImage scaled = ov_imageDrawnInto(
        image, QSize(std::max(1, int(std::lround(newWidth))), std::max(1, int(std::lround(newHeight)))));
    // The picture keeps the kind it was stored as.
    const QByteArray encoded = ov_encodedImage(scaled, ov_embeddableImageType(contentStorageTypeForImageData(bytes)), &problem);
    if (encoded.isEmpty())
        throwArtworkFailure(QStringLiteral("cannot scale artwork %1: %2")
                                .arg(yourScaleArtworkTargetPosition)
                                .arg(problem));
    artwork.setRawData(encoded);
    myFunctionPool()->setYourLogNo(TrackLogState::Changed);
}

PanelDescription Function0022::panelDescription() const
{
    using Kind = PanelField::Kind;
    PanelDescription panel;
    panel.title = QStringLiteral("Scale artwork");
    panel.summary = QStringLiteral("Scales the artwork at the position of each track to the width or height, "
                                   "keeping its aspect ratio. Smaller artworks stay as they are unless enlarging "
                                   "is allowed.");
    PanelField position{Kind::Number, QStringLiteral("yourScaleArtworkTargetPosition"),
                        QStringLiteral("Artwork position")};
    position.maximum = 99;
    PanelField option{Kind::Choice, QStringLiteral("yourScaleArtworkOption"), QStringLiteral("Scale to")};
    option.choiceLabels = {QStringLiteral("Width"), QStringLiteral("Height")};
    option.choiceValues = {kWidth, kHeight};
    PanelField size{Kind::Number, QStringLiteral("yourScaleArtworkTargetSize"), QStringLiteral("Pixels")};
    size.maximum = 5000;
    PanelField up{Kind::Check, QStringLiteral("yourScaleArtworkUp"), QStringLiteral("Also enlarge")};
    panel.fields = {position, option, size, up};
    return panel;
}
