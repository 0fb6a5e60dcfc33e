#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tolvane::headless {

// A recording as the demo receiver plays it: all of its seconds once, then
// over and over from loopFrom on.
struct DemoRecording {
    std::vector<std::string> seconds;
    std::size_t loopFrom = 0;
};

// The shortest lap a demo loops over, in seconds of the recording.
inline constexpr std::size_t kShortestDemoLap = 30;

// Cuts a recording into the seconds of the demo and chooses where its loop
// begins again: at the second whose fix lies nearest the last fix, at least
// kShortestDemoLap seconds before it, so that a walk that comes back near
// where it went through goes on as one more step instead of jumping back to
// its start. The recording is played through the program once to find the
// fixes. A recording without such a fix loops from its first second.
DemoRecording MakeDemoRecording(std::string_view recording);

}  // namespace tolvane::headless
