// paravue-setup from the start of its process until its window holds the settings of a simulated recorder,
// beside the least program that shows a dialog (bare_dialog.cpp). Neither has painted by then.

#include "PairedRatio.h"

#include "ctl/ManyRecorders.h"

#include <QCoreApplication>
#include <QProcess>

namespace
{

using namespace paravue::bench;
using paravue::test::ManyRecorders;

constexpr int LongestWait = 60'000; // milliseconds

struct Start {
    Seconds taken{};
    double residentMiB = 0; ///< at its largest
};

double residentMiB(qint64 process)
{
    QFile file(QStringLiteral("/proc/%1/status").arg(process));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(file.fileName()));
    const QByteArray status = file.readAll();
    const QByteArray line = status.sliced(status.indexOf("VmHWM:") + 6);
    return line.first(line.indexOf("kB")).trimmed().toDouble() / 1024;
}

/// Starts a program, and ends it once it has printed \a wanted.
Start start(const QString &program, const QStringList &arguments, const QByteArray &wanted)
{
    QProcess process;
    const auto began = std::chrono::steady_clock::now();
    process.start(program, arguments);
    QByteArray said;
    while (!said.contains(wanted)) {
        if (!process.waitForReadyRead(LongestWait))
            qFatal("%s does not say \"%s\"", qPrintable(program), wanted.constData());
        said += process.readAllStandardOutput();
    }
    const Start result{std::chrono::steady_clock::now() - began, residentMiB(process.processId())};
    process.terminate();
    process.waitForFinished(LongestWait);
    return result;
}

Start startSetup(const ManyRecorders &recorders)
{
    return start(SETUP_PROGRAM, {"--log", "/dev/stdout", "admin:admin@" + recorders.address(0)},
                 "description shown");
}

Start startBareDialog()
{
    return start(BARE_DIALOG_PROGRAM, {}, "shown");
}

void startToShown(benchmark::State &state)
{
    const ManyRecorders recorders(1);
    pairedRatio(
        state, [&] { return startSetup(recorders).taken; }, [&] { return startBareDialog().taken; });
}
BENCHMARK(startToShown)->Apply(applyPaired);

void memoryWhenShown(benchmark::State &state)
{
    const ManyRecorders recorders(1);
    for (auto _ : state) {
        const Start ours = startSetup(recorders);
        state.counters["resident_MiB"] = ours.residentMiB;
        state.counters["peer_MiB"] = startBareDialog().residentMiB;
        state.SetIterationTime(ours.taken.count());
    }
}
BENCHMARK(memoryWhenShown)->Apply(applyPaired)->Iterations(3);

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QCoreApplication application(argc, argv);
    // What the user's desktop has kept is not used.
    const QTemporaryDir user;
    qputenv("XDG_CONFIG_HOME", user.path().toLocal8Bit());
    qputenv("XDG_DATA_HOME", user.path().toLocal8Bit());
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
