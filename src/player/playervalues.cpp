#include "player/playervalues.h"

#include <algorithm>
#include <cmath>

QString durationText(double seconds)
{
    const qint64 total = std::llround(std::max(seconds, 0.0));
    const qint64 hours = total / 3600, minutes = total / 60 % 60, rest = total % 60;
    if (hours > 0)
        return QStringLiteral("%1:%2:%3")
            .arg(hours)
            .arg(minutes, 2, 10, QLatin1Char('0'))
            .arg(rest, 2, 10, QLatin1Char('0'));
    return QStringLiteral("%1:%2").arg(minutes).arg(rest, 2, 10, QLatin1Char('0'));
}

FourCharCode artworkFormat(const QByteArray &bytes)
{
    if (bytes.startsWith("\xFF\xD8"))
        return fourCharCode("JPEG");
    if (bytes.startsWith("\x89PNG"))
        return fourCharCode("PNGf");
    if (bytes.startsWith("GIF8"))
        return fourCharCode("GIFf");
    if (bytes.startsWith("BM"))
        return fourCharCode("BMPf");
    return 0;
}
