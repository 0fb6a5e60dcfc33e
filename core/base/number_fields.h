#pragma once

#include <cstdint>
#include <string_view>

namespace tolvane {

// The number fields of the dialogs, read the way their edits are read.

// An unsigned whole number with blanks around it. Text that is anything
// else reads as 0; a number past limit reads as limit, however long it is.
std::int64_t ReadUnsignedField(std::string_view text, std::int64_t limit);

// A decimal number at the start of text ("12.5", "-5", " 3.25 km/h"), the
// rest ignored; text without one reads as 0. Only the first maxLength
// characters count, as the edit holds no more.
double ReadDecimalField(std::string_view text, std::size_t maxLength);

}  // namespace tolvane
