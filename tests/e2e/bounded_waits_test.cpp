// Sources that never answer must not hold the tool (or the window) for
// long: the built tolvane-tool against a gpsd address on loopback that
// never accepts or never reports, and against ports that can never be
// terminals.
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <vector>

#include "tests/core/test_support.h"
#include "tests/tools/shell_command.h"

namespace {

using tolvane::testing::RunShell;
using tolvane::testing::ShellResult;

const std::string kTool = std::string(TOLVANE_PROGRAM_DIR) + "/tolvane-tool";

// A listener on a free loopback port that never accepts. With full, its
// queue of connections is filled at once, so that the kernel answers no
// further connect: the state of a gpsd that hangs, or of a host that is
// gone.
class SilentListener {
  public:
    explicit SilentListener(bool full) : socket_(socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        bind(socket_, reinterpret_cast<sockaddr*>(&address), length);
        listen(socket_, full ? 0 : 8);
        getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &length);
        port_ = ntohs(address.sin_port);
        for (int i = 0; full && i < 2; ++i) {
            fillers_.push_back(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0));
            connect(fillers_.back(), reinterpret_cast<sockaddr*>(&address), length);
        }
    }
    ~SilentListener() {
        for (const int filler : fillers_) close(filler);
        close(socket_);
    }
    SilentListener(const SilentListener&) = delete;
    SilentListener& operator=(const SilentListener&) = delete;

    std::string Port() const { return std::to_string(port_); }

  private:
    int socket_;
    int port_ = 0;
    std::vector<int> fillers_;
};

struct TimedResult {
    ShellResult result;
    double seconds;
};

TimedResult RunTimed(const std::string& command) {
    const auto start = std::chrono::steady_clock::now();
    ShellResult result = RunShell(command + " 2>&1");
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    return {result, taken.count()};
}

std::string GidWatch(const SilentListener& listener) {
    return "GPSD_HOST=127.0.0.1 GPSD_PORT=" + listener.Port() + " " + kTool +
           " watch --source gid --seconds 3";
}

TEST(BoundedWaitTest, AGpsdThatNeverAcceptsFailsTheStartWithinTwoSeconds) {
    const SilentListener listener(true);
    const TimedResult run = RunTimed(GidWatch(listener));
    EXPECT_EQ(run.result.exitCode, 1) << run.result.output;
    EXPECT_NE(run.result.output.find("could not be opened"), std::string::npos);
    EXPECT_LT(run.seconds, 2.5);
}

TEST(BoundedWaitTest, AGpsdThatNeverReportsEndsTheWatchOnTime) {
    const SilentListener listener(false);
    const TimedResult run = RunTimed(GidWatch(listener));
    EXPECT_EQ(run.result.exitCode, 0) << run.result.output;
    EXPECT_NE(run.result.output.find("3 ticks, 0 fixes"), std::string::npos) << run.result.output;
    EXPECT_LT(run.seconds, 5.0);
}

TEST(BoundedWaitTest, APortThatCanNeverBeATerminalFailsAtOnceWithItsReason) {
    tolvane::testing::TemporaryFolder folder;
    tolvane::testing::WriteFileBytes(folder.File("plain"), "$GPRMC\n");
    for (const std::string& port : {std::string("/dev/null"), folder.File("plain")}) {
        const TimedResult run =
            RunTimed(kTool + " watch --source port --baud 4800 --seconds 3 --port " + port);
        EXPECT_EQ(run.result.exitCode, 1);
        EXPECT_NE(run.result.output.find("0x08200a08 (Inappropriate ioctl for device)"),
                  std::string::npos)
            << run.result.output;
        EXPECT_LT(run.seconds, 1.0);
    }
}

}  // namespace
