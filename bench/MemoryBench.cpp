// SPDX-License-Identifier: MIT

// What is asked of the heap.
//
//   get_leaf     the calls of malloc ("allocations") for one get of "usb/enable"
//   get_session  the same of one session's name
//   registry     the same of the look-up in the registry behind "usb/enable"
//
// And the memory of one session, measured over 1000 of them:
//
//   set_buffer   a session that was created and has its three keys set, waiting for its commit: in
//                the plugin's set buffer alone ("bytes") and with what the registry keeps pending
//                for it ("with_registry")
//   listing      a session in the answer to a listing and in the tree that the listing is made from
//
// "texts" are the bytes of what has to be told apart: the UUID and the values in the set buffer,
// the UUID and the full key in a listing, two bytes a character. Names of keys are the same in all
// sessions and are not counted. Time is of no interest here.

#include "plugin/ZelvoView.h"
#include "support/Allocations.h"
#include "support/Scene.h"
#include "tree/ConfigTree.h"

#include <benchmark/benchmark.h>

namespace {

int const kSessions = 1000;

QString address(int i)
{
    return QString::fromLatin1("host%1.example").arg(i);
}

int bytesOf(QString const& text)
{
    return text.size() * static_cast<int>(sizeof(QChar));
}

/// The second of two requests: the first sets up what stays for the process.
void countAllocations(benchmark::State& state, QString const& key)
{
    Scene& scene = Scene::sWith(kSessions);
    scene.get(key);
    for (auto _ : state) {
        long const before = Allocations::count();
        scene.get(key);
        state.counters["allocations"] = static_cast<double>(Allocations::count() - before);
    }
}

void get_leaf(benchmark::State& state)
{
    countAllocations(state, QLatin1String("root/zelvo-view/usb/enable"));
}

void get_session(benchmark::State& state)
{
    countAllocations(state, Scene::sViewKey(0) + QLatin1String("/name"));
}

void registry(benchmark::State& state)
{
    countAllocations(state, QLatin1String("root/USB/root/mass-storage/allowed"));
}

void fill(Vantora& host)
{
    for (int i = 0; i < kSessions; ++i) {
        QString const session = Scene::sViewKey(i);
        need(host.create(session, REG_TYPE_STRING), "create");
        need(host.set(session + QLatin1String("/name"), Scene::sName(i), REG_PARAM_VALUE), "set");
        need(
            host.set(session + QLatin1String("/autostart"), QLatin1String("true"), REG_PARAM_VALUE),
            "set");
        need(host.set(session + QLatin1String("/address"), address(i), REG_PARAM_VALUE), "set");
    }
}

void report(benchmark::State& state, long bytes, long texts)
{
    state.counters["bytes"] = static_cast<double>(bytes) / kSessions;
    state.counters["texts"] = static_cast<double>(texts) / kSessions;
}

void set_buffer(benchmark::State& state)
{
    for (auto _ : state) {
        Scene scene(0, Scene::sMemory());
        long const before = Allocations::bytesInUse();
        fill(scene.host());
        long const filled = Allocations::bytesInUse();
        scene.plugin().deleteSetBuffer();
        long const emptied = Allocations::bytesInUse();

        long texts = 0;
        for (int i = 0; i < kSessions; ++i)
            texts += bytesOf(Scene::sUuid(i)) + bytesOf(Scene::sName(i))
                + bytesOf(QLatin1String("true")) + bytesOf(address(i));
        report(state, filled - emptied, texts);
        state.counters["with_registry"] = static_cast<double>(filled - before) / kSessions;
    }
}

void listing(benchmark::State& state)
{
    Scene& scene = Scene::sWith(kSessions);
    QString const key = Scene::sViewDirectory();
    for (auto _ : state) {
        long const before = Allocations::bytesInUse();
        ConfigTree tree(scene.plugin().rootDir());
        if (!tree.handlesKey(key, &scene.host().defaultSettings()) || !tree.resolveUuids(key))
            qFatal("the sessions are not listed");
        QMap<QString, _RegNodeType> const answer = scene.get(key);
        long const after = Allocations::bytesInUse();

        long texts = 0;
        for (int i = 0; i < kSessions; ++i)
            texts += bytesOf(Scene::sUuid(i)) + bytesOf(Scene::sViewKey(i));
        report(state, after - before, texts);
    }
}

BENCHMARK(get_leaf)->Iterations(1);
BENCHMARK(get_session)->Iterations(1);
BENCHMARK(registry)->Iterations(1);
BENCHMARK(set_buffer)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(listing)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
