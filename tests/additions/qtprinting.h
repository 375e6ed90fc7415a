#pragma once

#include <QString>

#include <ostream>

// Readable failure messages for texts, with the code units of anything outside ASCII.
inline void PrintTo(const QString &text, std::ostream *os)
{
    *os << '"';
    for (QChar c : text) {
        if (c.unicode() >= 0x20 && c.unicode() < 0x7f)
            *os << char(c.unicode());
        else
            *os << "\\u" << std::hex << unsigned(c.unicode()) << std::dec;
    }
    *os << '"';
}
