#pragma once

#include "store/TextPattern.h"

#include <QValidator>

namespace paravue
{

/// Accepts texts that a recorder's pattern matches as a whole. A text that can still become one by further
/// typing is intermediate.
class PatternValidator : public QValidator
{
public:
    PatternValidator(const QString &pattern, QObject *parent);

    State validate(QString &text, int &position) const override;

private:
    TextPattern m_pattern;
};

} // namespace paravue
