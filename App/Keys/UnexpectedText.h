// What may be said of arguments that nobody knows.
#ifndef FRAMESIFT_APP_KEYS_UNEXPECTEDTEXT_H
#define FRAMESIFT_APP_KEYS_UNEXPECTEDTEXT_H

#include <string>
#include <vector>

namespace Marvane::FrameSift {

// One line without the values: the argument may be a key behind a misspelt option. arguments: not empty.
std::string UnexpectedText(const std::vector<std::string>& arguments);

} // namespace Marvane::FrameSift

#endif
