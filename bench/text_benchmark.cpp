// Tag texts through the helpers a search-and-replace run applies to every tag.
#include "additions/textadditions.h"
#include "regex/regexreplace.h"

#include <QStringList>

#include <benchmark/benchmark.h>

namespace {

constexpr int kTags = 100000;

// Tag-sized texts with the untidy spacing and featured artists that real libraries have.
const QStringList &tags()
{
    static const QStringList list = [] {
        const char *artists[] = {"The  Beatles", " Daft Punk ", "Sigur Rós", "AC/DC",
                                 "Björk  feat.  Thom Yorke", "Beyoncé  ft. Jay-Z   "};
        const char *titles[] = {"Let It Be", "  One More Time", "Hoppípolla  (Live)",
                                "Back   in Black", "Jóga", "Crazy in Love  [Remix] "};
        QStringList result;
        result.reserve(kTags);
        for (int i = 0; i < kTags; ++i) {
            result.append(QStringLiteral("%1 -  %2 %3")
                              .arg(QString::fromUtf8(artists[i % 6]),
                                   QString::fromUtf8(titles[(i / 6) % 6]))
                              .arg(i));
        }
        return result;
    }();
    return list;
}

void BM_RemoveUnnecessarySpaces(benchmark::State &state)
{
    const QStringList &input = tags();
    for (auto _ : state) {
        for (const QString &tag : input) {
            QString text = tag;
            removeUnnecessarySpaces(text);
            benchmark::DoNotOptimize(text);
        }
    }
    state.SetItemsProcessed(state.iterations() * input.size());
}

void BM_ReplaceOccurrencesOfRegex(benchmark::State &state)
{
    const QStringList &input = tags();
    const QString pattern = QStringLiteral("\\s+(feat\\.|ft\\.)\\s+(\\w+)");
    const QString replacement = QStringLiteral(" (with $2)");
    for (auto _ : state) {
        for (const QString &tag : input) {
            QString text = tag;
            benchmark::DoNotOptimize(replaceOccurrencesOfRegex(text, pattern, replacement));
        }
    }
    state.SetItemsProcessed(state.iterations() * input.size());
}

BENCHMARK(BM_RemoveUnnecessarySpaces)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReplaceOccurrencesOfRegex)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
