// What the codecs with start codes have in common: elements that begin with the bytes 00 00 01.
#ifndef FRAMESIFT_APP_MUX_STARTCODECUTTER_H
#define FRAMESIFT_APP_MUX_STARTCODECUTTER_H

#include "Mux/CutWindow.h"
#include "Mux/UnitCutter.h"

namespace Marvane::FrameSift {

class CStartCodeCutter : public CUnitCutter
{
public:
    void Feed(std::span<const uint8_t> bytes) override;
    void Finish() override;

protected:
    // In H.264 and H.265 one zero in front of 00 00 01 belongs to the start code; elsewhere it is stuffing behind the
    // element before.
    enum class ZERO_BYTE : uint8_t
    {
        PartOfStartCode,
        Stuffing
    };
    explicit CStartCodeCutter(ZERO_BYTE eZeroByte) : m_eZeroByte(eZeroByte) {}

    // One element. nStart: where its start code begins; body: what follows 00 00 01, stuffing included.
    virtual void OnElement(uint64_t nStart, std::span<const uint8_t> body) = 0;

    // What the elements since the last cut have told of their picture.
    struct PICTURE_FACTS
    {
        bool bSeen = false; // there is a picture
        UNIT_KIND eKind = UNIT_KIND::I;
        bool bKey = false;
        uint32_t nWidth = 0;
        uint32_t nHeight = 0;
    };
    PICTURE_FACTS m_picture;

    // Ends the unit in front of nPos and clears m_picture. Bytes without a picture are skipped.
    void CutAt(uint64_t nPos);

private:
    void Scan();
    void BeginElement(uint64_t nPrefix);
    void EndElement(uint64_t nEnd);

    ZERO_BYTE m_eZeroByte;
    CCutWindow m_window;
    bool m_bInElement = false;
    uint64_t m_nElement = 0; // where the start code of the open element begins
    uint64_t m_nBody = 0;    // behind its 00 00 01
    uint64_t m_nScan = 0;    // no start code begins before this
};

} // namespace Marvane::FrameSift

#endif
