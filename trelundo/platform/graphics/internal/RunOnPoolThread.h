#pragma once

#include <QSemaphore>
#include <QThread>
#include <QThreadPool>

namespace trelundo {

/// Calls `work`, which draws, and returns when it is done. The raster engine splits each larger fill among
/// the threads of the global pool, and artwork of many fills then spends more on waking them than on its
/// pixels. Inside that pool it does not split; so the work goes there as one piece.
template <class Work> void runOnPoolThread(Work const& work) {
    auto* const pool = QThreadPool::globalInstance();
    if (pool->contains(QThread::currentThread())) return work();
    QSemaphore done;
    pool->start([&] {
        work();
        done.release();
    });
    done.acquire();
}

} // namespace trelundo
