#include "Ivs/IvsFormat.h"

#include <algorithm>

namespace Marvane::FrameSift {

namespace {

// Of the subtypes only INTL and INTLEX are told by the format; the others are what their names say. A frame does not tell
// the first track format from the extended one, which is what cameras send today.
constexpr IVS_FORMAT_ROW sc_formats[] = {
    {"track", IVS_TRACK, KX_FRAME_SUB_TYPE_DATA_INTL, 5, false},
    {"track-ex", IVS_TRACK_EX, KX_FRAME_SUB_TYPE_DATA_INTL, 5, true},
    {"segments", IVS_TRACK_EX2, KX_FRAME_SUB_TYPE_DATA_INTLEX, 14, true},
    {"scene", IVS_TRACK_EX3, KX_FRAME_SUB_TYPE_SCENE_INFORMATION_TAGGING, 19, true},
    {"overlay", IVS_TRACK_ZOOP, KX_FRAME_SUB_TYPE_ZOOP_WITH_SMART, 20, true},
    {"traffic", IVS_TRACK_15, KX_FRAME_SUB_TYPE_DATA_ITS, 11, true},
};

template <class FITS>
const IVS_FORMAT_ROW* Find(FITS fits)
{
    const auto* pRow = std::find_if(std::begin(sc_formats), std::end(sc_formats), fits);
    return pRow == std::end(sc_formats) ? nullptr : pRow;
}

} // namespace

std::span<const IVS_FORMAT_ROW> IvsFormats()
{
    return sc_formats;
}

const IVS_FORMAT_ROW* FindIvsFormat(std::string_view name)
{
    return Find([&](const IVS_FORMAT_ROW& row) { return row.name == name; });
}

const IVS_FORMAT_ROW* FindIvsFormat(KX_IVS_PARSE_TYPE eParseType)
{
    return Find([&](const IVS_FORMAT_ROW& row) { return row.eParseType == eParseType; });
}

const IVS_FORMAT_ROW* IvsFormatOfSubType(int32_t frameSubType)
{
    return Find([&](const IVS_FORMAT_ROW& row) { return row.bRead && row.frameSubType == frameSubType; });
}

std::string IvsFormatNames()
{
    std::string names;
    for (const IVS_FORMAT_ROW& row : sc_formats)
        names.append(names.empty() ? "" : ", ").append(row.name);
    return names;
}

} // namespace Marvane::FrameSift
