#pragma once

#include "additions/textadditions.h"
#include "pool/functionpoolcontroller.h"
#include "pool/tagtable.h"

// What the functions working on tags by number share: the last step of a track, writing a tag's
// new text and telling the engine that the track changed (worker thread), and their pop-ups.
namespace TagEdit {

inline void pushChangedTag(FunctionPoolController *pool, const ITunesTrack &track, qint64 tag, const QString &text)
{
    pushTrackTag(track, tag, text);
    pool->setYourLogNo(TrackLogState::Changed);
}

// Tidies the spaces when asked; a text that ends up as the tag already reads is not written,
// so the track's file is left alone.
inline void pushTagIfChanged(FunctionPoolController *pool, const ITunesTrack &track, qint64 tag,
                             const QString &original, QString text, bool removeSpaces)
{
    if (removeSpaces)
        removeUnnecessarySpaces(text);
    if (text != original)
        pushChangedTag(pool, track, tag, text);
}

// The tag pop-up's numbers: the tags 1 to 29 and the given special ones.
inline QVariantList tagChoices(const QList<qint64> &special)
{
    QVariantList numbers;
    for (qint64 tag = 1; tag <= 29; ++tag)
        numbers.append(tag);
    for (qint64 tag : special)
        numbers.append(tag);
    return numbers;
}

} // namespace TagEdit
