// The formats of intelligent video metadata, as the command calls them and as recordings carry them.
#ifndef FRAMESIFT_APP_IVS_IVSFORMAT_H
#define FRAMESIFT_APP_IVS_IVSFORMAT_H

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "framesift/framesift.h"

namespace Marvane::FrameSift {

struct IVS_FORMAT_ROW
{
    std::string_view name; // "track-ex"
    KX_IVS_PARSE_TYPE eParseType;
    int32_t frameSubType; // of the data frames that carry it
    uint8_t chSubType;    // the same in a frame head of type 0xF1
    bool bRead;           // whether frames of that subtype are read as this format unless the user says otherwise
};

std::span<const IVS_FORMAT_ROW> IvsFormats();
// Null if there is none.
const IVS_FORMAT_ROW* FindIvsFormat(std::string_view name);
const IVS_FORMAT_ROW* FindIvsFormat(KX_IVS_PARSE_TYPE eParseType);
// How frames of a subtype are read; null: they carry no such data.
const IVS_FORMAT_ROW* IvsFormatOfSubType(int32_t frameSubType);
// "track, track-ex, ...", for help and error texts.
std::string IvsFormatNames();

} // namespace Marvane::FrameSift

#endif
