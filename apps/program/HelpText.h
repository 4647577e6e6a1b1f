#pragma once

#include <QString>

class QCommandLineParser;

namespace paravue
{

/// The help of \a parser with the name of the program in the usage line, in place of the path that it was
/// started by.
QString helpText(const QCommandLineParser &parser);

} // namespace paravue
