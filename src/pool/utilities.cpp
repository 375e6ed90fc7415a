#include "pool/utilities.h"

#include <QRegularExpression>
#include <QSysInfo>

namespace {

constexpr quint64 kShiftKeyMask = 0x020000;
constexpr quint64 kControlKeyMask = 0x040000;
constexpr quint64 kOptionKeyMask = 0x080000;
constexpr quint64 kCommandKeyMask = 0x100000;

// The same modifiers in the hotkey registration's layout.
constexpr quint64 kShiftKey = 0x0200;
constexpr quint64 kControlKey = 0x1000;
constexpr quint64 kOptionKey = 0x0800;
constexpr quint64 kCommandKey = 0x0100;

bool beginsWithNumber(const QString &text)
{
    return !text.isEmpty() && text.front().isDigit();
}

} // namespace

QString versionTripleFromText(const QString &version)
{
    static const QRegularExpression leadingNumbers(
        QStringLiteral("^(\\d+)(?:\\.(\\d+))?(?:\\.(\\d+))?"));
    const QRegularExpressionMatch match = leadingNumbers.match(version);
    qint64 parts[3] = {0, 0, 0};
    for (int i = 0; i < 3 && match.hasMatch(); ++i)
        parts[i] = match.captured(i + 1).toLongLong();
    return QString::asprintf("%lld.%lld.%lld", static_cast<long long>(parts[0]),
                             static_cast<long long>(parts[1]), static_cast<long long>(parts[2]));
}

QString contentTypeForImageData(const QByteArray &data)
{
    if (data.isEmpty())
        return {};
    switch (quint8(data.front())) {
    case 0xFF:
        return QStringLiteral("image/jpeg");
    case 0x89:
        return QStringLiteral("image/png");
    case 0x47:
        return QStringLiteral("image/gif");
    case 0x49:
    case 0x4D:
        return QStringLiteral("image/tiff");
    default:
        return {};
    }
}

BitmapImageFileType contentStorageTypeForImageData(const QByteArray &data)
{
    const QString type = contentTypeForImageData(data);
    if (type == QLatin1String("image/tiff"))
        return BitmapImageFileType::TIFF;
    if (type == QLatin1String("image/gif"))
        return BitmapImageFileType::GIF;
    if (type == QLatin1String("image/jpeg"))
        return BitmapImageFileType::JPEG;
    return BitmapImageFileType::PNG;
}

// The distribution's release ("12" on Debian 12, "22.04" on Ubuntu) is what users call the
// system's version; where it has no number (a rolling release) the kernel's version stands in.
QString operatingSystemVersionString()
{
    const QString product = QSysInfo::productVersion();
    return versionTripleFromText(beginsWithNumber(product) ? product : QSysInfo::kernelVersion());
}

quint64 cleanModifierMask(quint64 flags)
{
    return flags & (kShiftKeyMask | kControlKeyMask | kOptionKeyMask | kCommandKeyMask);
}

quint64 carbonModifierMask(quint64 flags)
{
    quint64 mask = 0;
    if (flags & kShiftKeyMask)
        mask |= kShiftKey;
    if (flags & kControlKeyMask)
        mask |= kControlKey;
    if (flags & kOptionKeyMask)
        mask |= kOptionKey;
    if (flags & kCommandKeyMask)
        mask |= kCommandKey;
    return mask;
}
