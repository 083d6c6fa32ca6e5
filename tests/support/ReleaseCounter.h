// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QSystemSemaphore>

#include <atomic>
#include <thread>

/// Counts how often a system semaphore is released.
class ReleaseCounter
{
public:
    explicit ReleaseCounter(QString const& key)
        : mSemaphore(key, 0, QSystemSemaphore::Create)
        , mIsStopping(false)
        , mCount(0)
        , mThread(&ReleaseCounter::run, this)
    {
    }

    ~ReleaseCounter()
    {
        mIsStopping = true;
        mSemaphore.release();
        mThread.join();
    }

    int count() const { return mCount; }

private:
    Q_DISABLE_COPY(ReleaseCounter)

    void run()
    {
        while (mSemaphore.acquire() && !mIsStopping)
            ++mCount;
    }

    QSystemSemaphore mSemaphore;
    std::atomic<bool> mIsStopping;
    std::atomic<int> mCount;
    // Last: it uses the others from its start.
    std::thread mThread;
};
