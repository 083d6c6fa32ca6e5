// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <condition_variable>
#include <mutex>
#include <thread>

/// Shows, on the terminal that standard error is, how long something takes that takes over half a
/// second, and takes that away at its end. Nothing else may be written there meanwhile.
class Progress
{
public:
    explicit Progress(QString const& subject);
    ~Progress();

private:
    Q_DISABLE_COPY(Progress)

    void show();

    QByteArray const mSubject;
    bool mIsOver = false;
    std::mutex mMutex;
    std::condition_variable mOver;
    std::thread mThread;
};
