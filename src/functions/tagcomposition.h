#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include <functional>

class ITunesTrack;

// How a file or folder name is put together from a track's tags: a prefix, up to four tags by
// number (0: not used) with a delimiter before every tag but the first, and a suffix.
struct TagNameRecipe
{
    QString prefix;
    QList<qint64> tags;
    QStringList delimiters; // delimiters[i] stands before tags[i + 1]
    QString suffix;
};

// Gives a tag's text the form it takes in a name (a leading zero for a track number ...).
using TagTextShaper = std::function<QString(const QString &text, qint64 tagNo)>;

// The name the recipe gives for the track, fit for a file system: ":", "/" and "\" become
// spaces. A tag that is not used leaves out the delimiter before it as well.
QString composeNameFromTags(const ITunesTrack &track, const TagNameRecipe &recipe,
                            const TagTextShaper &shape);

// "7" becomes "07"; every text that is not exactly one character long stays as it is.
QString textWithLeadingZero(const QString &text);

// The tags a name may be made of, and those a split name may be written to, as panel choices.
QVariantList readableTagChoices();
QVariantList writableTagChoices();
