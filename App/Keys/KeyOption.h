// The option --key of the verbs. A key shows nowhere: not in an error line, not in the log.
#ifndef FRAMESIFT_APP_KEYS_KEYOPTION_H
#define FRAMESIFT_APP_KEYS_KEYOPTION_H

#include <CLI/CLI.hpp>

#include <cstdint>
#include <vector>

namespace Marvane::FrameSift {

// Declares --key HEX|@FILE for an AES key of 16, 24 or 32 bytes, which lands in key when the arguments are parsed. A
// wrong key is wrong usage; for a file that cannot be read the parsing throws CAppError.
CLI::Option* AddKeyOption(CLI::App& verb, std::vector<uint8_t>& key);

} // namespace Marvane::FrameSift

#endif
