#include "Frames/TypeOption.h"

#include <fmt/format.h>

#include <charconv>

#include "Frames/CodeNames.h"
#include "ParserMethod/ParserCreator.h"

namespace Marvane::FrameSift {

namespace {

constexpr const char* sc_name = "--type";
constexpr const char* sc_types = "1, 8, 194, 195, 196, 197";

} // namespace

bool IsTypeNumber(const std::string& text)
{
    return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

int32_t ParseStreamType(const std::string& text)
{
    int32_t nType = KX_STREAM_TYPE_UNKNOWN;
    const char* pEnd = text.data() + text.size();
    const auto result = std::from_chars(text.data(), pEnd, nType);
    if (result.ec != std::errc() || result.ptr != pEnd || nType < 0)
        throw CLI::ValidationError(sc_name, fmt::format("cannot take \"{}\"; allowed: {}", text, sc_types));
    if (CParserCreator::CreateStreamAnalyzer(static_cast<uint32_t>(nType)) == nullptr)
        throw CLI::ValidationError(sc_name, fmt::format("there is no parser for streams of type {} ({}); allowed: {}",
                                                        StreamTypeName(nType), nType, sc_types));
    return nType;
}

CLI::Option* AddTypeOption(CLI::App& verb, int32_t& nType)
{
    return verb
        .add_option_function<std::string>(
            sc_name, [&nType](const std::string& text) { nType = ParseStreamType(text); }, gsk_typeHelp)
        ->type_name("N");
}

} // namespace Marvane::FrameSift
