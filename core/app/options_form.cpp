#include "core/app/options_form.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

#include "core/app/local_settings.h"
#include "core/app/shutdown.h"
#include "core/app/startup.h"
#include "core/base/language_choice.h"
#include "core/base/number_fields.h"
#include "core/base/string_manager.h"
#include "core/base/text_encoding.h"
#include "core/data/geo_point_file.h"
#include "core/geo/formatting.h"
#include "core/gps/gps_processing.h"
#include "core/nav/voice_guide.h"

namespace tolvane {
namespace {

constexpr int kUnitSystemCount = 3;
constexpr int kCoordinateFormatCount = 3;
constexpr int kTrackLogFormatCount = 3;
constexpr int kVoiceEngineCount = 1;

// The figure as the edit shows it: plain decimals, as a user types them
// and as OK reads them back. One the edit cannot hold shows as 0, which is
// then what OK stores.
std::string FieldText(double value) {
    std::array<char, kMinimumSpeedFieldLength> text{};
    const auto [end, error] =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    return error == std::errc() ? std::string(text.data(), end) : std::string("0");
}

std::vector<std::string> LanguageEntries(std::uint32_t firstId, int count) {
    std::vector<std::string> entries;
    for (int i = 0; i < count; ++i) entries.push_back(LanguageText(firstId + i));
    return entries;
}

std::vector<std::string> LanguageChoiceEntries() {
    std::vector<std::string> entries = {LanguageText(kTextAutomaticLanguage)};
    for (const ShippedLanguage& language : ShippedLanguages())
        entries.emplace_back(language.ownName);
    return entries;
}

int LanguageChoiceIndex(const std::string& code) {
    const std::span<const ShippedLanguage> languages = ShippedLanguages();
    const auto found =
        std::find_if(languages.begin(), languages.end(),
                     [&](const ShippedLanguage& entry) { return entry.code == code; });
    return found == languages.end() ? 0 : static_cast<int>(found - languages.begin()) + 1;
}

std::string LanguageChoiceCode(int index) {
    const std::span<const ShippedLanguage> languages = ShippedLanguages();
    if (index < 1 || index > static_cast<int>(languages.size())) return {};
    return languages[static_cast<std::size_t>(index - 1)].code;
}

void ApplyLanguage(Program& program, int choice) {
    const std::string code = LanguageChoiceCode(choice);
    if (code == program.app.runtime.language) return;
    program.app.runtime.language = code;
    SaveLocalSettings(program);
    SwitchLanguage(program);
}

std::vector<std::string> CoordinateFormatEntries() {
    std::vector<std::string> entries;
    for (int format = 0; format < kCoordinateFormatCount; ++format) {
        entries.push_back(CoordFormatEntryText(format));
    }
    return entries;
}

char LowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::int32_t Flag(bool checked) {
    return checked ? 1 : 0;
}

void StoreCheckBoxes(Options& options, const OptionsForm& form) {
    options.autoBluetooth = Flag(form.autoBluetooth);
    options.keepBacklightOn = Flag(form.keepBacklightOn);
    options.startGpsAtStartup = Flag(form.startGpsAtStartup);
    options.loadPoiAtStartup = Flag(form.loadPoiAtStartup);
    options.alwaysUseDefaultRange = Flag(form.alwaysUseDefaultRange);
    options.logNmea = Flag(form.logNmea);
}

void ReloadWaypoints(AppState& app) {
    PointLists& points = app.points;
    const std::lock_guard<std::mutex> guard(points.lock);
    points.waypoints.Clear();
    LoadPointFile(app.runtime.waypointFile, points.waypoints);
}

// Moves the data tree to the chosen root: its folders are made where
// missing and the waypoint file of the new tree is loaded. A root that
// cannot be made falls back to the documents folder, as at start-up.
// Returns whether the data tree moved, which a fallback to the tree in use
// does not.
bool ChangeStorageLocation(Program& program, const std::string& chosen) {
    AppState& app = program.app;
    if (SameStorageLocation(chosen, app.runtime.storageLocation)) return false;
    const std::string previousRoot = app.folders.root;
    app.runtime.storageLocation = chosen;
    PrepareDataFolders(app, program.files.documentsFolder);
    app.runtime.waypointFile = app.folders.root + "/My GPS/Waypoint.csv";
    ReloadWaypoints(app);
    return app.folders.root != previousRoot;
}

// A running logger starts a new file when its format or its folder changed,
// so that one file never mixes two formats or two places.
void StoreTrackLogFormat(Program& program, std::int32_t format, bool storageChanged) {
    AppState& app = program.app;
    Options& options = app.options;
    const bool logging = app.gpsRunning && options.trackLoggerEnabled != 0;
    if (logging && (format != options.trackLogFormat || storageChanged)) {
        RestartTrackFile(app.track, options, format, app.folders.trackLogDir, program.host.Time());
    } else {
        options.trackLogFormat = format;
    }
}

// The reader reads the flag at every read; a log switched on, or one whose
// folder moved, begins a new file.
void ApplyNmeaLog(Program& program, bool wasOn, bool storageChanged) {
    AppState& app = program.app;
    if (!app.gpsRunning) return;
    PortSource& port = program.port;
    const bool on = app.options.logNmea != 0;
    port.links.nmeaFolder = app.folders.nmeaDir;
    port.logNmea = on;
    if (on && (!wasOn || storageChanged)) BuildNmeaLogPath(port);
}

void ApplyBacklight(Program& program) {
    const bool keep = program.app.options.keepBacklightOn != 0;
    if (keep == program.screenHeld) return;
    if (keep) {
        program.host.HoldScreenOn();
    } else {
        program.host.ReleaseScreenOn();
    }
    program.screenHeld = keep;
}

}  // namespace

OptionsForm OpenOptionsForm(const AppState& app) {
    const Options& options = app.options;
    OptionsForm form;
    form.autoBluetooth = options.autoBluetooth != 0;
    form.keepBacklightOn = options.keepBacklightOn != 0;
    form.storageLocation = app.runtime.storageLocation;
    form.startGpsAtStartup = options.startGpsAtStartup != 0;
    form.loadPoiAtStartup = options.loadPoiAtStartup != 0;
    form.unitSystem = options.unitSystem;
    form.coordinateFormat = options.coordinateFormat;
    form.trackLogFormat = options.trackLogFormat;
    form.proximityRange = std::to_string(options.defaultProximityRange);
    form.alwaysUseDefaultRange = options.alwaysUseDefaultRange != 0;
    form.voiceEngine = options.voiceEngine;
    form.testSentence = LanguageText(kTextVoiceTestSentence);
    form.minimumSpeed = FieldText(options.minimumSpeed);
    form.dataProcessor = options.dataProcessor;
    form.logNmea = options.logNmea != 0;
    form.language = LanguageChoiceIndex(app.runtime.language);
    return form;
}

std::vector<std::string> OptionsComboEntries(OptionsCombo combo) {
    switch (combo) {
        case OptionsCombo::kUnitSystem:
            return LanguageEntries(kTextFirstUnitSystem, kUnitSystemCount);
        case OptionsCombo::kCoordinateFormat:
            return CoordinateFormatEntries();
        case OptionsCombo::kTrackLogFormat:
            return LanguageEntries(kTextFirstTrackLogFormat, kTrackLogFormatCount);
        case OptionsCombo::kVoiceEngine:
            return LanguageEntries(kTextFirstVoiceEngine, kVoiceEngineCount);
        case OptionsCombo::kDataProcessor:
            return LanguageEntries(kTextFirstDataProcessor, kDataProcessorCount);
        case OptionsCombo::kLanguage:
            return LanguageChoiceEntries();
    }
    return {};
}

std::vector<std::string> StorageChoices(const std::vector<std::string>& available,
                                        const std::string& current) {
    std::vector<std::string> choices = available;
    const bool listed = std::any_of(choices.begin(), choices.end(), [&](const std::string& choice) {
        return SameStorageLocation(choice, current);
    });
    if (!listed && !current.empty()) choices.insert(choices.begin(), current);
    return choices;
}

int StorageChoiceIndex(const std::vector<std::string>& choices, const std::string& current) {
    const auto found = std::find_if(
        choices.rbegin(), choices.rend(),
        [&](const std::string& choice) { return SameStorageLocation(choice, current); });
    return found == choices.rend() ? 0 : static_cast<int>(choices.rend() - found) - 1;
}

UnitLabels OptionsUnitLabels(int unitSystem) {
    return {SpeedUnitText(unitSystem), AltitudeUnitText(unitSystem)};
}

bool CanTestVoice(Program& program, const OptionsForm& form) {
    const VoiceGuide voice(program.host.Speech(), program.host.Processes(), program.host.Sound());
    return voice.IsVoiceEngineAvailable(form.voiceEngine) && !form.testSentence.empty();
}

bool TestVoice(Program& program, const OptionsForm& form) {
    if (!CanTestVoice(program, form)) return false;
    VoiceGuide voice(program.host.Speech(), program.host.Processes(), program.host.Sound());
    return voice.SpeakText(form.voiceEngine,
                           TruncateToUtf16Units(form.testSentence, kVoiceTestFieldLength));
}

double MinimumSpeedFromField(std::string_view text) {
    return std::max(0.0, ReadDecimalField(text, kMinimumSpeedFieldLength));
}

std::int32_t ProximityRangeFromField(std::string_view text) {
    return static_cast<std::int32_t>(
        ReadUnsignedField(text, std::numeric_limits<std::int32_t>::max()));
}

bool SameStorageLocation(const std::string& a, const std::string& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return LowerAscii(x) == LowerAscii(y); });
}

void ApplyOptionsForm(Program& program, const OptionsForm& form) {
    Options& options = program.app.options;
    const bool nmeaWasOn = options.logNmea != 0;
    StoreCheckBoxes(options, form);
    options.minimumSpeed = MinimumSpeedFromField(form.minimumSpeed);
    options.defaultProximityRange = ProximityRangeFromField(form.proximityRange);
    const bool storageChanged = ChangeStorageLocation(program, form.storageLocation);
    options.unitSystem = form.unitSystem;
    options.dataProcessor = form.dataProcessor;
    options.coordinateFormat = form.coordinateFormat;
    options.voiceEngine = form.voiceEngine;
    StoreTrackLogFormat(program, form.trackLogFormat, storageChanged);
    ApplyNmeaLog(program, nmeaWasOn, storageChanged);
    ApplyBacklight(program);
    SaveProgramSettings(program);
    ApplyLanguage(program, form.language);
    program.host.Repaint();
}

}  // namespace tolvane
