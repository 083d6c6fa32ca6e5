// SPDX-License-Identifier: MIT

// Puts a long mixed load on the plugin and prints what the process holds after each tenth of it.
//
// usage: Soak plain|scripts REQUESTS
//
//   plain     no key has a script
//   scripts   some keys have, good ones and bad ones
//
// The exit status is 0 when nothing has grown since the first line.

#include "Figures.h"
#include "Load.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QStringList>

#include <chrono>
#include <cstdio>
#include <thread>

namespace {

int const kParts = 10;

// What is made once and kept shall be there before the first look: the caches of the registry, the
// threads and the connection of the bus, the allocator's stores.
int const kWarmUp = 500;

long const kKibi = 1024;
double const kMsPerSecond = 1000;
int const kLimitMs = 10000;
std::chrono::milliseconds const kStep(100);

void printHeading()
{
    std::printf("%8s %8s %12s %11s %7s %8s %9s %9s %10s %7s\n", "", "heap", "resident", "", "", "",
                "", "temporary", "", "");
    std::printf("%8s %8s %12s %11s %7s %8s %9s %9s %10s %7s\n", "requests", "KiB", "KiB",
                "descriptors", "threads", "children", "processes", "files", "semaphores",
                "seconds");
}

void print(long requests, Figures const& figures, QElapsedTimer const& timer)
{
    std::printf("%8ld %8.1f %12ld %11d %7d %8d %9d %9d %10d %7.1f\n", requests,
                double(figures.heapBytes) / kKibi, figures.residentBytes / kKibi,
                figures.descriptors, figures.threads, figures.children, figures.processes,
                figures.temporaryFiles, figures.semaphores, double(timer.elapsed()) / kMsPerSecond);
    std::fflush(stdout);
}

/// What is held once no process comes or goes: a command that was started and left alone gets its
/// time.
Figures firstFigures()
{
    Figures figures = Figures::sNow();
    int processes = 0;
    while (processes != figures.processes) {
        processes = figures.processes;
        std::this_thread::sleep_for(kStep);
        figures = Figures::sNow();
    }
    return figures;
}

/// The same later on.
Figures figuresSince(Figures const& first)
{
    QElapsedTimer timer;
    timer.start();
    Figures figures = Figures::sNow();
    while (!figures.grownSince(first).isEmpty() && timer.elapsed() < kLimitMs) {
        std::this_thread::sleep_for(kStep);
        figures = Figures::sNow();
    }
    return figures;
}

void serve(Load& load, long requests)
{
    for (long i = 0; i < requests; ++i)
        load.request();
    load.settle();
}

/// @return whether all stayed flat.
bool soak(Load& load, long requests)
{
    QElapsedTimer timer;
    timer.start();
    printHeading();
    serve(load, kWarmUp);
    Figures const first = firstFigures();
    print(0, first, timer);

    Figures last = first;
    long done = 0;
    for (int part = 1; part <= kParts; ++part) {
        long const goal = requests * part / kParts;
        serve(load, goal - done);
        done = goal;
        last = figuresSince(first);
        print(done, last, timer);
    }
    QString const grown = last.grownSince(first);
    if (!grown.isEmpty())
        std::printf("grown: %s\n", qPrintable(grown));
    return grown.isEmpty();
}

int usage()
{
    std::fputs("usage: Soak plain|scripts REQUESTS\n", stderr);
    return 2;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QStringList const arguments = application.arguments();
    bool isNumber = false;
    long const requests = arguments.value(2).toLong(&isNumber);
    bool const hasScripts = arguments.value(1) == "scripts";
    if (!isNumber || requests < kParts || (!hasScripts && arguments.at(1) != "plain"))
        return usage();

    Load load(hasScripts ? Load::SCRIPTS : Load::PLAIN);
    return soak(load, requests) ? 0 : 1;
}
