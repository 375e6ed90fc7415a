#pragma once

#include <QString>
#include <QStringList>

// File name helpers for the folders of tracks, artwork and lyrics.

// The extension of a name's last component: what follows its last dot, unless that dot begins
// the component (".hidden" has none) or ends it.
QString ov_pathExtension(const QString &path);
QString ov_deletingPathExtension(const QString &path);

// The names (not paths) of the entries directly in the folder, in the order the folder lists
// them, whose extension equals one of the suffixes ignoring case. A name appears once for every
// suffix it matches. A folder that cannot be read gives an empty list.
QStringList filesWithSuffixs(const QStringList &suffixes, const QString &folder);
// The first name whose part before the extension contains the text, ignoring case; a null
// text when there is none.
QString fileFromList(const QStringList &list, const QString &name);
