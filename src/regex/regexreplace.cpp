#include "regex/regexreplace.h"

#include "additions/ovexception.h"

#include <QHash>
#include <QVariantMap>

#include <unicode/uregex.h>
#include <unicode/utypes.h>

#include <array>
#include <atomic>
#include <climits>
#include <mutex>
#include <vector>

namespace {

const QString kICUExceptionName = QStringLiteral("RKLICURegexException");
constexpr uint32_t kRegexOptions = 0;
// In ICU's time-limit units (about ten thousand match steps each): well under a second.
#ifndef ORVANE_REGEX_MATCH_STEP_LIMIT
#define ORVANE_REGEX_MATCH_STEP_LIMIT 3000
#endif
constexpr int32_t kMatchStepLimit = ORVANE_REGEX_MATCH_STEP_LIMIT;

// Held only for one replacement on the pool worker, so waiting is rare and short.
class SpinLock
{
public:
    void lock()
    {
        while (flag_.test_and_set(std::memory_order_acquire))
            flag_.wait(true, std::memory_order_relaxed);
    }
    void unlock()
    {
        flag_.clear(std::memory_order_release);
        flag_.notify_one();
    }

private:
    std::atomic_flag flag_;
};

const UChar *utf16(const QString &text)
{
    return reinterpret_cast<const UChar *>(text.utf16());
}

QString fromUtf16(const UChar *units, qsizetype length = -1)
{
    return QString::fromUtf16(reinterpret_cast<const char16_t *>(units), length);
}

QVariantMap icuErrorInfo(UErrorCode status, const QString &pattern)
{
    return {
        {QStringLiteral("RKLICURegexErrorCode"), int(status)},
        {QStringLiteral("RKLICURegexErrorName"), QString::fromLatin1(u_errorName(status))},
        {QStringLiteral("RKLICURegexRegex"), pattern},
        {QStringLiteral("RKLICURegexRegexOptions"), kRegexOptions},
    };
}

QString icuErrorReason(UErrorCode status)
{
    return QStringLiteral("ICU regular expression error #%1, %2.")
        .arg(int(status)).arg(QString::fromLatin1(u_errorName(status)));
}

[[noreturn]] void throwCompileError(UErrorCode status, const UParseError &parseError,
                                    const QString &pattern)
{
    QVariantMap info = icuErrorInfo(status, pattern);
    const QString name = QString::fromLatin1(u_errorName(status));
    const QString preContext = fromUtf16(parseError.preContext);
    const QString postContext = fromUtf16(parseError.postContext);
    info.insert(QStringLiteral("RKLICURegexLine"), int(parseError.line));
    info.insert(QStringLiteral("RKLICURegexOffset"), int(parseError.offset));
    info.insert(QStringLiteral("RKLICURegexPreContext"), preContext);
    info.insert(QStringLiteral("RKLICURegexPostContext"), postContext);
    info.insert(QStringLiteral("NSLocalizedDescription"),
                QStringLiteral("There was an error compiling the regular expression."));
    // ICU leaves line and offset below 1 and 0 when it cannot place the error.
    const bool placed = parseError.line >= 1 && parseError.offset >= 0;
    info.insert(QStringLiteral("NSLocalizedFailureReason"),
                placed ? QStringLiteral("The error %1 occurred at line %2, column %3: %4<<HERE>>%5")
                             .arg(name).arg(parseError.line).arg(parseError.offset)
                             .arg(preContext, postContext)
                       : QStringLiteral("The error %1 occurred.").arg(name));
    throw OVException(kICUExceptionName, icuErrorReason(status), info);
}

[[noreturn]] void throwReplaceError(UErrorCode status, const QString &pattern)
{
    QVariantMap info = icuErrorInfo(status, pattern);
    info.insert(QStringLiteral("NSLocalizedFailureReason"),
                status == U_REGEX_TIME_OUT
                    ? QStringLiteral("The regular expression took too many steps on this text; "
                                     "nested repetitions such as (a+)+ make it try without end. "
                                     "Simplify the expression.")
                    : QStringLiteral("The error %1 occurred.").arg(QString::fromLatin1(u_errorName(status))));
    throw OVException(kICUExceptionName, icuErrorReason(status), info);
}

[[noreturn]] void throwUnexpected(UErrorCode status, const QString &pattern)
{
    throw OVException(QStringLiteral("NSInternalInconsistencyException"),
                      QStringLiteral("The ICU library returned an unexpected error code."),
                      icuErrorInfo(status, pattern));
}

void checkStatus(UErrorCode status, const QString &pattern)
{
    if (U_FAILURE(status))
        throwUnexpected(status, pattern);
}

// Direct-mapped: a pattern lives in the slot of its hash, and a new pattern of the same slot
// replaces it.
class RegexCache
{
public:
    static constexpr size_t kSlots = 23;

    ~RegexCache()
    {
        for (Slot &slot : slots_)
            uregex_close(slot.regex);
    }

    SpinLock &lock() { return lock_; }

