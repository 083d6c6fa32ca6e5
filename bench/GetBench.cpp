// SPDX-License-Identifier: MIT

// Reading one key that is tied to the registry and has no script.
//
//   mapped_leaf    get of "usb/enable"
//   baseline       what a request cannot do without: the two questions to the file system that it
//                  asks (is there a folder for the area, and a script that hides the view), and one
//                  look-up in the registry
//   plain_baseline the same with a question for each place that may hold a script, as a plain
//                  request asks that remembers nothing
//   registry       that look-up alone
//   session_leaf   get of one session's name, of N sessions

#include "support/Scene.h"

#include <benchmark/benchmark.h>
#include <sys/stat.h>

namespace {

char const* const kQuestions[] = {"zelvo-view/usb", "zelvo-view/isVisible.sh", nullptr};
char const* const kPlainQuestions[]
    = {"zelvo-view/usb/enable/isVisible.sh", "zelvo-view/usb/isVisible.sh",
       "zelvo-view/isVisible.sh", "zelvo-view/usb/enable/get.sh", nullptr};

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

/// @param questions  files and folders of the wrappers directory, a null behind the last.
void askAndLookUp(benchmark::State& state, char const* const* questions)
{
    Scene& scene = Scene::sWith(0);
    QList<QByteArray> paths;
    for (; *questions; ++questions)
        paths.append(
            (scene.wrappersDir() + QLatin1Char('/') + QLatin1String(*questions)).toLatin1());
    QString const key = QLatin1String("root/USB/root/mass-storage/allowed");
    QList<QByteArray> const files = paths;
    for (auto _ : state) {
        struct stat status;
        for (QByteArray const& file : files)
            benchmark::DoNotOptimize(::stat(file.constData(), &status));
        benchmark::DoNotOptimize(scene.get(key));
    }
}

void baselineOfLeaf(benchmark::State& state)
{
    askAndLookUp(state, kQuestions);
}

void plain_baseline(benchmark::State& state)
{
    askAndLookUp(state, kPlainQuestions);
}

void session_leaf(benchmark::State& state)
{
    int const sessions = static_cast<int>(state.range(0));
    QString const key = Scene::sViewKey(sessions / 2) + QLatin1String("/name");
    readLoop(state, Scene::sWith(sessions), key);
    state.SetComplexityN(sessions);
}

BENCHMARK(mapped_leaf);
BENCHMARK(baselineOfLeaf)->Name("baseline");
BENCHMARK(plain_baseline);
BENCHMARK(registry);
BENCHMARK(session_leaf)->RangeMultiplier(10)->Range(10, 100000)->Complexity();

} // namespace

BENCHMARK_MAIN();
