// The formats that mux writes.
#ifndef FRAMESIFT_APP_MUX_FAMILYTABLE_H
#define FRAMESIFT_APP_MUX_FAMILYTABLE_H

#include <memory>
#include <string>
#include <string_view>

#include "Mux/RecordingWriter.h"

namespace Marvane::FrameSift {

struct MUX_OPTIONS;

struct FAMILY_ROW
{
    std::string_view name;
    std::string_view videoCodecs; // separated by commas; "all", or "none"
    bool bIsOld;                  // carries frames alone: no metadata, no ciphers, no sums
    bool bHasClock;               // tells when a frame was taken
    std::unique_ptr<CRecordingWriter> (*pfnMake)(const MUX_OPTIONS& options);
};

// Null for a name that is not in the table.
const FAMILY_ROW* FindFamily(std::string_view name);
// The names, separated by commas, for the help.
std::string FamilyNames();

// Throws CAppError with EXIT_CODE::Usage for what the family cannot carry, as far as the options tell.
void RequireFamilyCarries(const MUX_OPTIONS& options);

} // namespace Marvane::FrameSift

#endif
