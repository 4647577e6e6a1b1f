#pragma once

#include <QCoreApplication>

namespace paravue
{

/// For all texts of the program.
class InfoText
{
    Q_DECLARE_TR_FUNCTIONS(InfoText)
};

} // namespace paravue
