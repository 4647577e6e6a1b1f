#include "store/TextPattern.h"

#include <QLoggingCategory>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <ctime>
#endif

namespace paravue
{

namespace
{

Q_LOGGING_CATEGORY(patternLog, "paravue.pattern")

/// What one match of a recorder's pattern may cost, in steps of the engine, and all of one piece of work.
constexpr QStringView StepLimit = u"(*LIMIT_MATCH=1000000)";
constexpr std::chrono::seconds TimeLimit(1);

/// What the thread has used of the processor.
std::chrono::nanoseconds threadTime()
{
#ifdef Q_OS_WIN
    FILETIME created{};
    FILETIME ended{};
    FILETIME kernel{};
    FILETIME user{};
    GetThreadTimes(GetCurrentThread(), &created, &ended, &kernel, &user);
    const ULARGE_INTEGER used{{user.dwLowDateTime, user.dwHighDateTime}};
    return std::chrono::nanoseconds(100) * qint64(used.QuadPart);
#else
    timespec used{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
    return std::chrono::seconds(used.tv_sec) + std::chrono::nanoseconds(used.tv_nsec);
#endif
}

thread_local PatternBudget *currentBudget = nullptr;

bool isHexDigit(QChar c)
{
    return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}

/// Copies the escape sequence at \a i (a backslash and what belongs to it) and returns where it ends.
qsizetype copyEscape(const QString &pattern, qsizetype i, QString &result)
{
    qsizetype end = i + 2;
    if (end > pattern.size() || pattern.at(i + 1) != u'x') {
        result += QStringView(pattern).sliced(i, qMin<qsizetype>(2, pattern.size() - i));
        return end;
    }
    while (end < pattern.size() && end < i + 6 && isHexDigit(pattern.at(end)))
        ++end;
    result += u"\\x{";
    result += QStringView(pattern).sliced(i + 2, end - i - 2);
    result += u'}';
    return end;
}

/// Writes what the older engine means differently in today's syntax.
QString translated(const QString &pattern)
{
    QString result;
    result.reserve(pattern.size() + 16);
    bool inClass = false;
    for (qsizetype i = 0; i < pattern.size();) {
        const QChar c = pattern.at(i);
        if (c == u'\\') {
            i = copyEscape(pattern, i, result);
            continue;
        }
        if (c == u'[' && !inClass) {
            inClass = true;
            result += c;
            ++i;
            // A bracket that comes first, also behind "^", is a member of the class.
            for (const QChar first : {u'^', u']'}) {
                if (i < pattern.size() && pattern.at(i) == first) {
                    result += first;
                    ++i;
                }
            }
            continue;
        }
        if (c == u']')
            inClass = false;
        if (!inClass && c == u'$')
            result += u"\\z";
        else if (!inClass && c == u'{' && i + 1 < pattern.size() && pattern.at(i + 1) == u',')
            result += u"{0";
        else
            result += c;
        ++i;
    }
    return result;
}

} // namespace

PatternBudget::PatternBudget() : m_around(currentBudget)
{
    if (!m_around)
        currentBudget = this;
}

PatternBudget::~PatternBudget()
{
    if (!m_around)
        currentBudget = nullptr;
}

bool PatternBudget::isExhausted() const
{
    return (m_around ? m_around : this)->m_spent > TimeLimit;
}

void PatternBudget::spend(std::chrono::nanoseconds time)
{
    (m_around ? m_around : this)->m_spent += time;
}

TextPattern::TextPattern(const QString &pattern, Greed greed) : TextPattern(pattern, greed, Origin::Program)
{
}

TextPattern TextPattern::ofRecorder(const QString &pattern, Greed greed)
{
    return TextPattern(pattern, greed, Origin::Recorder);
}

TextPattern::TextPattern(const QString &pattern, Greed greed, Origin origin)
    : m_pattern(pattern), m_origin(origin)
{
    PatternBudget budget;
    if (origin == Origin::Recorder && budget.isExhausted()) {
        m_usable = false;
        return;
    }
    const std::chrono::nanoseconds start = threadTime();
    QRegularExpression::PatternOptions options =
        QRegularExpression::DotMatchesEverythingOption | QRegularExpression::UseUnicodePropertiesOption;
    if (greed == Greed::Minimal)
        options |= QRegularExpression::InvertedGreedinessOption;

    const QString text = translated(pattern);
    const QString limit = origin == Origin::Recorder ? StepLimit.toString() : QString();
    m_search = QRegularExpression(limit + text, options);
    // Judged before it is anchored: "a)|(b" becomes valid inside the anchoring group.
    if (m_search.isValid())
        m_whole = QRegularExpression(limit + QRegularExpression::anchoredPattern(text), options);
    if (origin == Origin::Recorder)
        budget.spend(threadTime() - start); // huge repetitions take long to compile, too
    if (!m_search.isValid())
        giveUp(m_search.errorString());
    else if (!m_whole.isValid())
        giveUp(m_whole.errorString());
}

QString TextPattern::fault(const QString &pattern)
{
    const QRegularExpression compiled(translated(pattern));
    return compiled.isValid() ? QString() : compiled.errorString();
}

void TextPattern::giveUp(const QString &why) const
{
    m_usable = false;
    qCWarning(patternLog).noquote() << "The pattern" << m_pattern.left(200) << "matches nothing:" << why;
}

QRegularExpressionMatch TextPattern::run(const QRegularExpression &expression, const QString &text,
                                         qsizetype from, QRegularExpression::MatchOptions options,
                                         QRegularExpression::MatchType type) const
{
    if (!m_usable || from < 0 || from > text.size())
        return {};
    if (from > 0 && from < text.size() && text.at(from).isLowSurrogate() &&
        text.at(from - 1).isHighSurrogate())
        ++from; // the engine refuses to start inside a character
    if (m_origin == Origin::Program)
        return expression.match(text, from, type, options);

    PatternBudget budget;
    if (budget.isExhausted())
        return {};
    const std::chrono::nanoseconds start = threadTime();
    QRegularExpressionMatch match = expression.match(text, from, type, options);
    budget.spend(threadTime() - start);
    if (!match.isValid() && text.isValidUtf16())
        giveUp(QStringLiteral("it is too expensive"));
    return m_usable && !budget.isExhausted() ? match : QRegularExpressionMatch();
}

std::optional<TextPattern::Match> TextPattern::toMatch(const QRegularExpressionMatch &match) const
{
    if (!match.hasMatch())
        return {};
    Match result{match.capturedStart(), match.capturedLength(), match.capturedTexts()};
    result.captures.resize(m_search.captureCount() + 1);
    return result;
}

bool TextPattern::matchesWhole(const QString &text) const
{
    return run(m_whole, text, 0).hasMatch();
}

std::optional<TextPattern::Match> TextPattern::matchWhole(const QString &text) const
{
    return toMatch(run(m_whole, text, 0));
}

std::optional<TextPattern::Match> TextPattern::find(const QString &text, qsizetype from) const
{
    return toMatch(run(m_search, text, from));
}

std::optional<QString> TextPattern::replaceAll(const QString &text, const QString &replacement,
                                               qsizetype maximumSize) const
{
    QString result;
    qsizetype copied = 0;
    QRegularExpressionMatch match = run(m_search, text, 0);
    while (match.hasMatch()) {
        result += QStringView(text).sliced(copied, match.capturedStart() - copied);
        result += replacement;
        if (result.size() > maximumSize)
            return {};
        copied = match.capturedEnd();
        // A match of nothing must not be found again. The text is known to be well formed by now.
        match = run(m_search, text, match.capturedLength() > 0 ? copied : copied + 1,
                    QRegularExpression::DontCheckSubjectStringMatchOption);
    }
    // A pattern that was given up on the way matches nothing, not a part of the text.
    if (!m_usable)
        return text;
    result += QStringView(text).sliced(copied);
    return result.size() <= maximumSize ? std::optional(result) : std::nullopt;
}

bool TextPattern::matchesBeginning(const QString &text) const
{
    const QRegularExpressionMatch match = run(m_whole, text, 0, QRegularExpression::NoMatchOption,
                                              QRegularExpression::PartialPreferCompleteMatch);
    return match.hasMatch() || match.hasPartialMatch();
}

} // namespace paravue
