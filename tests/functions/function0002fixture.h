#pragma once

#include "audiofixtures.h"
#include "function0011fixture.h"

#include <QFileInfo>

inline void PrintTo(const QVariant &value, std::ostream *os)
{
    *os << (value.isValid() ? value.typeName() : "invalid") << " \"" << value.toString().toStdString() << '"';
}

// The program's functions over the in-memory player, each run on tracks a test adds one by one.
class RealFunctionTest : public TagToolTest
{
protected:
    // A selected file track with the given tags (and an empty name if none is given).
    MemoryObjectPtr addTrack(const MemoryProperties &properties)
    {
        selected.append(player->addFileTrack(properties.value(Prop::name).toString(),
                                             QStringLiteral("/music/%1.mp3").arg(selected.size()), properties));
        player->setSelection(selected);
        return selected.last();
    }

    void configure(int number, const QVariantMap &settings)
    {
        for (auto it = settings.begin(); it != settings.end(); ++it)
            set(number, it.key().toLatin1().constData(), it.value());
    }

    // The alert codes of the run, counting the player's writes afresh.
    QList<qint64> run(int number)
    {
        player->resetWriteCounts();
        return TagToolTest::run(number);
    }

    QList<MemoryObjectPtr> selected;
};

// Writes "easy" tags (title, artist ...) into an audio file with python3-mutagen.
inline void writeMutagenTags(const QString &path, const QVariantMap &tags)
{
    QStringList arguments{"-c", "import sys, mutagen; f = mutagen.File(sys.argv[1], easy=True); "
                                "f.add_tags() if f.tags is None else None; "
                                "[f.__setitem__(k, v) for k, v in zip(sys.argv[2::2], sys.argv[3::2])]; f.save()",
                          path};
    for (auto it = tags.begin(); it != tags.end(); ++it)
        arguments << it.key() << it.value().toString();
    QProcess python;
    python.start(QStringLiteral("/usr/bin/python3"), arguments);
    ASSERT_TRUE(python.waitForFinished(30000) && python.exitCode() == 0)
        << python.readAllStandardError().toStdString();
}

inline QDateTime modificationTime(const QString &path)
{
    return QFileInfo(path).fileTime(QFileDevice::FileModificationTime);
}
