// Creating N sessions, all of them, and then committing them one by one, in one set buffer. The
// registry is in memory, where no disk hides the work.
//
//   create_commit  the time of all N; "per_session" is that of one

#include "support/Scene.h"

#include <chrono>

#include <benchmark/benchmark.h>

namespace {

typedef std::chrono::steady_clock Clock;

void createAndCommit(RegistryHost& host, int sessions)
{
    for (int i = 0; i < sessions; ++i)
        need(host.create(Scene::sViewKey(i), REG_TYPE_STRING), "create");
    for (int i = 0; i < sessions; ++i)
        need(host.commit(Scene::sViewKey(i)), "commit");
}

void create_commit(benchmark::State& state)
{
    int const sessions = static_cast<int>(state.range(0));
    double seconds = 0;
    for (auto _ : state) {
        Scene scene(0, Scene::sMemory());
        Clock::time_point const start = Clock::now();
        createAndCommit(scene.host(), sessions);
        double const elapsed = std::chrono::duration<double>(Clock::now() - start).count();
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
