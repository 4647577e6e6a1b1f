#include "ui/types/PatternValidator.h"

#include <QCache>

namespace paravue
{
namespace
{

/// Compiling takes longer than all the rest of a field, and a description has dozens of fields with one
/// pattern. A copy shares what was compiled, but whether it was given up is its own.
TextPattern compiled(const QString &pattern)
{
    constexpr int MostKept = 100;
    static QCache<QString, TextPattern> known(MostKept);
    if (const TextPattern *found = known.object(pattern))
        return *found;
    TextPattern made = TextPattern::ofRecorder(pattern);
    if (made.isUsable()) // it may be only for want of time that it is not
        known.insert(pattern, new TextPattern(made));
    return made;
}

} // namespace

PatternValidator::PatternValidator(const QString &pattern, QObject *parent)
    : QValidator(parent), m_pattern(compiled(pattern))
{
}

QValidator::State PatternValidator::validate(QString &text, int &) const
{
    const PatternBudget oneKeystroke;
    if (m_pattern.matchesWhole(text))
        return Acceptable;
    return m_pattern.matchesBeginning(text) ? Intermediate : Invalid;
}

} // namespace paravue
