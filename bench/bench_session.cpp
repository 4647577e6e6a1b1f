// A session with a recorder over the loopback interface beside a plain client that does the same work
// (PlainClient), against the simulator with its shipped model.

#include "PairedRatio.h"
#include "PlainClient.h"
#include "SimulatedRecorder.h"
#include "device/OrbNetSetup.h"

#include <QCoreApplication>
#include <QEventLoop>

using namespace paravue::bench;
using Clock = std::chrono::steady_clock;

namespace
{

/// From \a start() to the signal \a end of \a object.
template <class Object, class Start, class Signal>
Seconds exchange(Object &object, Start start, Signal end)
{
    QEventLoop loop;
    Seconds taken{};
    Clock::time_point began;
    const auto connection = QObject::connect(&object, end, &loop, [&] {
        taken = Clock::now() - began;
        // The exchange is over once its last signal has been delivered.
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    began = Clock::now();
    start();
    loop.exec();
    QObject::disconnect(connection);
    return taken;
}

class Store : public OrbNetSetup
{
public:
    explicit Store(const SimulatedRecorder &recorder) : OrbNetSetup(recorder.address())
    {
        connect(this, &OrbSetup::pseudothrow, this,
                [](const QString &text) { qFatal("The library reports: %s", qPrintable(text)); });
    }
    Seconds fetch()
    {
        return exchange(
            *this, [this] { load(); }, &OrbSetup::loadDone);
    }
    Seconds send()
    {
        return exchange(
            *this, [this] { store(); }, &OrbSetup::storeDone);
    }
};

class Peer : public PlainClient
{
public:
    explicit Peer(const SimulatedRecorder &recorder)
        : PlainClient(SimulatedRecorder::Login, SimulatedRecorder::Password, recorder.port())
    {
    }
    Seconds fetchAll()
    {
        return exchange(
            *this, [this] { fetch(); }, &PlainClient::done);
    }
    Seconds sendAll()
    {
        return exchange(
            *this, [this] { send(); }, &PlainClient::done);
    }
};

/// A session each, made and removed outside the measured time.
Seconds fetchOurs(const SimulatedRecorder &recorder)
{
    return Store(recorder).fetch();
}

Seconds fetchPeers(const SimulatedRecorder &recorder)
{
    return Peer(recorder).fetchAll();
}

void fetching(benchmark::State &state, const SimulatedRecorder &recorder, double limit)
{
    PairedOptions options;
    options.limit = limit;
    pairedRatio(
        state, [&] { return fetchOurs(recorder); }, [&] { return fetchPeers(recorder); }, options);
}

void fetchSession(benchmark::State &state)
{
    const SimulatedRecorder recorder;
    fetching(state, recorder, 1.1);
}
BENCHMARK(fetchSession)->Apply(applyPaired);

void fetchSessionFromASlowRecorder(benchmark::State &state)
{
    const SimulatedRecorder recorder(1, 20);
    fetching(state, recorder, 1.05);
}
BENCHMARK(fetchSessionFromASlowRecorder)->Apply(applyPaired);

constexpr int LargeTimes = 40;

void fetchLargeFiles(benchmark::State &state)
{
    const SimulatedRecorder recorder(LargeTimes);
    fetching(state, recorder, 1.1);
}
BENCHMARK(fetchLargeFiles)->Apply(applyPaired);

/// Ours beside ours: the time per byte of files that are 40 times larger.
void fetchLargeFilesPerByte(benchmark::State &state)
{
    const SimulatedRecorder large(LargeTimes);
    const SimulatedRecorder small;
    PairedOptions options;
    options.limit = 1.0;
    options.ourUnits = LargeTimes;
    pairedRatio(
        state, [&] { return fetchOurs(large); }, [&] { return fetchOurs(small); }, options);
}
BENCHMARK(fetchLargeFilesPerByte)->Apply(applyPaired);

void sendSession(benchmark::State &state)
{
    const SimulatedRecorder recorder;
    Store store(recorder);
    store.fetch();
    Peer peer(recorder);
    peer.fetchAll();
    pairedRatio(
        state, [&] { return store.send(); }, [&] { return peer.sendAll(); });
}
BENCHMARK(sendSession)->Apply(applyPaired);

Seconds sendPeersBlocking(const SimulatedRecorder &recorder)
{
    Peer peer(recorder);
    peer.fetchAll();
    const Clock::time_point began = Clock::now();
    peer.sendBlocking();
    return Clock::now() - began;
}

/// The first save of a session, in which values of all files were read.
Seconds sendOursAfterReading(const SimulatedRecorder &recorder)
{
    Store store(recorder);
    store.fetch();
    for (const QString &name : store.fetchedFiles()) {
        if (name != "interface") // which holds no values
            benchmark::DoNotOptimize(store.value(name + "/untitled/NAME/"));
    }
    return store.send();
}

Seconds sendOurs(const SimulatedRecorder &recorder)
{
    Store store(recorder);
    store.fetch();
    return store.send();
}

template <auto ours, int limit>
void sendingBesideASocket(benchmark::State &state)
{
    const SimulatedRecorder recorder(int(state.range(0)));
    PairedOptions options;
    options.limit = limit;
    pairedRatio(
        state, [&] { return ours(recorder); }, [&] { return sendPeersBlocking(recorder); }, options);
}
BENCHMARK(sendingBesideASocket<sendOurs, 3>)->Arg(1)->Apply(applyPaired);
BENCHMARK(sendingBesideASocket<sendOursAfterReading, 4>)->Arg(1)->Apply(applyPaired);
BENCHMARK(sendingBesideASocket<sendOursAfterReading, 8>)->Arg(LargeTimes)->Apply(applyPaired);

/// The slowest command of a store(): with a delay of gathered bytes it takes some 40 ms, without one it is
/// far below.
void sendSlowestCommand(benchmark::State &state)
{
    constexpr double StallMilliseconds = 20;
    const SimulatedRecorder recorder;
    Store store(recorder);
    store.fetch();
    Seconds best{1e9};
    for (auto _ : state) {
        Seconds slowest{};
        Clock::time_point last = Clock::now();
        const auto connection = QObject::connect(&store, &OrbSetup::progress, &store, [&] {
            slowest = std::max<Seconds>(slowest, Clock::now() - last);
            last = Clock::now();
        });
        store.send();
        QObject::disconnect(connection);
        best = std::min(best, slowest);
        state.SetIterationTime(slowest.count());
    }
    state.counters["slowest_ms"] = best.count() * 1e3;
    state.SetLabel(best.count() * 1e3 < StallMilliseconds ? "no stall" : "STALLS");
}
BENCHMARK(sendSlowestCommand)->Apply(applyPaired);

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
