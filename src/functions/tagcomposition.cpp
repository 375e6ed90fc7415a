#include "functions/tagcomposition.h"

#include "additions/textadditions.h"
#include "pool/tagtable.h"

#include <QVariantList>

QString composeNameFromTags(const ITunesTrack &track, const TagNameRecipe &recipe,
                            const TagTextShaper &shape)
{
    QString name = recipe.prefix;
    for (qsizetype i = 0; i < recipe.tags.size(); ++i) {
        const qint64 tag = recipe.tags.at(i);
        if (tag == 0)
            continue;
        if (i > 0)
            name += recipe.delimiters.value(i - 1);
        name += shape(pullTrackTag(track, tag), tag);
    }
    name += recipe.suffix;
    removeIllegalCharacters(name);
    return name;
}

QString textWithLeadingZero(const QString &text)
{
    return text.size() == 1 ? QStringLiteral("0") + text : text;
}

namespace {

QVariantList tagRange(qint64 first, qint64 last, QVariantList choices)
{
    for (qint64 tag = first; tag <= last; ++tag)
        choices.append(tag);
    return choices;
}

} // namespace

QVariantList readableTagChoices()
{
    return tagRange(101, 105, tagRange(0, 29, {}));
}

QVariantList writableTagChoices()
{
    return tagRange(0, 29, {}) << QVariant(qint64(100));
}
