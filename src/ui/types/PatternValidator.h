#pragma once

#include "store/TextPattern.h"

#include <QValidator>

namespace paravue
{

/// Accepts the texts that a recorder's pattern matches as a whole, and lets the user type towards one.
class PatternValidator : public QValidator
{
public:
    PatternValidator(const QString &pattern, QObject *parent);

    State validate(QString &text, int &position) const override;

private:
    TextPattern m_pattern;
};

} // namespace paravue
