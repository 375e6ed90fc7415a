#include "artworkfixture.h"

#include "functions/imageadvanced.h"

namespace {

TEST(ImageAdvanced, ScalingFollowsTheAspectUnlessBothSidesAreGiven)
{
    QImage source(400, 300, QImage::Format_RGB32);
    source.fill(Qt::blue);
    EXPECT_TRUE(scaleImage(source, 0, 0).isNull());
    EXPECT_TRUE(scaleImage(QImage(), 10, 10).isNull());
    EXPECT_EQ(scaleImage(source, 500, 0).size(), QSize(500, 375));
    EXPECT_EQ(scaleImage(source, 0, 150).size(), QSize(200, 150));
    EXPECT_EQ(scaleImage(source, 100, 100).size(), QSize(100, 100));
    EXPECT_EQ(scaleImage(source, 1, 0).size(), QSize(1, 1)); // never below one pixel
    // An opaque picture stays opaque, and its whole is drawn: no transparent edge.
    const QImage scaled = scaleImage(source, 333, 0);
    EXPECT_FALSE(scaled.hasAlphaChannel());
    EXPECT_EQ(scaled.pixelColor(332, 249), QColor(Qt::blue));

    QImage translucent(2, 1, QImage::Format_ARGB32);
    translucent.setPixelColor(0, 0, QColor(255, 0, 0, 128));
    translucent.setPixelColor(1, 0, QColor(0, 0, 0, 255));
    const QImage inverted = ov_colorInvertedImage(translucent);
    EXPECT_EQ(inverted.pixelColor(0, 0), QColor(0, 255, 255, 128));
    EXPECT_EQ(inverted.pixelColor(1, 0), QColor(255, 255, 255));
    EXPECT_TRUE(ov_colorInvertedImage(QImage()).isNull());
}

TEST(ImageAdvanced, EncodingKeepsTheTypeAndFullQuality)
{
    QImage image = QImage::fromData(makePicture(QSize(64, 48), "PNG"));
    for (const auto &[type, magic] : {std::pair{BitmapImageFileType::JPEG, QByteArray("\xFF\xD8")},
                                      std::pair{BitmapImageFileType::PNG, QByteArray("\x89PNG")},
                                      std::pair{BitmapImageFileType::BMP, QByteArray("BM")},
                                      std::pair{BitmapImageFileType::TIFF, QByteArray("II")}}) {
        const QByteArray bytes = ov_encodedImage(image, type);
        EXPECT_TRUE(bytes.startsWith(magic)) << int(type);
        EXPECT_EQ(QImage::fromData(bytes).size(), QSize(64, 48));
    }
    // Quality 100: a JPEG round trip stays within a few levels of the original.
    const QImage back = QImage::fromData(ov_encodedImage(image, BitmapImageFileType::JPEG));
    const QColor a = image.pixelColor(20, 20), b = back.pixelColor(20, 20);
    EXPECT_LE(std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) + std::abs(a.blue() - b.blue()), 6);
    QString problem;
    EXPECT_TRUE(ov_encodedImage(QImage(), BitmapImageFileType::PNG, &problem).isEmpty());
    EXPECT_FALSE(problem.isEmpty());
    EXPECT_TRUE(ov_encodedImage(image, BitmapImageFileType::GIF, &problem).isEmpty()); // Qt reads GIF only
    EXPECT_TRUE(problem.startsWith("GIF pictures cannot be written")) << problem.toStdString();
}

} // namespace
