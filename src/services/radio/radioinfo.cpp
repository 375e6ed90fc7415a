#include "services/radio/radioinfo.h"

#include <QRegularExpression>
#include <QStringDecoder>
#include <QTimeZone>

#include <cmath>

namespace RadioInfo {

namespace {

const QRegularExpression &newlines()
{
    static const QRegularExpression expression(QStringLiteral("[\\n\\r\\x{2028}\\x{2029}\\x{0085}\\x0B\\x0C]"));
    return expression;
}

// Strict UTF-8: bytes that aren't UTF-8 give none instead of replacement characters.
std::optional<QString> decodeUtf8(QByteArrayView bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder.decode(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

} // namespace

QStringList playlistTracksFromText(const QString &text)
{
    QStringList tracks;
    for (const QString &line : text.split(newlines())) {
        if (line.endsWith(QLatin1String(".aac"), Qt::CaseInsensitive))
            tracks.append(line);
    }
    return tracks;
}

QString chooseTrack(const QStringList &tracks)
{
    const qsizetype n = tracks.size();
    if (n == 0)
        return {};
    return n >= 4 ? tracks.at(n - 3) : tracks.at(n - 1);
}

std::optional<QDateTime> trackDateFromName(const QString &line)
{
    QString name = line.section(QLatin1Char('/'), -1);
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot > 0)
        name.truncate(dot);
    const QString stamp = name.section(QLatin1Char('-'), -1);
    if (stamp.isEmpty())
        return std::nullopt;

    // "yyyyMMdd'T'HHmmss" and a zone: "Z", "+hh:mm" or "+hhmm". A negative offset can't occur
    // here, since the name was split at "-".
    static const QRegularExpression form(
        QStringLiteral("^(\\d{8}T\\d{6})(Z|[+](\\d{2}):?(\\d{2}))$"));
    const QRegularExpressionMatch match = form.match(stamp);
    if (!match.hasMatch())
        return std::nullopt;
    int offset = 0;
    if (match.captured(2) != QLatin1String("Z"))
        offset = match.captured(3).toInt() * 3600 + match.captured(4).toInt() * 60;
    const QString whole = match.captured(1);
    const QDate day = QDate::fromString(whole.left(8), QStringLiteral("yyyyMMdd"));
    const QTime time = QTime::fromString(whole.mid(9), QStringLiteral("HHmmss"));
    const QDateTime date(day, time, QTimeZone(offset));
    if (!date.isValid())
        return std::nullopt;
    return date;
}

double playlistTargetDuration(const QString &playlist)
{
    for (const QString &line : playlist.split(newlines())) {
        if (!line.contains(QLatin1String("TARGETDURATION"), Qt::CaseInsensitive))
            continue;
        bool ok = false;
        const double value = line.section(QLatin1Char(':'), -1).trimmed().toDouble(&ok);
        if (ok && value > 0 && std::isfinite(value))
            return value;
    }
    return 0;
}

double loadingTimeInterval(const std::optional<QDateTime> &date, double duration, const QDateTime &now)
{
    if (!date || !date->isValid() || duration <= 0)
        return 0;
    const double end = double(date->toMSecsSinceEpoch()) / 1000.0 + duration;
    const double from = double(now.toMSecsSinceEpoch()) / 1000.0;
    return std::fabs(end - from) + 1.0;
}

std::optional<ByteRange> frameRange(const QByteArray &key, const QByteArray &data)
{
    if (data.size() < 8 || key.isEmpty())
        return std::nullopt;
    // The key must start before the last 8 bytes: it needs room for the size behind it.
    const QByteArrayView searched(data.constData(), data.size() - 8);
    const qsizetype at = searched.indexOf(key);
    if (at < 0)
        return std::nullopt;
    const qsizetype sizeAt = at + key.size();
    if (sizeAt + 4 > data.size())
        return std::nullopt;
    const auto *bytes = reinterpret_cast<const uchar *>(data.constData() + sizeAt);
    const quint32 size = (quint32(bytes[0]) << 24) | (quint32(bytes[1]) << 16) | (quint32(bytes[2]) << 8) | bytes[3];
    if (size == 0)
        return std::nullopt;
    return ByteRange{sizeAt + 6, qsizetype(size)};
}

QString frameText(const QByteArray &key, const QByteArray &data)
{
    const std::optional<ByteRange> range = frameRange(key, data);
    if (!range || range->offset > data.size() || range->size > data.size() - range->offset)
        return {};
    std::optional<QString> text = decodeUtf8(QByteArrayView(data).sliced(range->offset, range->size));
    if (!text || text->isEmpty())
        return {};
    // The frame's encoding byte: 3 is UTF-8. Other encodings are read as UTF-8 all the same.
    if (text->startsWith(QChar(0x03)))
        text->remove(0, 1);
    QStringList pieces;
    QString piece;
    for (const QChar c : std::as_const(*text)) {
        if (c.category() == QChar::Other_Control || c.category() == QChar::Other_Format
            || c == QChar(0x2028) || c == QChar(0x2029)) {
            pieces.append(piece);
            piece.clear();
        } else {
            piece.append(c);
        }
    }
    pieces.append(piece);
    return pieces.join(QLatin1Char(' ')).trimmed();
}

QString artworkWebAddress(const QByteArray &data)
{
    const qsizetype word = data.indexOf("artwork");
    if (word < 0)
        return {};
    const qsizetype http = data.indexOf("http", word + 7);
    if (http < 0)
        return {};
    const qsizetype jpg = data.indexOf(".jpg", http + 4);
    if (jpg < 0)
        return {};
    // Read up to a zero byte or the ".jpg", whichever comes first.
    QByteArrayView bytes = QByteArrayView(data).sliced(http, jpg - http);
    const qsizetype zero = bytes.indexOf('\0');
    if (zero >= 0)
        bytes.truncate(zero);
    const std::optional<QString> address = decodeUtf8(bytes);
    if (!address || address->isEmpty() || zero >= 0)
        return {};
    return *address + QLatin1String(".jpg");
}

} // namespace RadioInfo
