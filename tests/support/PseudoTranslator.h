#pragma once

#include <QString>
#include <QTranslator>

namespace paravue::test
{

/// The pseudo-translation, with brackets around Qt's own texts too.
class PseudoTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *text, const char *comment, int number) const override
    {
        const QString found = QTranslator::translate(context, text, comment, number);
        return found.isEmpty() && *context == 'Q' ? u'[' + QString::fromUtf8(text) + "~~~]" : found;
    }
};

} // namespace paravue::test
