#pragma once

#include <cstdio>

namespace paravue
{

/// Whether \a stream leads to a terminal, rather than to a file or another program.
bool isTerminal(std::FILE *stream);

} // namespace paravue
