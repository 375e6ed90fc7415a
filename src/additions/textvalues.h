#pragma once

#include <QString>

// Numbers and truth read from the start of a text, the way tag texts and server values are read
// throughout the program: leading white space is skipped, reading stops at the first character
// that does not fit, and a text without a number reads as 0 or false.

// Optional sign and decimal digits; clamped to the 64-bit range.
qint64 integerValue(QStringView text);
// Optional sign, digits with a decimal point, optional exponent; overflow gives ±infinity.
double doubleValue(QStringView text);
// True when, after white space and leading zeros, the text begins with Y or T in either case or
// with a digit from 1 to 9.
bool boolValue(QStringView text);
