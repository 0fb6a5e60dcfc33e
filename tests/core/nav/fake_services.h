#pragma once

#include <string>
#include <vector>

#include "core/base/services.h"
#include "core/geo/geo_point.h"
#include "core/nav/voice_guide.h"

namespace tolvane::testing {

// Records every sound call; each call can be made to fail a number of times
// first, as a busy audio device would.
class RecordingSound : public SoundService {
  public:
    struct Call {
        std::string what;  // "play", "stop" or "beep"
        std::string path;
        SoundMode mode = SoundMode::kOnce;
    };

    bool PlaySoundFile(const std::string& path, SoundMode mode) override {
        calls.push_back({"play", path, mode});
        return Answer();
    }
    bool StopSound() override {
        calls.push_back({"stop", "", SoundMode::kOnce});
        return Answer();
    }
    bool PlayLimitBeep() override {
        calls.push_back({"beep", "", SoundMode::kOnce});
        return Answer();
    }

    std::vector<Call> calls;
    int failuresBeforeSuccess = 0;

  private:
    bool Answer() {
        if (failuresBeforeSuccess == 0) return true;
        --failuresBeforeSuccess;
        return false;
    }
};

// Records the programs it is asked to run instead of running them.
class FakeProcessRunner : public ProcessRunner {
  public:
    bool RunAndWait(const std::string& program,
                    const std::vector<std::string>& arguments) override {
        std::vector<std::string> run = {program};
        run.insert(run.end(), arguments.begin(), arguments.end());
        runs.push_back(run);
        return canStart;
    }
    std::string TemporaryFolder() const override { return "/tmp/fake"; }

    std::vector<std::vector<std::string>> runs;
    bool canStart = true;
};

class FakeEngineFinder : public SpeechEngineFinder {
  public:
    std::string FindEngineProgram() const override { return program; }

    std::string program = "/usr/bin/espeak-ng";
};

// A destination; a range of -1 leaves it to the default range.
inline GeoPoint Destination(double latitude, double longitude, int range = -1,
                            const std::string& voice = {}) {
    GeoPoint point;
    point.latitude = latitude;
    point.longitude = longitude;
    point.proximityRange = range;
    point.voiceGuide = voice;
    return point;
}

}  // namespace tolvane::testing
