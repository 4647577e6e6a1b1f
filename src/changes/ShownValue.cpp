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
    if (isSecret)
        return SecretKeys::dots();
    if (!value)
        return ValueText::tr("(none)");
    return value->isEmpty() ? QStringLiteral("–") : value->simplified();
}

} // namespace paravue