    // The compiled pattern, valid while the lock is held.
    URegularExpression *regexFor(const QString &pattern)
    {
        Slot &slot = slots_[qHash(pattern) % kSlots];
        if (slot.regex && slot.pattern == pattern)
            return slot.regex;
        URegularExpression *regex = compile(pattern);
        uregex_close(slot.regex);
        slot = {pattern, regex};
        return regex;
    }

private:
    struct Slot
    {
        QString pattern;
        URegularExpression *regex = nullptr;
    };

    static URegularExpression *compile(const QString &pattern)
    {
        if (pattern.size() > INT_MAX)
            throw OVException(QStringLiteral("NSInvalidArgumentException"),
                              QStringLiteral("Regex string length exceeds INT_MAX"));
        UParseError parseError{};
        UErrorCode status = U_ZERO_ERROR;
        URegularExpression *regex = uregex_open(utf16(pattern), int32_t(pattern.size()),
                                                kRegexOptions, &parseError, &status);
        if (U_FAILURE(status)) {
            uregex_close(regex);
            throwCompileError(status, parseError, pattern);
        }
        // A pattern that backtracks without end (found by fuzzing) must end in an error, not
        // hold the run for ever: it stops after kMatchStepLimit with U_REGEX_TIME_OUT.
        uregex_setTimeLimit(regex, kMatchStepLimit, &status);
        checkStatus(status, pattern);
        return regex;
    }

    SpinLock lock_;
    std::array<Slot, kSlots> slots_;
};

RegexCache &regexCache()
{
    static RegexCache cache;
    return cache;
}

struct ReplacePass
{
    qsizetype count = 0;
    int64_t length = 0; // the whole result's length, even where the buffer was too small
    bool overflowed = false;
};

// Finds every match from the start (uregex_find resets the matcher) and writes the result into the buffer. A separate status
// for finding: uregex_findNext does nothing while its status holds the buffer overflow that
// the append calls use to measure the result.
ReplacePass replaceAll(URegularExpression *regex, const QString &pattern,
                       const QString &replacement, std::vector<UChar> &buffer)
{
    ReplacePass pass;
    UChar *destination = buffer.data();
    int32_t capacity = int32_t(buffer.size());
    UErrorCode findStatus = U_ZERO_ERROR;
    UErrorCode appendStatus = U_ZERO_ERROR;
    auto checkAppend = [&] {
        if (U_FAILURE(appendStatus) && appendStatus != U_BUFFER_OVERFLOW_ERROR)
            throwReplaceError(appendStatus, pattern);
    };
    for (bool found = uregex_find(regex, 0, &findStatus); found;
         found = uregex_findNext(regex, &findStatus)) {
        pass.length += uregex_appendReplacement(regex, utf16(replacement),
                                                int32_t(replacement.size()), &destination,
                                                &capacity, &appendStatus);
        checkAppend();
        ++pass.count;
    }
    if (U_FAILURE(findStatus))
        throwReplaceError(findStatus, pattern); // the match limit, above all
    pass.length += uregex_appendTail(regex, &destination, &capacity, &appendStatus);
    checkAppend();
    pass.overflowed = appendStatus == U_BUFFER_OVERFLOW_ERROR;
    return pass;
}

} // namespace

qsizetype replaceOccurrencesOfRegex(QString &text, const QString &pattern,
                                    const QString &replacement)
{
    if (text.size() > INT_MAX || replacement.size() > INT_MAX)
        throw OVException(QStringLiteral("NSInternalInconsistencyException"),
                          QStringLiteral("Failed to set up UTF16 buffer."));

    RegexCache &cache = regexCache();
    std::lock_guard guard(cache.lock());
    URegularExpression *regex = cache.regexFor(pattern);

    // ICU reads the subject in place: this copy keeps it alive while the text itself changes.
    const QString subject = text;
    UErrorCode status = U_ZERO_ERROR;
    uregex_setText(regex, utf16(subject), int32_t(subject.size()), &status);
    checkStatus(status, pattern);
    // Drop the pointer into the subject before it goes, whatever way this call ends.
    struct Detach
    {
        URegularExpression *regex;
        ~Detach()
        {
            static const UChar empty[1] = {0};
            UErrorCode ignored = U_ZERO_ERROR;
            uregex_setText(regex, empty, 0, &ignored);
        }
    } detach{regex};

    // Room for the usual case; a result that does not fit is measured by the first pass and
    // written by a second one.
    std::vector<UChar> buffer(
        size_t(std::min<qsizetype>(INT_MAX, subject.size() * 2 + replacement.size() + 16)));
    ReplacePass pass = replaceAll(regex, pattern, replacement, buffer);
    if (pass.count == 0)
        return 0;
    if (pass.overflowed) {
        if (pass.length >= INT_MAX)
            throwUnexpected(U_BUFFER_OVERFLOW_ERROR, pattern);
        buffer.resize(size_t(pass.length) + 1);
        pass = replaceAll(regex, pattern, replacement, buffer);
        if (pass.overflowed)
            throwUnexpected(U_BUFFER_OVERFLOW_ERROR, pattern);
    }
    text = fromUtf16(buffer.data(), qsizetype(pass.length));
    return pass.count;
}
