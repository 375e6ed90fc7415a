#pragma once

#include "player/fourcharcode.h"

#include <QByteArray>
#include <QString>

// Values that every backend shows the same way.

// A duration as the player shows it: "3:25", or "1:02:03" from an hour on; whole seconds,
// rounded; negative durations count as 0.
QString durationText(double seconds);

// The format code of an artwork's bytes, told by their first bytes: "JPEG", "PNGf", "GIFf",
// "BMPf"; 0 for anything else.
FourCharCode artworkFormat(const QByteArray &bytes);
