#include "additions/fileadditions.h"

#include "additions/textsearch.h"

#include <QDir>

namespace {

// The position of the dot that starts the extension, or -1.
qsizetype extensionDot(const QString &path)
{
    const qsizetype componentStart = path.lastIndexOf(u'/') + 1;
    const qsizetype dot = path.lastIndexOf(u'.');
    if (dot <= componentStart || dot == path.size() - 1)
        return -1;
    return dot;
}

} // namespace

QString ov_pathExtension(const QString &path)
{
    const qsizetype dot = extensionDot(path);
    return dot < 0 ? QString() : path.sliced(dot + 1);
}

QString ov_deletingPathExtension(const QString &path)
{
    const qsizetype dot = extensionDot(path);
    return dot < 0 ? path : path.first(dot);
}

QStringList filesWithSuffixs(const QStringList &suffixes, const QString &folder)
{
    const QDir dir(folder);
    if (folder.isEmpty() || !dir.isReadable())
        return {};
    const QStringList names =
        dir.entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                      QDir::Unsorted);
    QStringList matching;
    for (const QString &name : names) {
        const QString extension = ov_pathExtension(name);
        for (const QString &suffix : suffixes) {
            if (isEqualIgnoringCase(extension, suffix))
                matching.append(name);
        }
    }
    return matching;
}

QString fileFromList(const QStringList &list, const QString &name)
{
    for (const QString &file : list) {
        if (containsString(ov_deletingPathExtension(file), name, SearchOption::CaseInsensitive))
            return file;
    }
    return {};
}
