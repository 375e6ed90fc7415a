#pragma once

#include <QString>

// The program's texts by key ("0003.0001"), from string tables shipped as resources: a table is
// a JSON object "<folder>/<table>.json" of key and text. The main folder is ":/strings" and the
// default table "Localizable". A key missing from its table stands for itself; the answer is a
// null text only when that leaves nothing. Tables are read once and kept; any thread may ask.
QString ov_localizedString(const QString &key);
QString ov_localizedString(const QString &key, const QString &fromTable);
// An empty folder means the main one.
QString ov_localizedString(const QString &key, const QString &fromTable, const QString &inBundle);
