#pragma once

#include <QDir>
#include <QProcess>
#include <QString>

#include <gtest/gtest.h>

// Test audio made by ffmpeg: one second of sine in the format the suffix names.
inline QString makeAudio(const QString &folder, const QString &fileName)
{
    QDir().mkpath(folder);
    const QString path = folder + QLatin1Char('/') + fileName;
    QStringList arguments = {"-loglevel", "error", "-y", "-f", "lavfi", "-i", "sine=d=1"};
    if (fileName.endsWith(QLatin1String(".ogg")))
        arguments << "-c:a" << "libvorbis";
    if (fileName.endsWith(QLatin1String(".opus")))
        arguments << "-c:a" << "libopus";
    arguments << path;
    QProcess ffmpeg;
    ffmpeg.start(QStringLiteral("ffmpeg"), arguments);
    EXPECT_TRUE(ffmpeg.waitForFinished(30000) && ffmpeg.exitCode() == 0)
        << ffmpeg.readAllStandardError().toStdString();
    return path;
}

// A tag as python3-mutagen reads it ("easy" keys: title, artist ...).
inline QString mutagenTag(const QString &path, const QString &key)
{
    QProcess python;
    python.start(QStringLiteral("/usr/bin/python3"),
                 {"-c", "import sys, mutagen; f = mutagen.File(sys.argv[1], easy=True); "
                        "print((f.tags or {}).get(sys.argv[2], [''])[0])",
                  path, key});
    EXPECT_TRUE(python.waitForFinished(30000) && python.exitCode() == 0)
        << python.readAllStandardError().toStdString();
    return QString::fromUtf8(python.readAllStandardOutput()).trimmed();
}
