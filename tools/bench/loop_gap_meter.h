#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <algorithm>

namespace tolvane::bench {

// Measures how long the event loop could not run: a 5 ms timer notes the
// longest gap between two of its ticks, the longest the window could not
// have painted.
class LoopGapMeter {
  public:
    LoopGapMeter() {
        QObject::connect(&ticker_, &QTimer::timeout, [this] {
            const qint64 now = clock_.elapsed();
            longestGap_ = std::max(longestGap_, now - lastTick_);
            lastTick_ = now;
        });
    }

    void Start() {
        clock_.start();
        lastTick_ = 0;
        ticker_.start(5);
    }
    // Milliseconds since Start.
    qint64 Elapsed() const { return clock_.elapsed(); }
    // Counts the next gap from now, leaving out work the benchmark itself
    // did outside the event loop.
    void CountFromNow() { lastTick_ = clock_.elapsed(); }
    qint64 LongestGap() const { return longestGap_; }

  private:
    QElapsedTimer clock_;
    QTimer ticker_;
    qint64 lastTick_ = 0;
    qint64 longestGap_ = 0;
};

}  // namespace tolvane::bench
