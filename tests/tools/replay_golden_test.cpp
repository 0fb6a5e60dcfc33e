// The replay's ticks must not change when its insides get faster: the
// output for every capture is held to a checksum of what the tool printed
// before, in UTC and in a zone with summer time.

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "tests/core/test_support.h"
#include "tests/platform/scoped_environment.h"
#include "tests/tools/run_tool.h"

namespace tolvane::tool {
namespace {

// 64-bit FNV-1a.
std::uint64_t Checksum(const std::string& bytes) {
    std::uint64_t hash = 0xcbf29ce484222325ULL;
    for (const char c : bytes) {
        hash ^= static_cast<unsigned char>(c);
        hash *= 0x100000001b3ULL;
    }
    return hash;
}

struct GoldenReplay {
    const char* capture;
    std::uint64_t utc;
    std::uint64_t centralEurope;
};

const GoldenReplay kGoldenReplays[] = {
    {"GPSmap-76S.log", 0x7c146ee30fdf3c92ULL, 0x7c146ee30fdf3c92ULL},
    {"beidou-gb.log", 0xfe4a959a82bd527eULL, 0xfe4a959a82bd527eULL},
    {"bu353s4.log", 0xa71331ba5e825580ULL, 0x4df93d473b3abf77ULL},
    {"firefly-II.log", 0xf8e38db108d0372aULL, 0x9c12b0fcf68cd696ULL},
    {"garmin48.log", 0xdd258cc1c1ed4e33ULL, 0xdba5db7a86732aceULL},
    {"gp-320fw-2019-04-07-coldboot.log", 0x60f2130c343be5caULL, 0x1c15c72f3140d95aULL},
    {"haicom-305N.log", 0xeb15a8e52a4c7fbbULL, 0xd9a3c876c665aa13ULL},
    {"holux-gm-210.log", 0xa1016f5015c69e3aULL, 0xa1016f5015c69e3aULL},
    {"isync.log", 0x931c187218f0c9f8ULL, 0xfe89222fa3c1707aULL},
    {"magellan-ec10.log", 0x4dff5b3e601409dcULL, 0x39b8e9fc50ba08e6ULL},
    {"myguide-3100.log", 0x495403be3936ba30ULL, 0x59735a701fd81a03ULL},
    {"telit-he910.log", 0x310912ff1419bfcdULL, 0x1a73779c623918e5ULL},
    {"triton400.log", 0xe18fbdcc19578947ULL, 0x83d4d049bf43c73bULL},
};

std::uint64_t ReplayChecksum(const std::string& capture, const char* zone) {
    const testing::ScopedTimeZone scope(zone);
    const Result result =
        RunCommand({"replay", testing::TestDataFile("gpsd/" + capture), "--json"});
    EXPECT_EQ(result.code, kExitOk) << result.err;
    return Checksum(result.out);
}

TEST(ReplayGoldenTest, EveryCapturePrintsTheTicksItAlwaysPrinted) {
    for (const GoldenReplay& golden : kGoldenReplays) {
        SCOPED_TRACE(golden.capture);
        EXPECT_EQ(ReplayChecksum(golden.capture, "UTC0"), golden.utc);
        EXPECT_EQ(ReplayChecksum(golden.capture, "CET-1CEST,M3.5.0,M10.5.0/3"),
                  golden.centralEurope);
    }
}

}  // namespace
}  // namespace tolvane::tool
