#include "additions/propertylist.h"

#include "additions/ovexception.h"
#include "additions/filewriting.h"

#include <QDateTime>
#include <QTimeZone>
#include <QFile>

#include <plist/plist.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

namespace {

// Seconds between 1970 and 2001, the epoch of property list dates.
constexpr qint64 kPlistEpochOffset = 978307200;

struct PlistDeleter
{
    void operator()(void *node) const { plist_free(node); }
};
using PlistPtr = std::unique_ptr<void, PlistDeleter>;

QString takeString(char *raw)
{
    QString text = QString::fromUtf8(raw);
    free(raw);
    return text;
}

// Nesting deeper than this is refused: settings files are a few levels deep, and both
// libplist's parsers and the conversion below recurse once per level.
constexpr int kMaxDepth = PropertyList::kMaxNesting;
// Objects a binary property list may stand for once shared objects are counted at every use:
// far beyond any settings file, far below what would exhaust memory.
constexpr quint64 kMaxExpandedObjects = quint64(1) << 20;

// Whether no element of the XML nests deeper than the limit. Comments, CDATA, declarations and
// quoted attribute values are skipped as XML reads them; anything malformed is left to libplist.
bool xmlNestingWithin(const QByteArray &data, int limit)
{
    const char *p = data.constData();
    const char *const end = p + data.size();
    const auto skipPast = [&](const char *from, const char *marker) {
        const qsizetype length = qsizetype(std::strlen(marker));
        const char *found = std::search(from, end, marker, marker + length);
        return found == end ? end : found + length;
    };
    const auto startsWith = [&](const char *at, const char *text) {
        const qsizetype length = qsizetype(std::strlen(text));
        return end - at >= length && std::memcmp(at, text, size_t(length)) == 0;
    };
    int depth = 0;
    while (p < end) {
        p = static_cast<const char *>(std::memchr(p, '<', size_t(end - p)));
        if (!p)
            break;
        ++p;
        if (startsWith(p, "!--")) {
            p = skipPast(p + 3, "-->");
        } else if (startsWith(p, "![CDATA[")) {
            p = skipPast(p + 8, "]]>");
        } else if (p < end && (*p == '?' || *p == '!')) {
            p = skipPast(p, ">");
        } else if (p < end && *p == '/') {
            --depth;
            p = skipPast(p, ">");
        } else {
            // An opening tag, up to its '>' outside quotes; "<x/>" is empty.
            char quote = 0;
            char previous = 0;
            while (p < end && (quote || *p != '>')) {
                if (quote && *p == quote)
                    quote = 0;
                else if (!quote && (*p == '"' || *p == '\''))
                    quote = *p;
                previous = *p++;
            }
            if (p < end)
                ++p;
            if (previous != '/' && ++depth > limit)
                return false;
        }
    }
    return true;
}

// Whether the XML could give libplist a string holding NUL, which libplist 2.2 asserts
// against: a NUL byte, or a character reference to 0 or beyond Unicode (which a parser may
// wrap around to 0).
bool xmlMayHoldNul(const QByteArray &data)
{
    if (data.contains('\0'))
        return true;
    for (qsizetype at = data.indexOf("&#"); at >= 0; at = data.indexOf("&#", at + 2)) {
        qsizetype i = at + 2;
        const bool hex = i < data.size() && (data.at(i) == 'x' || data.at(i) == 'X');
        if (hex)
            ++i;
        quint64 value = 0;
        bool digits = false;
        for (; i < data.size(); ++i) {
            const char c = data.at(i);
            const int digit = c >= '0' && c <= '9'               ? c - '0'
                              : hex && c >= 'a' && c <= 'f'      ? c - 'a' + 10
                              : hex && c >= 'A' && c <= 'F'      ? c - 'A' + 10
                                                                 : -1;
            if (digit < 0)
                break;
            digits = true;
            value = std::min<quint64>(value * (hex ? 16 : 10) + quint64(digit), quint64(1) << 40);
        }
        if (digits && (value == 0 || value > 0x10FFFF))
            return true;
    }
    return false;
}

quint64 bigEndian(const uchar *bytes, int size)
{
    quint64 value = 0;
    for (int i = 0; i < size; ++i)
        value = (value << 8) | bytes[i];
    return value;
}

// Whether a binary property list is sound enough for libplist, whose parser recurses into
// containers: the trailer, the offset table and every container's references lie inside the
// data, references stay within the objects, no container contains itself, and no path from
// the top object is deeper than the limit. Walks the objects without recursion, each once.
bool binaryPlistSafe(const QByteArray &data, int limit)
{
    constexpr qsizetype kHeader = 8;
    constexpr qsizetype kTrailer = 32;
    const auto *bytes = reinterpret_cast<const uchar *>(data.constData());
    const quint64 size = quint64(data.size());
    if (data.size() < kHeader + kTrailer)
        return false;
    const uchar *trailer = bytes + size - kTrailer;
    const int offsetSize = trailer[6];
    const int refSize = trailer[7];
    const quint64 objectCount = bigEndian(trailer + 8, 8);
    const quint64 topObject = bigEndian(trailer + 16, 8);
    const quint64 tableOffset = bigEndian(trailer + 24, 8);
    const quint64 bodyEnd = size - kTrailer;
    if (offsetSize < 1 || offsetSize > 8 || refSize < 1 || refSize > 8 || objectCount == 0
        || topObject >= objectCount || tableOffset < quint64(kHeader) || tableOffset > bodyEnd
        || objectCount > (bodyEnd - tableOffset) / quint64(offsetSize))
        return false;

    // The references of container `index` (empty for other objects); false when malformed.
    struct Container
    {
        quint64 firstRef = 0;
        quint64 refCount = 0;
    };
    const auto containerAt = [&](quint64 index, Container &container) {
        const quint64 offset = bigEndian(bytes + tableOffset + index * quint64(offsetSize), offsetSize);
        if (offset < quint64(kHeader) || offset >= tableOffset)
            return false;
        const uchar marker = bytes[offset];
        const int type = marker >> 4;
        container = {};
        const bool isContainer = type == 0xA || type == 0xC || type == 0xD;
        const bool isText = type == 0x5 || type == 0x6;
        if (!isContainer && !isText)
            return true;
        quint64 count = marker & 0x0F;
        quint64 position = offset + 1;
        if (count == 0x0F) {
            if (position >= tableOffset || (bytes[position] >> 4) != 0x1)
                return false;
            const int countSize = 1 << (bytes[position] & 0x0F);
            if (countSize > 8 || tableOffset - position - 1 < quint64(countSize))
                return false;
            count = bigEndian(bytes + position + 1, countSize);
            position += 1 + quint64(countSize);
        }
        const quint64 room = tableOffset - position;
        if (isText) {
            // libplist 2.2 asserts that its strings hold no NUL: such a file never gets there.
            const int unit = type == 0x6 ? 2 : 1;
            if (count > room / quint64(unit))
                return false;
            for (quint64 i = 0; i < count; ++i)
                if ((unit == 1 && bytes[position + i] == 0)
                    || (unit == 2 && bytes[position + 2 * i] == 0 && bytes[position + 2 * i + 1] == 0))
                    return false;
            return true;
        }
        const quint64 refs = type == 0xD ? count * 2 : count;
        if ((type == 0xD && count > (quint64(1) << 62)) || refs > room / quint64(refSize))
            return false;
        container = {position, refs};
        return true;
    };

    // Post-order walk. libplist parses an object once per reference to it, so a shared object
    // counts at every place it is used: its height against the depth there, its expanded size
    // against the total.
    enum : uchar { Unseen, Open, Done };
    std::vector<uchar> state(objectCount, Unseen);
    std::vector<int> height(objectCount, 0);
    std::vector<quint64> expanded(objectCount, 0);
    struct Frame
    {
        quint64 index;
        Container container;
        quint64 next;
        int childHeight;
        quint64 size;
    };
    std::vector<Frame> path;
    const auto enter = [&](quint64 index) {
        Container container;
        if (!containerAt(index, container))
            return false;
        state[index] = Open;
        path.push_back({index, container, 0, 0, 1});
        return int(path.size()) <= limit;
    };
    if (!enter(topObject))
        return false;
    while (!path.empty()) {
        Frame &frame = path.back();
        if (frame.next == frame.container.refCount) {
            const Frame done = frame;
            path.pop_back();
            state[done.index] = Done;
            height[done.index] = done.childHeight + 1;
            expanded[done.index] = done.size;
            if (!path.empty()) {
                path.back().childHeight = std::max(path.back().childHeight, height[done.index]);
                path.back().size += done.size;
                if (path.back().size > kMaxExpandedObjects)
                    return false;
            }
            continue;
        }
        const quint64 child =
            bigEndian(bytes + frame.container.firstRef + frame.next++ * quint64(refSize), refSize);
        if (child >= objectCount || state[child] == Open)
            return false;
        if (state[child] == Unseen) {
            if (!enter(child))
                return false;
            continue;
        }
        if (int(path.size()) + height[child] > limit)
            return false;
        frame.childHeight = std::max(frame.childHeight, height[child]);
        frame.size += expanded[child];
        if (frame.size > kMaxExpandedObjects)
            return false;
    }
    return true;
}

QVariant toVariant(plist_t node, int depth, bool &tooDeep)
{
    if (depth > kMaxDepth) {
        tooDeep = true;
        return {};
    }
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        uint8_t value = 0;
        plist_get_bool_val(node, &value);
        return QVariant(value != 0);
    }
    case PLIST_UINT: {
        uint64_t value = 0;
        plist_get_uint_val(node, &value);
        // Stored unsigned; negative numbers come back through the cast.
        return QVariant(static_cast<qint64>(value));
    }
    case PLIST_REAL: {
        double value = 0;
        plist_get_real_val(node, &value);
        return QVariant(value);
    }
    case PLIST_STRING: {
        char *raw = nullptr;
        plist_get_string_val(node, &raw);
        return QVariant(takeString(raw));
    }
    case PLIST_DATA: {
        char *raw = nullptr;
        uint64_t length = 0;
        plist_get_data_val(node, &raw, &length);
        QByteArray bytes(raw, static_cast<qsizetype>(length));
        free(raw);
        return QVariant(bytes);
    }
    case PLIST_DATE: {
        int32_t seconds = 0, micro = 0;
        plist_get_date_val(node, &seconds, &micro);
        const qint64 ms = (kPlistEpochOffset + seconds) * 1000 + micro / 1000;
        return QVariant(QDateTime::fromMSecsSinceEpoch(ms, Qt::UTC));
    }
    case PLIST_ARRAY: {
        QVariantList list;
        const uint32_t size = plist_array_get_size(node);
        // Kinds the program does not use (UIDs) are left out, so that what was read can be
        // written again.
        for (uint32_t i = 0; i < size; ++i)
            if (QVariant item = toVariant(plist_array_get_item(node, i), depth + 1, tooDeep); item.isValid())
                list << item;
        return list;
    }
    case PLIST_DICT: {
        QVariantMap map;
        plist_dict_iter iter = nullptr;
        plist_dict_new_iter(node, &iter);
        for (;;) {
            char *key = nullptr;
            plist_t value = nullptr;
            plist_dict_next_item(node, iter, &key, &value);
            if (!key)
                break;
            QString name = takeString(key);
            if (QVariant item = toVariant(value, depth + 1, tooDeep); item.isValid())
                map.insert(name, item);
        }
        free(iter);
        return map;
    }
    default:
        return {};
    }
}

