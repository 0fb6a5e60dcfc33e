#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/app/program.h"

namespace tolvane {

// Language strings of the Options dialog: its labels, the group titles,
// the tab pages and the entries of the combos that the language file fills.
inline constexpr std::uint32_t kTextAutoBluetooth = 14100;
inline constexpr std::uint32_t kTextKeepBacklightOn = 14101;
inline constexpr std::uint32_t kTextStorageLocation = 14102;
inline constexpr std::uint32_t kTextStartGpsAtStartup = 14103;
inline constexpr std::uint32_t kTextLoadPoiAtStartup = 14104;
inline constexpr std::uint32_t kTextUnitAndCoordinate = 14105;
inline constexpr std::uint32_t kTextTrackLogFormat = 14106;
inline constexpr std::uint32_t kTextDefaultProximityRange = 14107;
inline constexpr std::uint32_t kTextAlwaysUseDefaultRange = 14108;
inline constexpr std::uint32_t kTextVoiceEngine = 14109;
inline constexpr std::uint32_t kTextVoiceTest = 14110;
inline constexpr std::uint32_t kTextMinimumSpeed = 14111;
inline constexpr std::uint32_t kTextDataProcessor = 14112;
inline constexpr std::uint32_t kTextLogNmea = 14113;
inline constexpr std::uint32_t kTextNmeaLogger = 14114;
inline constexpr std::uint32_t kTextFirstDataProcessor = 14115;   // three entries
inline constexpr std::uint32_t kTextFirstTrackLogFormat = 14118;  // three entries
inline constexpr std::uint32_t kTextFirstVoiceEngine = 14121;     // one entry
inline constexpr std::uint32_t kTextPageGeneral = 14122;
inline constexpr std::uint32_t kTextPageUnits = 14123;
inline constexpr std::uint32_t kTextPageGuidance = 10663;  // the menu's "Go To"
inline constexpr std::uint32_t kTextPageGps = 14125;
inline constexpr std::uint32_t kTextCancel = 14126;
inline constexpr std::uint32_t kTextSleepNote = 14127;
inline constexpr std::uint32_t kTextLanguage = 14140;
inline constexpr std::uint32_t kTextAutomaticLanguage = 14141;
inline constexpr std::uint32_t kTextOk = 12506;
inline constexpr std::uint32_t kTextFirstUnitSystem = 10813;  // three entries
inline constexpr std::uint32_t kTextVoiceTestSentence = 10866;

// The edits hold no more than these characters; Test reads no more of a
// longer sentence than its box holds.
inline constexpr std::size_t kMinimumSpeedFieldLength = 20;
inline constexpr std::size_t kProximityRangeFieldLength = 9;
inline constexpr std::size_t kVoiceTestFieldLength = 100;  // UTF-16 code units

// The combos whose entries are fixed lists.
enum class OptionsCombo {
    kUnitSystem,
    kCoordinateFormat,
    kTrackLogFormat,
    kVoiceEngine,
    kDataProcessor,
    // "Automatic", then each shipped language named in itself.
    kLanguage
};

// Every control of the dialog as the user leaves it; the dialog opens with
// the current settings and changes nothing until OK. Combos hold the chosen
// entry's index, edits their text.
struct OptionsForm {
    bool autoBluetooth = false;
    bool keepBacklightOn = false;
    std::string storageLocation;  // the chosen entry's text
    bool startGpsAtStartup = false;
    bool loadPoiAtStartup = false;
    int unitSystem = 0;
    int coordinateFormat = 0;
    int trackLogFormat = 0;
    std::string proximityRange;
    bool alwaysUseDefaultRange = false;
    int voiceEngine = 0;
    std::string testSentence;  // spoken by Test, never stored
    std::string minimumSpeed;
    int dataProcessor = 0;
    bool logNmea = false;
    int language = 0;  // 0: automatic, else the shipped language before it
};

// The form of the current settings, with the test sentence of the language
// file.
OptionsForm OpenOptionsForm(const AppState& app);

// The entries of a fixed combo, in the order of the stored index.
std::vector<std::string> OptionsComboEntries(OptionsCombo combo);

// The storage locations to choose from: the current one first when the
// machine's list lacks it (a folder the user typed in before, a card that
// is not mounted now), so the dialog always opens on it.
std::vector<std::string> StorageChoices(const std::vector<std::string>& available,
                                        const std::string& current);

// The entry of the choices the storage combo opens on: the current location
// in any letter case, else the first.
int StorageChoiceIndex(const std::vector<std::string>& choices, const std::string& current);

// The unit labels beside "Minimum Speed" and "Default Proximity Range",
// which follow the unit system chosen in the open dialog.
struct UnitLabels {
    std::string speed;
    std::string range;
};
UnitLabels OptionsUnitLabels(int unitSystem);

// "Test" can be pressed when the chosen engine is there and there is a
// sentence to speak; pressing it speaks the sentence's first
// kVoiceTestFieldLength characters (false when it could not be spoken).
bool CanTestVoice(Program& program, const OptionsForm& form);
bool TestVoice(Program& program, const OptionsForm& form);

// The numbers of the edits as OK stores them: the minimum speed never
// negative; the range an unsigned number, held to what the record holds.
double MinimumSpeedFromField(std::string_view text);
std::int32_t ProximityRangeFromField(std::string_view text);

// Two storage locations are the same when they differ only in letter case.
bool SameStorageLocation(const std::string& a, const std::string& b);

// OK: stores the form in the settings in the dialog's order (check boxes,
// numbers, storage location with its folders and waypoint file, the
// indices, the track log format, the NMEA log, the backlight), restarting
// the track file and the NMEA log where the running GPS needs it, and saves
// Options.dat. A changed language is kept in the settings file beside it
// and spoken at once.
void ApplyOptionsForm(Program& program, const OptionsForm& form);

}  // namespace tolvane
