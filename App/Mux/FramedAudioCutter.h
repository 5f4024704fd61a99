// Audio whose frames tell their own length.
#ifndef FRAMESIFT_APP_MUX_FRAMEDAUDIOCUTTER_H
#define FRAMESIFT_APP_MUX_FRAMEDAUDIOCUTTER_H

#include "Mux/AudioHead.h"
#include "Mux/CutWindow.h"
#include "Mux/UnitCutter.h"

namespace Marvane::FrameSift {

// The first head, and the first behind a gap, must be followed by another head or by the end of the stream: a sync
// word alone is too common in rubbish. A frame that the end cuts off is skipped.
class CFramedAudioCutter : public CUnitCutter
{
public:
    explicit CFramedAudioCutter(AUDIO_HEAD_READER pfnReadHead) : m_pfnReadHead(pfnReadHead) {}
    void Feed(std::span<const uint8_t> bytes) override;
    void Finish() override;

private:
    bool Step(bool bAtEnd); // false: more bytes are needed
    void DeliverFrame(const AUDIO_HEAD& head);
    std::optional<AUDIO_HEAD> HeadAt(uint64_t nPos) const;
    bool HasRoomForHead(uint64_t nPos) const { return nPos + gsk_audioHeadSize <= m_window.End(); }

    AUDIO_HEAD_READER m_pfnReadHead;
    CCutWindow m_window;
    bool m_bLocked = false; // the last frame ended here
};

} // namespace Marvane::FrameSift

#endif
