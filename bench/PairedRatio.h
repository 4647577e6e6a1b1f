#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <limits>
#include <type_traits>
#include <vector>

/// Compares our code with a peer that does the same observable work, in one program.
///
/// Both run in turn, so that a change of clock speed or a busy neighbour meets both alike, and the fastest
/// run of each counts: noise only ever adds time. The result is the ratio of the two, which means the same on
/// a slow and on a fast machine. The median of the ratios of all rounds stands beside it.
namespace paravue::bench
{

using Seconds = std::chrono::duration<double>;

struct PairedOptions {
    /// The largest acceptable ratio, shown beside the measured one; 0 when there is none.
    double limit = 0;
    /// How many units of work one run of each side does; the ratio is that of the times per unit.
    double ourUnits = 1;
    double peerUnits = 1;
};

inline constexpr int PairedRuns = 15;

template <typename Work>
Seconds timeOf(Work &work)
{
    if constexpr (std::is_convertible_v<std::invoke_result_t<Work &>, Seconds>) {
        return work();
    } else {
        const auto start = std::chrono::steady_clock::now();
        work();
        return std::chrono::steady_clock::now() - start;
    }
}

/// The body of a benchmark. \a ours and \a peer take nothing. One that has something to prepare or to tidy up
/// outside the measured time returns the measured Seconds itself (see timeOf()); one that returns nothing is
/// measured whole. Register the benchmark with applyPaired().
template <typename Ours, typename Peer>
void pairedRatio(benchmark::State &state, Ours ours, Peer peer, PairedOptions options = {})
{
    Seconds ourBest{std::numeric_limits<double>::max()};
    Seconds peerBest = ourBest;
    std::vector<double> ratios;
    const double units = options.peerUnits / options.ourUnits;
    bool oursFirst = true;
    // Fills caches and lazily made tables of both sides.
    timeOf(ours);
    timeOf(peer);
    for (auto _ : state) {
        Seconds ourTime{};
        if (oursFirst)
            ourTime = timeOf(ours);
        const Seconds peerTime = timeOf(peer);
        if (!oursFirst)
            ourTime = timeOf(ours);
        oursFirst = !oursFirst;
        ourBest = std::min(ourBest, ourTime);
        peerBest = std::min(peerBest, peerTime);
        ratios.push_back(ourTime / peerTime * units);
        state.SetIterationTime(ourTime.count());
    }
    const double ratio = ourBest / peerBest * units;
    state.counters["ratio"] = ratio;
    const auto middle = ratios.begin() + ratios.size() / 2;
    std::nth_element(ratios.begin(), middle, ratios.end());
    state.counters["median"] = *middle;
    state.counters["ours_us"] = ourBest.count() * 1e6;
    state.counters["peer_us"] = peerBest.count() * 1e6;
    if (options.limit > 0) {
        state.counters["limit"] = options.limit;
        state.SetLabel(ratio <= options.limit ? "within limit" : "OVER LIMIT");
    }
}

/// Registers with at least PairedRuns runs of each side: BENCHMARK(f)->Apply(applyPaired).
inline void applyPaired(benchmark::internal::Benchmark *registered)
{
    registered->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(PairedRuns);
}

} // namespace paravue::bench
