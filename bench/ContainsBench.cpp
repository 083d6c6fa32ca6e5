// SPDX-License-Identifier: MIT

// Whether one leaf of one session is there, of N sessions.
//
//   contains   of the session's name
//   baseline      one listing of the sessions, through the same host

#include "support/Scene.h"

#include <benchmark/benchmark.h>

namespace {

void contains(benchmark::State& state)
{
    int const sessions = static_cast<int>(state.range(0));
    Scene& scene = Scene::sWith(sessions);
    QString const key = Scene::sViewKey(sessions / 2) + QLatin1String("/name");
    for (auto _ : state)
        need(scene.host().contains(key), "contains");
    state.SetComplexityN(sessions);
}

void baselineOfContains(benchmark::State& state)
{
    int const sessions = static_cast<int>(state.range(0));
    Scene& scene = Scene::sWith(sessions);
    for (auto _ : state)
        benchmark::DoNotOptimize(scene.get(Scene::sViewDirectory()));
    state.SetComplexityN(sessions);
}

BENCHMARK(contains)->RangeMultiplier(10)->Range(10, 10000)->Complexity();
BENCHMARK(baselineOfContains)
    ->Name("baseline")
    ->RangeMultiplier(10)
    ->Range(10, 10000)
    ->Complexity();

} // namespace

BENCHMARK_MAIN();
