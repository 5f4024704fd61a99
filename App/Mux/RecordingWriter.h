// What a recording's format makes of the units that go into it.
#ifndef FRAMESIFT_APP_MUX_RECORDINGWRITER_H
#define FRAMESIFT_APP_MUX_RECORDINGWRITER_H

#include <cstdint>
#include <string>
#include <vector>

#include "FrameWriter/RecordingClock.h"
#include "FrameWriter/ZOAVFrameWriter.h"
#include "Mux/IvsDescription.h"
#include "Mux/UnitCutter.h"

namespace Marvane::FrameSift {

// Where a unit stands in its track.
struct UNIT_PLACE
{
    uint64_t nDueMs = 0; // since the start of the recording
    uint32_t nSeq = 1;   // from 1 on
};

class CRecordingWriter
{
public:
    virtual ~CRecordingWriter() = default;

    // Throw CAppError with EXIT_CODE::Usage for a unit that the format cannot carry. Asked for the first unit of each track
    // before the output is created, and for each one before it is written.
    virtual void RequireVideo(const MediaUnit&) const {}
    virtual void RequireAudio(const MediaUnit&) const {}

    // Each answers the bytes that are due now: of the unit, or fewer or more if the format gathers them.
    virtual Bytes Video(const MediaUnit& unit, const UNIT_PLACE& place) = 0;
    virtual Bytes Audio(const MediaUnit& unit, const UNIT_PLACE& place) = 0;
    virtual Bytes Ivs(const IVS_UNIT& unit, const UNIT_PLACE& place) = 0;
    virtual Bytes End() { return {}; } // what stands behind the last unit

    // So many pictures stand in front of the first audio frame, whatever their time: readers know the format by them.
    virtual uint32_t LeadingPictures() const { return 0; }
    // What the user should know of the recording, once it is written.
    virtual std::vector<std::string> Notes() const { return {}; }
};

// A moment of the recorder's clock. Throws CAppError behind the last year that a format can tell.
KX_TIME TimeAt(CLOCK_MS nStart, uint64_t nDueMs);

} // namespace Marvane::FrameSift

#endif
