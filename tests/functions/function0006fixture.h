#pragma once

#include "audiofixtures.h"
#include "function0011fixture.h"

#include <QTemporaryDir>

// The engine with the program's functions over the in-memory player, plus a private folder for
// the files of a test.
class TagNameFunctionTest : public TagToolTest
{
protected:
    void SetUp() override
    {
        TagToolTest::SetUp();
        ASSERT_TRUE(music.isValid());
        player->setMusicFolder(music.path());
    }

    MemoryObjectPtr addTrack(const QString &location, const MemoryProperties &properties = {})
    {
        const QString name = properties.value(Prop::name, QStringLiteral("Title")).toString();
        selected.append(player->addFileTrack(name, location, properties));
        player->setSelection(selected);
        return selected.last();
    }

    // Sets the function's settings by name, runs it on the selection and answers the states.
    QList<qint64> run(int number, const QVariantMap &settings = {})
    {
        for (auto it = settings.begin(); it != settings.end(); ++it)
            set(number, it.key().toLatin1().constData(), it.value());
        player->resetWriteCounts();
        EXPECT_EQ(TagToolTest::run(number), QList<qint64>{});
        return states;
    }

    QString path(const QString &relative) const { return music.path() + QLatin1Char('/') + relative; }

    QTemporaryDir music;
    QList<MemoryObjectPtr> selected;
};

// Readable texts in failure messages.
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}
