// Recordings of the ZOAV family.
#ifndef FRAMESIFT_APP_MUX_ZOAVRECORDING_H
#define FRAMESIFT_APP_MUX_ZOAVRECORDING_H

#include <span>

#include "Mux/MuxOptions.h"
#include "Mux/RecordingWriter.h"

namespace Marvane::FrameSift {

class CZoavRecording : public CRecordingWriter
{
public:
    // Throws CAppError for a key of no good length.
    CZoavRecording(const MUX_OPTIONS& options, ZOAV_FAMILY eFamily);

    Bytes Video(const MediaUnit& unit, const UNIT_PLACE& place) override;
    Bytes Audio(const MediaUnit& unit, const UNIT_PLACE& place) override;
    Bytes Ivs(const IVS_UNIT& unit, const UNIT_PLACE& place) override;
    std::vector<std::string> Notes() const override;

private:
    ZoavFrame FrameAt(const UNIT_PLACE& place) const;
    Bytes Finish(std::span<const uint8_t> payload, ZoavFrame& frame);

    const MUX_OPTIONS& m_options;
    CPayloadSeal m_seal;
    ZOAV_FAMILY m_eFamily;
    size_t m_nLastFrameSize = 0; // of the frame that was written last
};

} // namespace Marvane::FrameSift

#endif
