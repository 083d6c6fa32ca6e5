// SPDX-License-Identifier: MIT

// Reading one key by its script.
//
//   get          of a key with a "get.sh" that prints one word
//   baseline        the same script run by a bare QProcess
//   posix_spawn  the same script run without the toolkit: a pipe, posix_spawn, read, wait

#include "support/Scene.h"

#include <QProcess>

#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace {

QLatin1String const kViewKey("zelvo-view/usb/enable");
QLatin1String const kKey("root/zelvo-view/usb/enable");

struct ScriptScene
{
    ScriptScene()
        : scene(0, Scene::sMemory())
        , script(scene.addScript(kViewKey, QLatin1String("get.sh"), "echo true"))
    {
    }

    static ScriptScene& sInstance()
    {
        static ScriptScene instance;
        return instance;
    }

    Scene scene;
    QString script;
};

void get(benchmark::State& state)
{
    Scene& scene = ScriptScene::sInstance().scene;
    for (auto _ : state)
        benchmark::DoNotOptimize(scene.get(kKey));
}

void baselineOfScript(benchmark::State& state)
{
    QString const script = ScriptScene::sInstance().script;
    for (auto _ : state) {
        QProcess process;
        process.start(script, QStringList());
        process.waitForFinished();
        if (process.readAllStandardOutput() != "true\n")
            qFatal("the script did not run");
    }
}

void spawn(benchmark::State& state)
{
    QByteArray script = ScriptScene::sInstance().script.toLatin1();
    char* const arguments[] = {script.data(), nullptr};
    for (auto _ : state) {
        int ends[2];
        need(::pipe(ends), "pipe");
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        posix_spawn_file_actions_addclose(&actions, ends[0]);
        pid_t process = 0;
        need(::posix_spawn(&process, script.constData(), &actions, nullptr, arguments, environ),
             "posix_spawn");
        ::close(ends[1]);
        char output[64];
        while (::read(ends[0], output, sizeof(output)) > 0) { }
        ::close(ends[0]);
        ::waitpid(process, nullptr, 0);
        posix_spawn_file_actions_destroy(&actions);
    }
}

BENCHMARK(get)->UseRealTime();
BENCHMARK(baselineOfScript)->Name("baseline")->UseRealTime();
BENCHMARK(spawn)->Name("posix_spawn")->UseRealTime();

} // namespace

BENCHMARK_MAIN();
