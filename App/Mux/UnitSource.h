// The units of one elementary stream, read as they are needed.
#ifndef FRAMESIFT_APP_MUX_UNITSOURCE_H
#define FRAMESIFT_APP_MUX_UNITSOURCE_H

#include <memory>
#include <string>
#include <vector>

#include "Io/InputFile.h"
#include "Mux/UnitCutter.h"

namespace Marvane::FrameSift {

class CUnitSource
{
public:
    // Throws CAppError if the file cannot be opened.
    CUnitSource(const std::string& path, std::unique_ptr<CUnitCutter> cutter);

    // False at the end of the stream.
    bool Next(MediaUnit& unit);
    uint64_t SkippedBytes() const { return m_cutter->SkippedBytes(); }
    const CInputFile& File() const { return m_file; }

private:
    void ReadMore();

    CInputFile m_file;
    std::unique_ptr<CUnitCutter> m_cutter;
    std::vector<uint8_t> m_chunk;
    bool m_bEnd = false;
};

} // namespace Marvane::FrameSift

#endif
