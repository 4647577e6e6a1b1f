#pragma once

#include <QString>

#include <cstdio>

namespace paravue
{

/// Whether \a stream leads to a terminal, rather than to a file or another program.
bool isTerminal(std::FILE *stream);

enum class Colour { None, Red, Green, Yellow };
/// \a text for standard output, in a colour when that is a terminal which can show it and the environment
/// variable NO_COLOR is not set.
QString coloured(const QString &text, Colour colour);

} // namespace paravue
