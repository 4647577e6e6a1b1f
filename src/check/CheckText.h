#pragma once

#include <QCoreApplication>

namespace paravue
{

/// What a check says: CheckText::tr(). Its translations stand under the name of the public interface,
/// whichever class says it.
class CheckText
{
    Q_DECLARE_TR_FUNCTIONS(DescriptionCheck)
};

} // namespace paravue
