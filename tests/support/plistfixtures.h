#pragma once

#include <QByteArray>
#include <QList>

#include <functional>

// Hostile property lists: arrays nested `depth` deep, each holding the next.
inline QByteArray nestedXmlArrays(int depth)
{
    return "<?xml version=\"1.0\"?><plist version=\"1.0\">" + QByteArray("<array>").repeated(depth)
           + QByteArray("</array>").repeated(depth) + "</plist>";
}

// The binary form, written by hand: object i is an array whose references are `refs(i)`,
// with 4-byte references and offsets. By default each array holds the next, the last none.
inline QByteArray binaryArrays(int count, const std::function<QList<quint32>(int)> &refs)
{
    const auto appendBigEndian = [](QByteArray &data, quint64 value, int size) {
        for (int shift = (size - 1) * 8; shift >= 0; shift -= 8)
            data.append(char((value >> shift) & 0xFF));
    };
    QByteArray data("bplist00");
    QList<quint64> offsets;
    for (int i = 0; i < count; ++i) {
        offsets.append(quint64(data.size()));
        const QList<quint32> children = refs(i);
        data.append(char(0xA0 | children.size())); // fewer than 15 references
        for (const quint32 child : children)
            appendBigEndian(data, child, 4);
    }
    const quint64 tableOffset = quint64(data.size());
    for (const quint64 offset : offsets)
        appendBigEndian(data, offset, 4);
    data.append(QByteArray(6, '\0'));
    data.append(char(4)); // offset size
    data.append(char(4)); // reference size
    appendBigEndian(data, quint64(count), 8);
    appendBigEndian(data, 0, 8); // top object
    appendBigEndian(data, tableOffset, 8);
    return data;
}

inline QByteArray nestedBinaryArrays(int depth)
{
    return binaryArrays(depth, [depth](int i) {
        return i + 1 < depth ? QList<quint32>{quint32(i + 1)} : QList<quint32>{};
    });
}
