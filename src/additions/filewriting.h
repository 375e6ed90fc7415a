#pragma once

#include <QByteArray>
#include <QString>

// Writes the whole file or nothing: the bytes go to a temporary file beside the target, which
// then replaces it. A failed write leaves whatever was there. False on failure.
bool writeFileAtomically(const QString &path, const QByteArray &bytes);
