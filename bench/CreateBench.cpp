// SPDX-License-Identifier: MIT

// Creating N sessions, all of them, and then committing them one by one, in one set buffer. The
// registry is in memory, where no disk hides the work.
//
//   create_commit  the processor time of all N; "per_session" is that of one
//
// Some sessions come before those that are measured, so that a small N does not measure a
// registry's first use.

#include "support/Scene.h"

#include <benchmark/benchmark.h>
#include <time.h>

namespace {

int const kSessionsBefore = 20;

double processorSeconds()
{
    timespec time;
    need(::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time), "clock_gettime");
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

void createAndCommit(RegistryHost& host, int begin, int end)
{
    for (int i = begin; i < end; ++i)
        need(host.create(Scene::sViewKey(i), REG_TYPE_STRING), "create");
    for (int i = begin; i < end; ++i)
        need(host.commit(Scene::sViewKey(i)), "commit");
}

void create_commit(benchmark::State& state)
{
    int const sessions = static_cast<int>(state.range(0));
    double seconds = 0;
    for (auto _ : state) {
        Scene scene(0, Scene::sMemory());
        createAndCommit(scene.host(), sessions, sessions + kSessionsBefore);
        double const start = processorSeconds();
        createAndCommit(scene.host(), 0, sessions);
        double const elapsed = processorSeconds() - start;
        state.SetIterationTime(elapsed);
        seconds += elapsed;
    }
    state.counters["per_session"] = seconds / static_cast<double>(state.iterations()) / sessions;
    state.SetComplexityN(sessions);
}

BENCHMARK(create_commit)
    ->RangeMultiplier(10)
    ->Range(10, 10000)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond)
    ->Complexity();

} // namespace

BENCHMARK_MAIN();
