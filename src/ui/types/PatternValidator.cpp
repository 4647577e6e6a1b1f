#include "ui/types/PatternValidator.h"

namespace paravue
{

PatternValidator::PatternValidator(const QString &pattern, QObject *parent)
    : QValidator(parent), m_pattern(TextPattern::ofRecorder(pattern))
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
