#include "changes/ShownValue.h"

#include "changes/SecretKeys.h"

#include <QCoreApplication>

namespace paravue
{

namespace
{

class ValueText
{
    Q_DECLARE_TR_FUNCTIONS(ShownValue)
};

} // namespace

QString shownValue(const std::optional<QString> &value, bool isSecret)
{
    if (!value)
        return ValueText::tr("(none)");
    if (isSecret)
        return SecretKeys::dots();
    return value->isEmpty() ? QStringLiteral("–") : value->simplified();
}

} // namespace paravue
