// SPDX-License-Identifier: MIT

#include "plugin/AutoThread.h"

#include <QThread>

AutoThread::AutoThread(QThread* thread)
    : mThread(thread)
{
}

AutoThread::~AutoThread()
{
    if (mThread)
        mThread->wait();
    delete mThread;
}

void AutoThread::deleteThread()
{
    delete this;
}
