#pragma once

#include <QCoreApplication>

namespace paravue
{

/// Translates the texts of a check: CheckText::tr(). They share the translation context "DescriptionCheck",
/// whichever class reports them.
class CheckText
{
    Q_DECLARE_TR_FUNCTIONS(DescriptionCheck)
};

} // namespace paravue
