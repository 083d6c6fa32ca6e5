// SPDX-License-Identifier: MIT

// Setting and committing one session's name, of N sessions.
//
//   disk, disk_baseline      the registry in a file on the disk, where every commit waits for it
//   memory, memory_baseline  the same in memory, where nothing hides the work: processor time
//
// A baseline writes the same row and commits it through SQLite's own interface.

#include "support/BareStore.h"
#include "support/Scene.h"

#include <QDir>

#include <benchmark/benchmark.h>

namespace {

/// A value that is another one each time.
QString nextValue()
{
    static int count = 0;
    return Scene::sName(++count);
}

void commitLoop(benchmark::State& state, Scene& scene)
{
    int const sessions = static_cast<int>(state.range(0));
    QString const key = Scene::sViewKey(sessions / 2) + QLatin1String("/name");
    for (auto _ : state) {
        need(scene.host().set(key, nextValue(), REG_PARAM_VALUE), "set");
        need(scene.host().commit(key), "commit");
    }
    state.SetComplexityN(sessions);
}

void writeLoop(benchmark::State& state, QString const& directory)
{
    int const sessions = static_cast<int>(state.range(0));
    BareStore store(directory, sessions);
    QString const key = Scene::sRegistryKey(sessions / 2);
    for (auto _ : state)
        store.write(key, nextValue());
    state.SetComplexityN(sessions);
}

void disk(benchmark::State& state)
{
    commitLoop(state, Scene::sOnDisk(static_cast<int>(state.range(0))));
}

void disk_baseline(benchmark::State& state)
{
    writeLoop(state, QDir::currentPath());
}

void memory(benchmark::State& state)
{
    commitLoop(state, Scene::sWith(static_cast<int>(state.range(0))));
}

void memory_baseline(benchmark::State& state)
{
    writeLoop(state, Scene::sMemory());
}

BENCHMARK(disk)->RangeMultiplier(10)->Range(10, 100000)->UseRealTime()->Complexity();
BENCHMARK(disk_baseline)->RangeMultiplier(10)->Range(10, 100000)->UseRealTime()->Complexity();
BENCHMARK(memory)->RangeMultiplier(10)->Range(10, 100000)->Complexity();
BENCHMARK(memory_baseline)->RangeMultiplier(10)->Range(10, 100000)->Complexity();

} // namespace

BENCHMARK_MAIN();