[[noreturn]] void throwUnsupported(const QString &what)
{
    throw OVException(QStringLiteral("NSInvalidArgumentException"),
                      QStringLiteral("a property list cannot hold %1").arg(what));
}

plist_t fromVariant(const QVariant &value)
{
    if (!value.isValid())
        throwUnsupported(QStringLiteral("a null value"));

    switch (value.typeId()) {
    case QMetaType::Bool:
        return plist_new_bool(value.toBool() ? 1 : 0);
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::Long:
    case QMetaType::Short:
    case QMetaType::Char:
    case QMetaType::SChar:
        return plist_new_uint(static_cast<uint64_t>(value.toLongLong()));
    case QMetaType::UInt:
    case QMetaType::ULongLong:
    case QMetaType::ULong:
    case QMetaType::UShort:
    case QMetaType::UChar:
        return plist_new_uint(value.toULongLong());
    case QMetaType::Double:
    case QMetaType::Float:
        return plist_new_real(value.toDouble());
    case QMetaType::QString:
        return plist_new_string(value.toString().toUtf8().constData());
    case QMetaType::QByteArray: {
        const QByteArray bytes = value.toByteArray();
        return plist_new_data(bytes.constData(), static_cast<uint64_t>(bytes.size()));
    }
    case QMetaType::QDateTime: {
        const qint64 ms = value.toDateTime().toMSecsSinceEpoch() - kPlistEpochOffset * 1000;
        const qint64 seconds = ms >= 0 ? ms / 1000 : (ms - 999) / 1000;
        return plist_new_date(static_cast<int32_t>(seconds),
                              static_cast<int32_t>((ms - seconds * 1000) * 1000));
    }
    case QMetaType::QVariantList:
    case QMetaType::QStringList: {
        PlistPtr array(plist_new_array());
        for (const QVariant &item : value.toList())
            plist_array_append_item(array.get(), fromVariant(item));
        return array.release();
    }
    case QMetaType::QVariantMap:
    case QMetaType::QVariantHash: {
        PlistPtr dict(plist_new_dict());
        const QVariantMap map = value.toMap();
        for (auto it = map.cbegin(); it != map.cend(); ++it)
            plist_dict_set_item(dict.get(), it.key().toUtf8().constData(), fromVariant(it.value()));
        return dict.release();
    }
    default:
        throwUnsupported(QStringLiteral("a value of type %1").arg(QString::fromLatin1(value.typeName())));
    }
}

} // namespace

