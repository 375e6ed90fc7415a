#pragma once

#include <QString>

// Editing operations on tag and request texts, changing the text in place. Lengths and counts
// are UTF-16 code units.

// Collapses every run of spaces to one, then drops one space at the start and one at the end.
// Only U+0020 counts: tabs and line breaks stay, and so do the spaces beside them.
void removeUnnecessarySpaces(QString &text);
// Splits at every line break character (a "\r\n" pair counts as two breaks), tidies the spaces
// of each line when asked, joins with "\n", keeps at most one empty line between paragraphs and
// drops one "\n" at the start and one at the end.
void removeUnnecessaryNewLines(QString &text, bool trimLines);
// ":", "/" and "\" each become one space.
void removeIllegalCharacters(QString &text);

// These do not check n: a negative n or one beyond the length throws the OVException
// "NSRangeException". Callers compare with the length first.
void cutTextFromBeginning(QString &text, qint64 n);
void cutTextFromEnd(QString &text, qint64 n);
void keepTextFromBeginning(QString &text, qint64 n);
void keepTextFromEnd(QString &text, qint64 n);

// Punctuation that web service queries trip over becomes spaces; the spaces are not collapsed.
void removeSpecialItemsForRequest(QString &text);
// Cuts at the first " ft", " vs", " feat", " versus", "(" or "[" (ignoring case, in that
// order), unless it stands at the very start. No word boundary is required: " ftw" cuts too.
void removeSpecialItemPartForRequest(QString &text);

// The MD5 of the UTF-8 bytes up to the first zero byte, as 32 lower-case hex digits.
QString md5(const QString &text);
// Seconds since 1970, rounded to a whole number.
QString currentUTCTimeUnix();
// A rating from 0 to 100 as stars: "5", "2½", "½", "0"; values between the half steps drop to
// the step below.
QString ov_descriptionFromRatingValue(qint64 rating);
