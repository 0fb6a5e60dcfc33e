#pragma once

#include <QObject>
#include <functional>
#include <string>
#include <thread>

#include "core/app/receiver_discovery.h"

namespace tolvane::shell {

// The receiver search of the first start, on a thread of its own: asking a
// socket, ModemManager, gpsd and a USB receiver takes a few seconds each,
// and the window paints meanwhile. A search still running when the window
// closes is waited for; each of its questions ends within seconds.
class FirstStartSearch {
  public:
    FirstStartSearch() = default;
    ~FirstStartSearch();
    FirstStartSearch(const FirstStartSearch&) = delete;
    FirstStartSearch& operator=(const FirstStartSearch&) = delete;

    // Starts the search; done hears what it found on the thread of
    // context, unless context is gone by then.
    void Start(const std::string& gnssShareSocket, QObject* context,
               std::function<void(const FoundReceiver&)> done);

  private:
    std::thread worker_;
};

}  // namespace tolvane::shell
