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
}

TEST(ImageAdvanced, BadPicturesAreRefusedWithTheirReason)
{
    QString problem;
    EXPECT_TRUE(ov_imageFromData("this is text, not a picture", &problem).isNull());
    EXPECT_TRUE(problem.contains("not a picture")) << problem.toStdString();

    const QByteArray jpeg = makePicture(QSize(300, 200), "JPEG");
    EXPECT_FALSE(ov_imageFromData(jpeg).isNull());
    EXPECT_TRUE(ov_imageFromData(jpeg.left(jpeg.size() * 2 / 3), &problem).isNull());
    EXPECT_TRUE(problem.contains("cut short")) << problem.toStdString();
    const QByteArray png = makePicture(QSize(300, 200), "PNG");
    EXPECT_TRUE(ov_imageFromData(png.left(png.size() - 20), &problem).isNull());

    // A real 12000 x 12000 picture, one bit a pixel so that the test stays small.
    QImage huge(12000, 12000, QImage::Format_Mono);
    huge.fill(1);
    QByteArray hugeBytes;
    QBuffer buffer(&hugeBytes);
    buffer.open(QIODevice::WriteOnly);
    ASSERT_TRUE(huge.save(&buffer, "PNG"));
    EXPECT_TRUE(ov_imageFromData(hugeBytes, &problem).isNull());
    EXPECT_TRUE(problem.contains("12000 x 12000")) << problem.toStdString();
}

} // namespace
