#pragma once

#include <QString>

// Whether the whole text matches a LIKE pattern, as the player's predicates compare names:
// "*" stands for any run of characters (none too), "?" for exactly one, and a backslash makes
// the character after it literal. Case and accents count.
bool matchesLikePattern(QStringView text, QStringView pattern);
