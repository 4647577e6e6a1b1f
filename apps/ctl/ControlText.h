#pragma once

#include <QCoreApplication>

namespace paravue
{

/// For all texts of the program.
class ControlText
{
    Q_DECLARE_TR_FUNCTIONS(ControlText)
};

} // namespace paravue
