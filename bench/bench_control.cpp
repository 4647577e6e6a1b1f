// paravue-ctl from the start of its process to its end, beside a program that does the same with plain
// sockets (control_peer.cpp). The recorders are simulated, in a third process.

#include "PairedRatio.h"

#include "ctl/ManyRecorders.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cmath>
#include <string>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

using namespace paravue::bench;
using paravue::test::ManyRecorders;
using Clock = std::chrono::steady_clock;

struct ProcessRun {
    Seconds taken{};
    long residentKiB = 0; ///< at its largest
};

/// Runs a program that has to end with \a exitCode. What it prints is thrown away.
ProcessRun runProcess(const QStringList &words, int exitCode = 0)
{
    std::vector<std::string> texts;
    for (const QString &word : words)
        texts.push_back(word.toStdString());
    std::vector<char *> arguments;
    for (std::string &text : texts)
        arguments.push_back(text.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t files{};
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    const auto began = Clock::now();
    pid_t process = 0;
    if (::posix_spawn(&process, arguments.front(), &files, nullptr, arguments.data(), environ) != 0)
        qFatal("Cannot start %s", arguments.front());
    int status = 0;
    rusage usage{};
    if (::wait4(process, &status, 0, &usage) != process || !WIFEXITED(status) ||
        WEXITSTATUS(status) != exitCode)
        qFatal("%s has failed", qPrintable(words.join(u' ')));
    const Seconds taken = Clock::now() - began;
    posix_spawn_file_actions_destroy(&files);
    return {taken, usage.ru_maxrss};
}

constexpr int Recorders = 1000;
constexpr int Jobs = 200;

/// The value that is read everywhere.
const QString Path = QStringLiteral("net/untitled/IP");

QStringList getAll(const ManyRecorders &recorders, int jobs)
{
    return {CONTROL_PROGRAM,       "get",       Path, "--inventory", recorders.inventory(), "--jobs",
            QString::number(jobs), "--timeout", "120"};
}

QStringList peerOf(const ManyRecorders &recorders, int count, int jobs)
{
    QStringList words{PEER_PROGRAM, QString::number(jobs)};
    for (int number = 0; number < count; ++number)
        words << recorders.address(number).section(u':', 1);
    return words;
}

void requireListening(const ManyRecorders &recorders)
{
    if (!recorders.areListening())
        qFatal("The recorders do not start");
}

void getOneValue(benchmark::State &state)
{
    const ManyRecorders recorders(1);
    requireListening(recorders);
    pairedRatio(
        state,
        [&] {
            return runProcess({CONTROL_PROGRAM, "get", recorders.address(0), Path}).taken;
        },
        [&] { return runProcess(peerOf(recorders, 1, 1)).taken; }, {.limit = 1.5});
}
BENCHMARK(getOneValue)->Apply(applyPaired);

void limited(benchmark::State &state, const char *name, double value, double limit)
{
    state.counters[name] = value;
    state.counters["limit"] = limit;
    state.SetLabel(value <= limit ? "within limit" : "OVER LIMIT");
}

void memoryOfGet(benchmark::State &state)
{
    const ManyRecorders recorders(1);
    requireListening(recorders);
    long most = 0;
    for (auto _ : state) {
        const ProcessRun run = runProcess({CONTROL_PROGRAM, "get", recorders.address(0), Path});
        most = std::max(most, run.residentKiB);
        state.SetIterationTime(run.taken.count());
    }
    limited(state, "resident_MiB", double(most) / 1024, 30);
}
BENCHMARK(memoryOfGet)->Apply(applyPaired);

constexpr int RunsOfMany = 3; // each takes seconds

void getFromAThousand(benchmark::State &state)
{
    const ManyRecorders recorders(Recorders);
    requireListening(recorders);
    pairedRatio(
        state, [&] { return runProcess(getAll(recorders, Jobs)).taken; },
        [&] { return runProcess(peerOf(recorders, Recorders, Jobs)).taken; }, {.limit = 1.3});
}
BENCHMARK(getFromAThousand)->Apply(applyPaired)->Iterations(RunsOfMany);

/// By how much each further session at work adds to the memory of the program.
void memoryOfSessions(benchmark::State &state)
{
    const ManyRecorders recorders(Recorders);
    requireListening(recorders);
    long alone = 0;
    long together = 0;
    for (auto _ : state) {
        alone = std::max(alone, runProcess(getAll(recorders, 1)).residentKiB);
        const ProcessRun run = runProcess(getAll(recorders, Jobs));
        together = std::max(together, run.residentKiB);
        state.SetIterationTime(run.taken.count());
    }
    limited(state, "KiB_per_session", double(together - alone) / (Jobs - 1), 200);
}
BENCHMARK(memoryOfSessions)->Apply(applyPaired)->Iterations(1);

/// Recorders that answer late are waited for at the same time.
void getFromAThousandSlow(benchmark::State &state)
{
    constexpr int Delay = 100;
    constexpr int Answers = 10; // the login and nine files
    const double ideal = Delay / 1e3 * Answers * std::ceil(double(Recorders) / Jobs);
    const ManyRecorders recorders(Recorders, Delay);
    requireListening(recorders);
    runProcess(getAll(recorders, Jobs)); // at first each recorder packs its description
    double best = 1e9;
    double peerBest = best;
    for (auto _ : state) {
        const Seconds taken = runProcess(getAll(recorders, Jobs)).taken;
        best = std::min(best, taken.count());
        // On a busy computer the recorders are too slow for anybody.
        peerBest = std::min(peerBest, runProcess(peerOf(recorders, Recorders, Jobs)).taken.count());
        state.SetIterationTime(taken.count());
    }
    state.counters["peer_ratio"] = peerBest / ideal;
    limited(state, "ratio", best / ideal, 1.3);
}
BENCHMARK(getFromAThousandSlow)->Apply(applyPaired)->Iterations(RunsOfMany);

void writeManyValues(const QString &folder, const QByteArray &value)
{
    QFile file(folder + QStringLiteral("/net"));
    if (!file.open(QIODevice::Append))
        qFatal("Cannot write %s", qPrintable(file.fileName()));
    for (int number = 0; number < 100'000; ++number)
        file.write("VALUE_" + QByteArray::number(number) + "='" + value + ' ' + QByteArray::number(number) +
                   "'\r\n");
}

/// Beside reading one value from both at the same time, for which all files are fetched and parsed.
void diffOfManyValues(benchmark::State &state)
{
    const ManyRecorders recorders(2);
    requireListening(recorders);
    writeManyValues(recorders.folder("r1"), "Value number");
    writeManyValues(recorders.folder("r2"), state.range(0) ? "Another" : "Value number");
    const int exitCode = state.range(0) ? 5 : 0;
    pairedRatio(
        state,
        [&] {
            return runProcess({CONTROL_PROGRAM, "diff", recorders.address(0), recorders.address(1)}, exitCode)
                .taken;
        },
        [&] { return runProcess(getAll(recorders, 2)).taken; }, {.limit = 2});
}
BENCHMARK(diffOfManyValues)->ArgName("differ")->Arg(0)->Arg(1)->Apply(applyPaired);

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    qputenv("PARAVUE_PASSWORD", "admin");
    // What other programs have left in the usual folder, all sides would look at. And ext4 passes over the
    // files that were removed in the last seconds, one by one, for each new file: 40,000 files of a run take
    // half of its time.
    const QString memory = QStringLiteral("/dev/shm");
    const QString folder = QFileInfo(memory).isWritable() ? memory : QDir::tempPath();
    const QTemporaryDir temporary(folder + QStringLiteral("/paravue-bench-XXXXXX"));
    qputenv("TMPDIR", temporary.path().toLocal8Bit());
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
