// Writes the program's two sounds as 16-bit mono PCM. The alarm is a
// two-tone warble of one second that the speed and arrival alarms play in a
// loop, so every tone holds whole periods and the file ends where it began,
// at a zero crossing on a rising wave: the loop has neither a gap nor a
// click. The limit beep is one short high tone, built into the program.
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <numbers>
#include <string>
#include <vector>

namespace {

constexpr int kSampleRate = 22050;
constexpr double kAmplitude = 0.45 * 32767;
struct Tone {
    int frequency;
    int samples;
};

// Four quarter seconds, high and low in turn. 880 Hz and 660 Hz give 220 and
// 165 whole periods in a quarter second.
constexpr Tone kAlarm[] = {
    {880, kSampleRate / 4}, {660, kSampleRate / 4}, {880, kSampleRate / 4}, {660, kSampleRate / 4}};
// A twentieth of a second at 1760 Hz: 88 whole periods.
constexpr Tone kLimitBeep[] = {{1760, kSampleRate / 20}};

template <std::size_t N>
std::vector<std::int16_t> MakeSamples(const Tone (&tones)[N]) {
    std::vector<std::int16_t> samples;
    for (const Tone& tone : tones) {
        for (int i = 0; i < tone.samples; ++i) {
            const double phase = 2 * std::numbers::pi * tone.frequency * i / kSampleRate;
            samples.push_back(static_cast<std::int16_t>(std::lround(kAmplitude * std::sin(phase))));
        }
    }
    return samples;
}

void PutLittleEndian(std::string& out, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) out.push_back(static_cast<char>((value >> (8 * i)) & 0xFF));
}

std::string MakeWave(const std::vector<std::int16_t>& samples) {
    const std::uint32_t dataBytes = static_cast<std::uint32_t>(samples.size() * 2);
    std::string out = "RIFF";
    PutLittleEndian(out, 36 + dataBytes, 4);
    out += "WAVEfmt ";
    PutLittleEndian(out, 16, 4);               // format chunk size
    PutLittleEndian(out, 1, 2);                // PCM
    PutLittleEndian(out, 1, 2);                // mono
    PutLittleEndian(out, kSampleRate, 4);      // samples per second
    PutLittleEndian(out, kSampleRate * 2, 4);  // bytes per second
    PutLittleEndian(out, 2, 2);                // bytes per sample frame
    PutLittleEndian(out, 16, 2);               // bits per sample
    out += "data";
    PutLittleEndian(out, dataBytes, 4);
    for (std::int16_t sample : samples) PutLittleEndian(out, static_cast<std::uint16_t>(sample), 2);
    return out;
}

bool WriteFile(const char* path, const std::string& content) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(content.data(), static_cast<std::streamsize>(content.size()));
    if (out.flush()) return true;
    std::fprintf(stderr, "make-sounds: cannot write %s\n", path);
    return false;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: make-sounds ALARM.wav LIMIT-BEEP.wav\n");
        return 2;
    }
    const bool written = WriteFile(argv[1], MakeWave(MakeSamples(kAlarm))) &&
                         WriteFile(argv[2], MakeWave(MakeSamples(kLimitBeep)));
    return written ? 0 : 1;
}
