// SPDX-License-Identifier: MIT

// Starting the plugin, each time in a new process whose host is ready.
//
//   start   dlopen with the loader's checks, pluginIsLoaded, the first get
//   baseline   dlopen of a module that needs the same libraries and does nothing

#include <QProcess>
#include <QStringList>

#include <benchmark/benchmark.h>

namespace {

double const kNanosecondsPerSecond = 1e9;

void probeLoop(benchmark::State& state, QStringList const& arguments)
{
    for (auto _ : state) {
        QProcess probe;
        probe.start(QLatin1String(START_PROBE), arguments);
        probe.waitForFinished();
        bool isNumber = false;
        double const time = probe.readAllStandardOutput().trimmed().toDouble(&isNumber);
        if (!isNumber)
            qFatal("%s", probe.readAllStandardError().constData());
        state.SetIterationTime(time / kNanosecondsPerSecond);
    }
}

void start(benchmark::State& state)
{
    probeLoop(state,
              QStringList() << QLatin1String("plugin") << QLatin1String(PLUGIN_MODULE)
                            << QLatin1String("/tmp"));
}

void baselineOfStart(benchmark::State& state)
{
    probeLoop(state, QStringList() << QLatin1String("empty") << QLatin1String(EMPTY_MODULE));
}

BENCHMARK(start)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(20);
BENCHMARK(baselineOfStart)
    ->Name("baseline")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(20);

} // namespace

BENCHMARK_MAIN();
