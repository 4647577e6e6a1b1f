#include "Terminal.h"

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace paravue
{

bool isTerminal(std::FILE *stream)
{
#ifdef _WIN32
    return _isatty(_fileno(stream)) != 0;
#else
    return ::isatty(::fileno(stream)) != 0;
#endif
}

QString coloured(const QString &text, Colour colour)
{
#ifdef _WIN32
    constexpr bool KnowsColours = false; // consoles have to be asked for them
#else
    static const bool KnowsColours = isTerminal(stdout) && qEnvironmentVariableIsEmpty("NO_COLOR") &&
                                     qEnvironmentVariable("TERM") != u"dumb";
#endif
    if (!KnowsColours || colour == Colour::None)
        return text;
    const int code = colour == Colour::Red ? 31 : colour == Colour::Green ? 32 : 33;
    return QStringLiteral("\x1b[%1m%2\x1b[0m").arg(code).arg(text);
}

} // namespace paravue
