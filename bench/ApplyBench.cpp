// SPDX-License-Identifier: MIT

// Applying a branch with 40 scripts that take 50 ms each.
//
//   apply/T   from the request to the end of the last script, on T threads
//
// "baseline_seconds" is the sum of the scripts divided by the threads. A request of the plugin
// takes as many threads as the machine has processors; here it gets its pool, and all else is as in
// `ZelvoView::apply`.

#include "actions/ActionKit.h"
#include "actions/default/DefaultApplyAction.h"
#include "plugin/ZelvoView.h"
#include "support/Scene.h"
#include "tree/ConfigTree.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QThreadPool>

#include <benchmark/benchmark.h>

namespace {

int const kScripts = 40;
double const kSecondsPerScript = 0.05;

QString keyName(int i)
{
    return QString::fromLatin1("key%1").arg(i);
}

/// The default settings with a branch for the benchmark.
void addBranch(Scene& scene)
{
    QString const directory = Scene::sMemory() + QLatin1String("/bench-defaults");
    QDir().mkpath(directory);
    QFile file(directory + QLatin1String("/bench.xml"));
    if (!file.open(QIODevice::WriteOnly))
        qFatal("%s", qPrintable(file.errorString()));
    file.write("<registry><dir name=\"root\"><dir name=\"zelvo-view\"><dir name=\"bench\">");
    for (int i = 0; i < kScripts; ++i)
        file.write("<key name=\"" + keyName(i).toLatin1() + "\"/>");
    file.write("</dir></dir></dir></registry>");
    file.close();
    scene.addDefaults(directory);
}

Scene& sceneWithScripts()
{
    static Scene scene(0, Scene::sMemory());
    static bool isReady = false;
    if (!isReady) {
        addBranch(scene);
        for (int i = 0; i < kScripts; ++i)
            scene.addScript(QLatin1String("zelvo-view/bench/") + keyName(i),
                            QLatin1String("apply.sh"), "sleep 0.05; echo >>/tmp/applied");
        isReady = true;
    }
    return scene;
}

void request(Scene& scene, QThreadPool* pool)
{
    QString const key = scene.plugin().rootDir() + QLatin1String("/bench");
    ConfigTree tree(scene.plugin().rootDir());
    Reg::Registry& defaults = scene.host().defaultSettings();
    ConfigBranch* const branch = dynamic_cast<ConfigBranch*>(tree.handlesKey(key, &defaults));
    if (!branch)
        qFatal("the branch is not handled");
    tree.populateEntryWithAllDescendants(*branch, &defaults, key);
    ActionKit::instance()->pushApplyThreadPool(pool);
    branch->apply();
    DefaultApplyAction::sExecuteLastApplyCommand(&scene.host(), QString());
}

void apply(benchmark::State& state)
{
    int const threads = static_cast<int>(state.range(0));
    Scene& scene = sceneWithScripts();
    QFile applied(QLatin1String("/tmp/applied"));
    applied.remove();
    for (auto _ : state) {
        QThreadPool* const pool = new QThreadPool(&scene.plugin());
        pool->setMaxThreadCount(threads);
        request(scene, pool);
        pool->waitForDone();
    }
    QCoreApplication::processEvents();
    if (applied.size() != static_cast<qint64>(state.iterations()) * kScripts)
        qFatal("not all scripts have run");
    state.counters["baseline_seconds"] = kScripts * kSecondsPerScript / threads;
}

BENCHMARK(apply)->Arg(2)->Arg(4)->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(2);

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
