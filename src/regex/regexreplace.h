#pragma once

#include <QString>

// Replaces every match of the ICU regular expression over the whole text (no options, so
// matching respects case) with the template, in which ICU expands "$1" and its kin. Answers the
// number of replacements; with none the text is left alone. A pattern that does not compile, a
// template ICU refuses and overlong input throw an OVException ("RKLICURegexException" for ICU's
// errors, with the error's details as user information).
//
// Compiled patterns are kept in a small cache shared by all threads.
qsizetype replaceOccurrencesOfRegex(QString &text, const QString &pattern,
                                    const QString &replacement);
