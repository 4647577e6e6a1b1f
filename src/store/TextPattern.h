#pragma once

#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>

namespace paravue
{

/// A regular expression as recorders write them: in configuration addresses, state directives and the
/// validators of the interface description.
///
/// They are written for an older engine, and keep that engine's meaning here: "." matches line ends too, "$"
/// matches the very end only, "\s", "\d" and "\w" know all of Unicode, "\x0451" is one character, and "{,3}"
/// is a repetition. They come from outside and may be wrong or expensive: a pattern that does not compile, or
/// that the engine gives up on, matches nothing (from then on) and is logged.
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

    explicit TextPattern(const QString &pattern, Greed greed = Greed::Greedy);

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
    QRegularExpressionMatch run(const QRegularExpression &expression, const QString &text, qsizetype from,
                                QRegularExpression::MatchOptions options = QRegularExpression::NoMatchOption,
                                QRegularExpression::MatchType type = QRegularExpression::NormalMatch) const;
    std::optional<Match> toMatch(const QRegularExpressionMatch &match) const;
    void giveUp(const QString &why) const;

    QString m_pattern; ///< as it was given, for the log
    QRegularExpression m_search;
    QRegularExpression m_whole;
    mutable bool m_usable = true;
    mutable std::chrono::steady_clock::duration m_spent{};
};

} // namespace paravue
