#include "Commands.h"

#include "ControlCommandLine.h"

#include <algorithm>
#include <iterator>

namespace paravue
{

namespace
{

struct CommandFunction {
    const char *name;
    void (*run)(const ControlCommandLine &line, const CommandEnd &end);
};

constexpr CommandFunction Functions[] = {
    {"get", runGet},         {"set", runSet},           {"diff", runDiff},    {"check", runCheck},
    {"backup", runBackup},   {"restore", runRestore},   {"run", runFunction}, {"report", runReport},
    {"metrics", runMetrics}, {"describe", runDescribe},
};

} // namespace

void runCommand(const ControlCommandLine &line, const CommandEnd &end)
{
    const auto found =
        std::find_if(std::begin(Functions), std::end(Functions), [&](const CommandFunction &function) {
            return line.command == QLatin1StringView(function.name);
        });
    Q_ASSERT(found != std::end(Functions));
    found->run(line, end);
}

} // namespace paravue
