// The regular expression facade of search and replace, from any bytes split at the first two
// NULs into pattern, template and text: it either replaces or throws OVException, never
// crashes, and with no match leaves the text alone.
#include "additions/ovexception.h"
#include "regex/regexreplace.h"

#include <cstdint>
#include <cstdlib>

namespace {

// The part of the input up to the next NUL (or its end), and the rest after it.
QString takePart(const char *&data, const char *end)
{
    const char *stop = data;
    while (stop < end && *stop)
        ++stop;
    const QString part = QString::fromUtf8(data, stop - data);
    data = stop < end ? stop + 1 : end;
    return part;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, size_t size)
{
    const char *data = reinterpret_cast<const char *>(bytes);
    const char *const end = data + size;
    const QString pattern = takePart(data, end);
    const QString replacement = takePart(data, end);
    const QString original = QString::fromUtf8(data, end - data);
    QString text = original;
    try {
        if (replaceOccurrencesOfRegex(text, pattern, replacement) == 0 && text != original)
            std::abort();
    } catch (const OVException &) {
        if (text != original)
            std::abort(); // a failure leaves the text alone
    }
    return 0;
}
