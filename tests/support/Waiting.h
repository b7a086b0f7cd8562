#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QThread>

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
