#include "qtprinting.h"

#include "additions/fileadditions.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

TEST(FileAdditions, PathExtensionOfTheLastComponent)
{
    const std::pair<QString, QString> rows[] = {
        {"a.b.mp3", "mp3"}, {"/music/x.M4A", "M4A"}, {".hidden", ""}, {"file.", ""},
        {"dir.x/file", ""}, {"noext", ""}, {"", ""},
    };
    for (const auto &[path, extension] : rows)
        EXPECT_EQ(ov_pathExtension(path), extension) << path.toStdString();
    EXPECT_EQ(ov_deletingPathExtension("/music/a.b.mp3"), QStringLiteral("/music/a.b"));
    EXPECT_EQ(ov_deletingPathExtension(".hidden"), QStringLiteral(".hidden"));
}

TEST(FileAdditions, FilesWithSuffixsListsMatchingNamesOncePerSuffix)
{
    QTemporaryDir dir;
    for (const char *name : {"a.MP3", "b.mp3", "c.m4a", ".mp3", "noext", "d.txt", "sub/e.mp3"}) {
        QDir(dir.path()).mkpath(QFileInfo(dir.filePath(name)).path());
        QFile file(dir.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    auto sorted = [](QStringList names) {
        names.sort();
        return names;
    };
    EXPECT_EQ(sorted(filesWithSuffixs({"mp3"}, dir.path())), (QStringList{"a.MP3", "b.mp3"}));
    EXPECT_EQ(sorted(filesWithSuffixs({"mp3", "M4A"}, dir.path())),
              (QStringList{"a.MP3", "b.mp3", "c.m4a"}));
    EXPECT_EQ(sorted(filesWithSuffixs({"mp3", "MP3"}, dir.path())),
              (QStringList{"a.MP3", "a.MP3", "b.mp3", "b.mp3"}));
    EXPECT_TRUE(filesWithSuffixs({"mp3"}, dir.filePath("missing")).isEmpty());
}

TEST(FileAdditions, FileFromListMatchesTheNameWithoutExtension)
{
    const QStringList files{"Cover.jpg", "folder.png", "jpg.gif"};
    EXPECT_EQ(fileFromList(files, "FOLDER"), QStringLiteral("folder.png"));
    EXPECT_EQ(fileFromList(files, "jpg"), QStringLiteral("jpg.gif"));
    EXPECT_EQ(fileFromList(files, "over"), QStringLiteral("Cover.jpg"));
    EXPECT_TRUE(fileFromList(files, "png").isNull());
    EXPECT_TRUE(fileFromList(files, "").isNull());
}
