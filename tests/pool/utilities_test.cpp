#include "pool/utilities.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

namespace {

using FileType = BitmapImageFileType;

TEST(ImageType, ByTheFirstByteAlone)
{
    const struct
    {
        QByteArray data;
        QString type;
        FileType storage;
    } rows[] = {
        {"\xFF\xD8\xFF", "image/jpeg", FileType::JPEG}, {"\x89PNG", "image/png", FileType::PNG},
        {"GIF89a", "image/gif", FileType::GIF},          {"II*", "image/tiff", FileType::TIFF},
        {"MM", "image/tiff", FileType::TIFF},            {"\xFF", "image/jpeg", FileType::JPEG},
        {"BM", {}, FileType::PNG},                       {{}, {}, FileType::PNG},
        {"gif", {}, FileType::PNG},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(contentTypeForImageData(row.data), row.type) << row.data.toHex().constData();
        EXPECT_EQ(contentStorageTypeForImageData(row.data), row.storage);
    }
}

TEST(ModifierMasks, FourModifierBitsAndTheirRegistrationLayout)
{
    const struct
    {
        quint64 flags, clean, carbon;
    } rows[] = {
        {0x020000, 0x020000, 0x0200}, {0x040000, 0x040000, 0x1000},
        {0x080000, 0x080000, 0x0800}, {0x100000, 0x100000, 0x0100},
        {0x1E0000, 0x1E0000, 0x1B00}, {0x010000 | 0x200000 | 0x100 | 0x120000, 0x120000, 0x0300},
        {0, 0, 0},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(cleanModifierMask(row.flags), row.clean) << std::hex << row.flags;
        EXPECT_EQ(carbonModifierMask(row.flags), row.carbon) << std::hex << row.flags;
    }
}

TEST(SystemVersion, LeadingNumbersAsThreeParts)
{
    const std::pair<QString, QString> rows[] = {
        {"12", "12.0.0"},   {"22.04", "22.4.0"},     {"6.1.0-18-amd64", "6.1.0"},
        {"1.2.3.4", "1.2.3"}, {"unknown", "0.0.0"},  {"", "0.0.0"}, {"3.x", "3.0.0"},
    };
    for (const auto &[text, version] : rows)
        EXPECT_EQ(versionTripleFromText(text), version) << text.toStdString();
    EXPECT_TRUE(QRegularExpression("^\\d+\\.\\d+\\.\\d+$").match(operatingSystemVersionString()).hasMatch());
}

} // namespace
