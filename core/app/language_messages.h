#pragma once

#include <cstdint>
#include <string>

#include "core/app/host.h"

namespace tolvane {

// The language strings the GPS commands and the track logger show.
inline constexpr std::uint32_t kTextProductName = 10000;
inline constexpr std::uint32_t kTextNoReceiverChosen = 10700;
inline constexpr std::uint32_t kTextBluetoothFailed = 10701;
inline constexpr std::uint32_t kTextPortOpenFailed = 10702;
inline constexpr std::uint32_t kTextReaderFailed = 10703;
inline constexpr std::uint32_t kTextGpsDisconnected = 10704;
inline constexpr std::uint32_t kTextGpsSilent = 10705;
inline constexpr std::uint32_t kTextTrackWriteFailed = 10721;
inline constexpr std::uint32_t kTextGidLibraryMissing = 12000;
inline constexpr std::uint32_t kTextGidOpenFailed = 12001;

// Shows language string id in a message box with the product name as
// caption; a "%s" in the text is replaced by argument.
void ShowLanguageMessage(Host& host, std::uint32_t id, MessageIcon icon,
                         const std::string& argument = {});

}  // namespace tolvane
