#include "player/fourcharcode.h"

QString fourCharCodeText(FourCharCode code)
{
    QString text;
    for (int shift = 24; shift >= 0; shift -= 8)
        text += QChar(char16_t((code >> shift) & 0xff));
    return text;
}

FourCharCode fourCharCodeFromText(const QString &text)
{
    if (text.size() != 4)
        return 0;
    FourCharCode code = 0;
    for (QChar c : text) {
        if (c.unicode() > 0xff)
            return 0;
        code = (code << 8) | c.unicode();
    }
    return code;
}
