#include <cstdlib>
#include <new>
#include <string_view>
#include <utility>

#include "Tools/KXConvert.h"

namespace Marvane::FrameSift {

namespace {

constexpr std::string_view sc_scheme = "tvf://";

// Where the separators of a URL stand.
struct URL_SEPARATORS
{
    size_t nUserEnd;     // ':'
    size_t nPasswordEnd; // the last '@': a password may contain others
    size_t nHostEnd;     // the last ':'
    size_t nPortEnd;     // '/'
};

// False if one is missing, or has nothing between it and the one before.
bool FindSeparators(std::string_view text, URL_SEPARATORS& at)
{
    at.nUserEnd = text.find(':', sc_scheme.size() - 1);
    at.nPasswordEnd = text.rfind('@');
    at.nHostEnd = text.rfind(':');
    at.nPortEnd = at.nHostEnd == text.npos ? text.npos : text.find('/', at.nHostEnd);
    if (at.nUserEnd == text.npos || at.nPasswordEnd == text.npos || at.nPortEnd == text.npos)
        return false;
    return sc_scheme.size() < at.nUserEnd && at.nUserEnd + 1 < at.nPasswordEnd && at.nPasswordEnd + 1 < at.nHostEnd &&
           at.nHostEnd + 1 < at.nPortEnd;
}

// What lies between two separators, or between one and the end.
std::string Between(std::string_view text, size_t nFrom, size_t nTo = std::string_view::npos)
{
    return std::string(text.substr(nFrom + 1, nTo == text.npos ? nTo : nTo - nFrom - 1));
}

} // namespace

void CKXConvert::ToUpper(char* text, int length)
{
    if (text == nullptr)
        return;
    for (int i = 0; i < length; ++i) {
        if (text[i] >= 'a' && text[i] <= 'z') // not toupper: the letters of other locales stay
            text[i] = static_cast<char>(text[i] - 'a' + 'A');
    }
}

std::string CKXConvert::GetExt(const std::string& name)
{
    const size_t nPoint = name.rfind('.');
    try {
        return nPoint == std::string::npos ? std::string() : name.substr(nPoint);
    } catch (const std::bad_alloc&) {
        return {};
    }
}

bool CKXConvert::ParseUrl(const char* url, URLInfo& info)
{
    const std::string_view text = url != nullptr ? url : "";
    URL_SEPARATORS at = {};
    if (!text.starts_with(sc_scheme) || !FindSeparators(text, at))
        return false;
    try {
        URLInfo found;
        found.strUserName = Between(text, sc_scheme.size() - 1, at.nUserEnd);
        found.strPassword = Between(text, at.nUserEnd, at.nPasswordEnd);
        found.strIP = Between(text, at.nPasswordEnd, at.nHostEnd);
        // Not atoi, which leaves open what a number too large for it does.
        found.nPort = static_cast<int32_t>(std::strtol(Between(text, at.nHostEnd, at.nPortEnd).c_str(), nullptr, 10));
        found.strFileName = Between(text, at.nPortEnd);
        info = std::move(found);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

} // namespace Marvane::FrameSift
