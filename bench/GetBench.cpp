// Reading one key that is tied to the registry and has no script.
//
//   mapped_leaf    get of "usb/enable"
//   floor          what its road cannot do without: whether there is a script, asked of the file
//                  system as often as the road has places for one (three for being visible, one for
//                  the value), and one look-up in the registry
//   registry       that look-up alone
//   session_leaf   get of one session's name, of N sessions

#include "support/Scene.h"

#include <benchmark/benchmark.h>
#include <sys/stat.h>

namespace {

char const* const kScripts[] = {"zelvo-view/usb/enable/isVisible.sh", "zelvo-view/usb/isVisible.sh",
                                "zelvo-view/isVisible.sh", "zelvo-view/usb/enable/get.sh"};

void readLoop(benchmark::State& state, Scene& scene, QString const& key)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(scene.get(key));
}

void mapped_leaf(benchmark::State& state)
{
    readLoop(state, Scene::sWith(0), QLatin1String("root/zelvo-view/usb/enable"));
}

void registry(benchmark::State& state)
{
    readLoop(state, Scene::sWith(0), QLatin1String("root/USB/root/mass-storage/allowed"));
}

void floorOfLeaf(benchmark::State& state)
{
    Scene& scene = Scene::sWith(0);
    QList<QByteArray> paths;
    for (char const* const script : kScripts)
        paths.append((scene.wrappersDir() + QLatin1Char('/') + QLatin1String(script)).toLatin1());
    QString const key = QLatin1String("root/USB/root/mass-storage/allowed");
    QList<QByteArray> const files = paths;
    for (auto _ : state) {
        struct stat status;
        for (QByteArray const& file : files)
            benchmark::DoNotOptimize(::stat(file.constData(), &status));
        benchmark::DoNotOptimize(scene.get(key));
    }
}

void session_leaf(benchmark::State& state)
{
    int const sessions = static_cast<int>(state.range(0));
    QString const key = Scene::sViewKey(sessions / 2) + QLatin1String("/name");
    readLoop(state, Scene::sWith(sessions), key);
    state.SetComplexityN(sessions);
}

BENCHMARK(mapped_leaf);
BENCHMARK(floorOfLeaf)->Name("floor");
BENCHMARK(registry);
BENCHMARK(session_leaf)->RangeMultiplier(10)->Range(10, 100000)->Complexity();

} // namespace

BENCHMARK_MAIN();
