// JPEG pictures that stand one behind the other.
#ifndef FRAMESIFT_APP_MUX_JPEGCUTTER_H
#define FRAMESIFT_APP_MUX_JPEGCUTTER_H

#include "Mux/CutWindow.h"
#include "Mux/UnitCutter.h"

namespace Marvane::FrameSift {

// Walks the markers, so that a thumbnail inside an application segment ends no picture. Bytes between pictures are
// skipped; a picture without its end is delivered as far as it goes.
class CJpegCutter : public CUnitCutter
{
public:
    void Feed(std::span<const uint8_t> bytes) override;
    void Finish() override;

private:
    enum class STATE : uint8_t
    {
        Outside, // until a picture begins
        Marker,  // at a marker, or at fill bytes in front of one
        Scan     // in entropy-coded data, until a marker other than a restart
    };
    bool Step(); // false: more bytes are needed
    bool FindPicture();
    bool TakeMarker();
    bool TakeSegment(uint8_t chMarker);
    bool SkipScan();
    void EndPicture(uint64_t nEnd);

    CCutWindow m_window;
    STATE m_eState = STATE::Outside;
    uint64_t m_nPos = 0;
    uint32_t m_nWidth = 0;
    uint32_t m_nHeight = 0;
};

} // namespace Marvane::FrameSift

#endif
