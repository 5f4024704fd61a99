// The frames of intelligent video metadata that a JSON file describes: {"frames": [{"at_ms": 0, "format": "track-ex",
// "records": [...]}]}.
#ifndef FRAMESIFT_APP_MUX_IVSDESCRIPTION_H
#define FRAMESIFT_APP_MUX_IVSDESCRIPTION_H

#include <cstdint>
#include <string>
#include <vector>

#include "FrameWriter/ZOAVFrameWriter.h"
#include "Io/InputFile.h"

namespace Marvane::FrameSift {

struct IVS_UNIT
{
    uint64_t nDueMs = 0; // since the start of the recording
    uint8_t chSubType = 0;
    Bytes payload;
};

// In the order of their time, which is nMaxAtMs at most; those of one time in the order of the text. Throws
// CIvsJsonError.
std::vector<IVS_UNIT> ParseIvsDescription(const std::string& text, uint64_t nMaxAtMs);

// The same as a track of a recording.
class CIvsTrack
{
public:
    // Reads the file to its end. Throws CAppError.
    CIvsTrack(const std::string& path, uint64_t nMaxAtMs);

    const IVS_UNIT* Front() const
    {
        return m_nUnits < m_units.size() ? &m_units[m_nUnits] : nullptr;
    } // null at the end
    void Pop() { ++m_nUnits; }
    uint32_t Units() const { return static_cast<uint32_t>(m_nUnits); } // popped so far
    const CInputFile& File() const { return m_file; }

private:
    CInputFile m_file;
    std::vector<IVS_UNIT> m_units;
    size_t m_nUnits = 0;
};

} // namespace Marvane::FrameSift

#endif
