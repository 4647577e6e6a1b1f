#pragma once

#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>

namespace paravue
{

/// The time that all patterns of recorders may take together during one piece of work, such as a save or an
/// export: one second of the processor, spent in matching. (On a busy computer a match of microseconds can
/// take a second by the clock on the wall.) The budget covers every match of its thread while the object
/// lives; one that is made within another shares its time. A match without a budget around it has one to
/// itself.
class PatternBudget
{
public:
    PatternBudget();
    ~PatternBudget();
    Q_DISABLE_COPY_MOVE(PatternBudget)

    /// True when the time is used up. Patterns of recorders then match nothing until the work is over, so its
    /// result is incomplete and should be dropped with a message.
    bool isExhausted() const;

private:
    friend class TextPattern;
    void spend(std::chrono::nanoseconds time);

    PatternBudget *const m_around; ///< null for the outermost one, which counts
    std::chrono::nanoseconds m_spent{};
};

/// A regular expression with the meaning that recorders rely on: in configuration addresses, state directives
/// and the validators of the interface description.
///
/// They are written for an older engine: "." matches line ends too, "$" matches the very end only, "\s", "\d"
/// and "\w" know all of Unicode, "\x0451" is one character, and "{,3}" is a repetition.
///
/// A pattern of a recorder (ofRecorder()) may be wrong or expensive: one that does not compile, or that the
/// engine gives up on, matches nothing (from then on) and is logged; all of them together are held to the
/// PatternBudget. A pattern of the program itself has no such limits.
///
/// One object is used from one thread.
class TextPattern
{
public:
    enum class Greed {
        Greedy,  ///< repetitions take as much as they can
        Minimal, ///< repetitions take as little as they can
    };

    struct Match {
        qsizetype start = 0;
        qsizetype length = 0;
        /// The whole match, then its groups; a group that took no part is a null string.
        QStringList captures;
    };

    /// A pattern of the program.
    explicit TextPattern(const QString &pattern, Greed greed = Greed::Greedy);
    static TextPattern ofRecorder(const QString &pattern, Greed greed = Greed::Greedy);

    bool isUsable() const { return m_usable; }

    /// Why \a pattern does not compile, in words; empty when it does. Logs nothing.
    static QString fault(const QString &pattern);

    /// Does the pattern match the whole of \a text?
    bool matchesWhole(const QString &text) const;
    /// The captures of a match of the whole of \a text.
    std::optional<Match> matchWhole(const QString &text) const;
    /// The first match in \a text that starts at \a from or later.
    std::optional<Match> find(const QString &text, qsizetype from = 0) const;

    /// Puts \a replacement, taken literally, in place of every match in \a text. Nothing when the result
    /// would be longer than \a maximumSize.
    std::optional<QString> replaceAll(const QString &text, const QString &replacement,
                                      qsizetype maximumSize) const;

    /// Could \a text, or what a user makes of it by typing on, match as a whole?
    bool matchesBeginning(const QString &text) const;

private:
    enum class Origin { Program, Recorder };
    TextPattern(const QString &pattern, Greed greed, Origin origin);

    QRegularExpressionMatch run(const QRegularExpression &expression, const QString &text, qsizetype from,
                                QRegularExpression::MatchOptions options = QRegularExpression::NoMatchOption,
                                QRegularExpression::MatchType type = QRegularExpression::NormalMatch) const;
    std::optional<Match> toMatch(const QRegularExpressionMatch &match) const;
    void giveUp(const QString &why) const;

    QString m_pattern; ///< as it was given, for the log
    Origin m_origin;
    QRegularExpression m_search;
    QRegularExpression m_whole;
    mutable bool m_usable = true;
};

} // namespace paravue
