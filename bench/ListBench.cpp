// SPDX-License-Identifier: MIT

// Listing N sessions.
//
//   listing   of the view
//   baseline     of the registry directory behind it

#include "support/Scene.h"

#include <benchmark/benchmark.h>

namespace {

void listLoop(benchmark::State& state, QString const& directory)
{
    int const sessions = static_cast<int>(state.range(0));
    Scene& scene = Scene::sWith(sessions);
    if (scene.get(directory).size() != sessions)
        qFatal("not all sessions are listed");
    for (auto _ : state)
        benchmark::DoNotOptimize(scene.get(directory));
    state.SetComplexityN(sessions);
}

void listing(benchmark::State& state)
{
    listLoop(state, Scene::sViewDirectory());
}

void baselineOfListing(benchmark::State& state)
{
    listLoop(state, Scene::sRegistryDirectory());
}

BENCHMARK(listing)->RangeMultiplier(10)->Range(10, 100000)->Complexity();
BENCHMARK(baselineOfListing)
    ->Name("baseline")
    ->RangeMultiplier(10)
    ->Range(10, 100000)
    ->Complexity();

} // namespace

BENCHMARK_MAIN();
