#include "Keys/UnexpectedText.h"

#include <algorithm>

namespace Marvane::FrameSift {

namespace {

constexpr size_t sc_longHex = 16; // half of the shortest key: a key cut short shows neither

// "--kye=00ff" and "-k00ff" hold a value too.
std::string NameOnly(const std::string& option)
{
    return option.substr(0, option.find_first_not_of("abcdefghijklmnopqrstuvwxyz-"));
}

bool MayBeKey(const std::string& argument)
{
    return argument.size() >= sc_longHex && argument.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
}

} // namespace

std::string UnexpectedText(const std::vector<std::string>& arguments)
{
    // Names of options are shown before all else; without one, the first argument that is surely no key.
    const auto option = std::find_if(arguments.begin(), arguments.end(),
                                     [](const std::string& argument) { return argument.starts_with('-'); });
    if (option != arguments.end())
        return "there is no option " + NameOnly(*option);
    const auto plain = std::find_if_not(arguments.begin(), arguments.end(), &MayBeKey);
    if (plain != arguments.end())
        return "the argument " + *plain + " was not expected";
    return "there is an argument too many; it may be a key and is not shown";
}

} // namespace Marvane::FrameSift