namespace PropertyList {

QVariant fromData(const QByteArray &data)
{
    if (data.isEmpty())
        return {};
    // plist_from_memory takes the binary form by this magic, everything else as XML.
    if (data.startsWith("bplist00") ? !binaryPlistSafe(data, kMaxDepth)
                                    : !xmlNestingWithin(data, kMaxDepth) || xmlMayHoldNul(data))
        return {};
    plist_t raw = nullptr;
    plist_from_memory(data.constData(), static_cast<uint32_t>(data.size()), &raw);
    if (!raw)
        return {};
    PlistPtr root(raw);
    bool tooDeep = false;
    QVariant value = toVariant(root.get(), 1, tooDeep);
    return tooDeep ? QVariant() : value;
}

QVariant read(const QString &path)
{
    if (path.isEmpty())
        return {};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return fromData(file.readAll());
}

QVariantMap readMap(const QString &path)
{
    return read(path).toMap();
}

QByteArray toXml(const QVariant &value)
{
    PlistPtr root(fromVariant(value));
    char *xml = nullptr;
    uint32_t length = 0;
    plist_to_xml(root.get(), &xml, &length);
    QByteArray bytes(xml, static_cast<qsizetype>(length));
    free(xml);
    return bytes;
}

bool write(const QString &path, const QVariant &value)
{
    return writeFileAtomically(path, toXml(value));
}

} // namespace PropertyList
