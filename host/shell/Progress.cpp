// SPDX-License-Identifier: MIT

#include "shell/Progress.h"

#include <chrono>
#include <cstdio>

namespace {

typedef std::chrono::milliseconds Milliseconds;

int const kPatienceMs = 500;
int const kStepMs = 100;
double const kMillisecondsPerSecond = 1000.0;

char const kSpinner[] = {'|', '/', '-', '\\'};
char const* const kClearLine = "\r\033[K";

} // namespace

Progress::Progress(QString const& subject)
    : mSubject(subject.toUtf8())
    , mThread(&Progress::show, this)
{
}

Progress::~Progress()
{
    {
        std::lock_guard<std::mutex> const guard(mMutex);
        mIsOver = true;
    }
    mOver.notify_one();
    mThread.join();
}

void Progress::show()
{
    std::unique_lock<std::mutex> lock(mMutex);
    auto const isOver = [this] { return mIsOver; };
    int elapsedMs = kPatienceMs;
    if (mOver.wait_for(lock, Milliseconds(kPatienceMs), isOver))
        return;
    do {
        char const sign = kSpinner[elapsedMs / kStepMs % int(sizeof kSpinner)];
        std::fprintf(stderr, "%s%c %s: %.1f s", kClearLine, sign, mSubject.constData(),
                     elapsedMs / kMillisecondsPerSecond);
        std::fflush(stderr);
        elapsedMs += kStepMs;
    } while (!mOver.wait_for(lock, Milliseconds(kStepMs), isOver));
    std::fputs(kClearLine, stderr);
    std::fflush(stderr);
}
