#include "additions/propertylist.h"

#include "additions/ovexception.h"
#include "additions/filewriting.h"

#include <QDateTime>
#include <QTimeZone>
#include <QFile>

#include <plist/plist.h>

#include <cstdlib>
#include <memory>

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

QVariant toVariant(plist_t node)
{
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
        for (uint32_t i = 0; i < size; ++i)
            list << toVariant(plist_array_get_item(node, i));
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
            map.insert(takeString(key), toVariant(value));
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
    plist_t raw = nullptr;
    plist_from_memory(data.constData(), static_cast<uint32_t>(data.size()), &raw);
    if (!raw)
        return {};
    PlistPtr root(raw);
    return toVariant(root.get());
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
