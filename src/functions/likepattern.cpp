#include "functions/likepattern.h"

#include <QList>

namespace {

struct Token
{
    enum class Kind { Literal, AnyOne, AnyRun } kind;
    QChar character;
};

QList<Token> tokens(QStringView pattern)
{
    QList<Token> result;
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        const QChar c = pattern.at(i);
        if (c == QLatin1Char('\\') && i + 1 < pattern.size())
            result.append({Token::Kind::Literal, pattern.at(++i)});
        else if (c == QLatin1Char('*'))
            result.append({Token::Kind::AnyRun, c});
        else if (c == QLatin1Char('?'))
            result.append({Token::Kind::AnyOne, c});
        else
            result.append({Token::Kind::Literal, c});
    }
    return result;
}

} // namespace

bool matchesLikePattern(QStringView text, QStringView pattern)
{
    const QList<Token> pieces = tokens(pattern);
    // Greedy walk that falls back to the last "*" on a mismatch: linear in practice, quadratic
    // at worst, and no recursion on long names.
    qsizetype t = 0, p = 0;
    qsizetype starPiece = -1, starText = 0;
    while (t < text.size()) {
        if (p < pieces.size() && pieces.at(p).kind == Token::Kind::AnyRun) {
            starPiece = p++;
            starText = t;
        } else if (p < pieces.size()
                   && (pieces.at(p).kind == Token::Kind::AnyOne || pieces.at(p).character == text.at(t))) {
            ++p;
            ++t;
        } else if (starPiece >= 0) {
            p = starPiece + 1;
            t = ++starText;
        } else {
            return false;
        }
    }
    while (p < pieces.size() && pieces.at(p).kind == Token::Kind::AnyRun)
        ++p;
    return p == pieces.size();
}
