#include "Commands.h"
#include "ControlCommandLine.h"
#include "EditRun.h"
#include "WantedValues.h"

namespace paravue
{

void runSet(const ControlCommandLine &line, const CommandEnd &end)
{
    QList<WantedValue> given;
    if (const Outcome read = readWantedValues(line, given); !read.isDone())
        return end(read, {});
    const auto source = [given, isForced = line.force](RecorderSession &session, const FileContents &files,
                                                       QList<WantedValue> &wanted) {
        wanted = given;
        return checkWantedValues(wanted, session, files, isForced);
    };
    runEdits(line, source, end);
}

} // namespace paravue
