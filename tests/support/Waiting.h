#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QThread>
#include <chrono>

/// Waits until the condition holds, handling events meanwhile; false if it doesn't within the limit.
template <typename Condition>
bool WaitUntil(Condition condition, int nLimitMs = 5000)
{
    const QDeadlineTimer deadline(nLimitMs);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QThread::msleep(2);
    }
    return true;
}

inline long MsSince(std::chrono::steady_clock::time_point nBegin)
{
    using namespace std::chrono;
    return static_cast<long>(duration_cast<milliseconds>(steady_clock::now() - nBegin).count());
}
