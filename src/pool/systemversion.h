#pragma once

#include <QString>

// "major.minor.patch" from the leading numbers of a version text: "22.04" gives "22.4.0",
// "6.1.0-18-amd64" gives "6.1.0"; a text that does not begin with a number gives "0.0.0".
QString versionTripleFromText(const QString &version);
