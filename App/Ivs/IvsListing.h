// Reads a stream, or a bare payload, and lists or draws its intelligent video metadata.
#ifndef FRAMESIFT_APP_IVS_IVSLISTING_H
#define FRAMESIFT_APP_IVS_IVSLISTING_H

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "Ivs/IvsFormat.h"
#include "Ivs/Picture/IvsSvg.h"

namespace Marvane::FrameSift {

struct IVS_LISTING_OPTIONS
{
    std::string path; // "-": standard input
    int32_t nChunk = 1024 * 1024;
    std::vector<uint8_t> key;                         // AES; empty: enciphered frames stay so
    uint64_t nLimit = UINT64_MAX;                     // payloads
    std::map<int32_t, const IVS_FORMAT_ROW*> formats; // by subtype, where it is not the usual one
    const IVS_FORMAT_ROW* pRaw = nullptr;             // not null: the input is one payload of this format
    bool bJson = false;
    std::string picturePath; // "-": standard output; empty: a listing instead
    IVS_UNITS units;         // of the picture
};

struct IVS_LISTING_RESULT
{
    std::string summary;
    std::vector<std::string> warnings; // a line each
    bool bSound = true;                // no payload failed
    bool bInterrupted = false;         // by Ctrl-C; the picture is of what came in front of it
};

// Throws CAppError. Holds one chunk of a stream and what the picture needs, whatever the input's size.
IVS_LISTING_RESULT ListIvs(const IVS_LISTING_OPTIONS& options);

// How frames of a subtype are read; null: not at all.
const IVS_FORMAT_ROW* FormatOfSubType(const IVS_LISTING_OPTIONS& options, int32_t nSubType);

} // namespace Marvane::FrameSift

#endif
