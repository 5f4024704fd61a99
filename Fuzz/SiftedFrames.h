// What a stream was separated into, in two ways of feeding it, and whether they agree.
#ifndef FRAMESIFT_FUZZ_SIFTEDFRAMES_H
#define FRAMESIFT_FUZZ_SIFTEDFRAMES_H

#include <iostream>
#include <string_view>

#include "Require.h"
#include "Support/Sift.h"

namespace Marvane::FrameSift {

// The payload of a sound frame lies within the frame.
template <class Record>
SIFTED_FRAME TakeSiftedFrame(const Record& record)
{
    Require(record.errorFlags != KX_ERROR_FLAGS_NOERROR || record.streamLen <= 0 ||
            (record.streamPointer >= record.framePointer &&
             record.streamPointer + record.streamLen <= record.framePointer + record.frameLen));
    return ToSifted(record);
}

// How the caller cuts the stream changes no record, but for these. A ZOII block that the stream's end cuts off is let pass
// if the window, not what remains of it, is long enough. And a frame whose extension heads reach past its end is accepted
// if the bytes there have come.
inline bool CutMayMatter(std::span<const uint8_t> stream, const std::vector<SIFTED_FRAME>& whole)
{
    constexpr std::string_view block = "ZOII";
    return std::search(stream.begin(), stream.end(), block.begin(), block.end()) != stream.end() ||
           std::any_of(whole.begin(), whole.end(), [](const SIFTED_FRAME& frame) { return frame.streamLen < 0; });
}

// Aborts if the two ways gave different frames.
inline void CompareSifted(const std::vector<SIFTED_FRAME>& whole, const std::vector<SIFTED_FRAME>& cut)
{
    if (whole == cut)
        return;
    for (const SIFTED_FRAME& frame : whole)
        std::cerr << "whole " << frame << '\n';
    for (const SIFTED_FRAME& frame : cut)
        std::cerr << "cut   " << frame << '\n';
    std::abort();
}

} // namespace Marvane::FrameSift

#endif
