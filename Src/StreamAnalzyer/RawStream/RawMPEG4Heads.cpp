#include "StreamAnalzyer/RawStream/RawMPEG4Heads.h"

#include "ESParse/MPEG4ESParser.h"
#include "Memory/WindowRead.h"
#include "StreamAnalzyer/RawStream/MPEG4Fields.h"

namespace Marvane::FrameSift {

namespace {

// A video object layer is read in this many bytes, whatever stands in them, so that the rate depends on nothing but the
// stream.
constexpr int sc_volLen = 20;

// The first byte behind the code of a VOP holds its type; no border can end in these.
constexpr int sc_vopHeadLen = 3;

// The user data tells no rate of its own if it has none.
constexpr int32_t sc_noUserRate = 25;

constexpr bool IsHead(uint32_t nWord)
{
    return nWord == MPEG4_FIRST_VOL || nWord == MPEG4_USER_DATA || nWord == MPEG4_GROUP_OF_VOP || nWord == MPEG4_VOP;
}

// A sprite VOP counts as a P VOP.
constexpr int32_t VopSubType(uint8_t chFirst)
{
    switch (chFirst & 0xC0) {
    case 0:
        return KX_FRAME_SUB_TYPE_VIDEO_I_FRAME;
    case 0x80:
        return KX_FRAME_SUB_TYPE_VIDEO_B_FRAME;
    default:
        return KX_FRAME_SUB_TYPE_VIDEO_P_FRAME;
    }
}

class CHeadReader
{
public:
    CHeadReader(CLogicData& logicData, CWordSlider& slider, FrameInfo& frame)
        : m_logicData(logicData), m_slider(slider), m_frame(frame)
    {}

    bool Read()
    {
        const int64_t nLastPos = m_slider.Pos() + gsk_rawMpeg4HeadsLen;
        while (m_slider.Pos() < nLastPos) {
            if (!m_slider.SlideTo(
                    [&](int scanID) { return IsHead(static_cast<uint32_t>(scanID)) || m_slider.Pos() >= nLastPos; }))
                return false;
            if (m_slider.Word() == MPEG4_VOP)
                return ReadVop();
            if (!ReadHead())
                return false;
        }
        return true;
    }

private:
    bool ReadHead()
    {
        switch (m_slider.Word()) {
        case MPEG4_FIRST_VOL:
            return ReadVol();
        case MPEG4_USER_DATA:
            // A rate from the layer itself is worth more.
            return m_bRateFound || ReadUserData();
        case MPEG4_GROUP_OF_VOP:
            return ReadGroup();
        default:
            return true;
        }
    }

    bool ReadVol()
    {
        const uint8_t* pVol = Behind(sc_volLen);
        if (pVol == nullptr)
            return false;
        CMPEG4ESParser::ParseBlock20(pVol, sc_volLen, m_frame, m_bRateFound);
        return true;
    }

    bool ReadUserData()
    {
        const uint8_t* pUserData = Behind(gsk_userDataLen);
        if (pUserData == nullptr)
            return false;
        const int32_t nRate = UserDataRate(pUserData[gsk_userDataRatePos]);
        m_frame.frameRate = nRate != 0 ? nRate : sc_noUserRate;
        return Skip(gsk_userDataLen);
    }

    bool ReadGroup()
    {
        const uint8_t* pTimeCode = Behind(gsk_groupTimeLen);
        if (pTimeCode == nullptr)
            return false;
        TakeGroupTime(pTimeCode, m_frame);
        return Skip(gsk_groupTimeLen);
    }

    bool ReadVop()
    {
        const uint8_t* pVop = Behind(sc_vopHeadLen);
        if (pVop == nullptr)
            return false;
        m_frame.frameSubType = VopSubType(pVop[0]);
        return Skip(sc_vopHeadLen);
    }

    const uint8_t* Behind(int nLen) { return GetDataAt(m_logicData, m_slider.Pos() + 1, nLen); }

    // What is skipped is not looked at, but stays in the word: a VOP that is not coded has two bytes only, so the start
    // code behind it begins in what is skipped.
    bool Skip(int nLen)
    {
        const int64_t nTo = m_slider.Pos() + nLen;
        return m_slider.SlideTo([&](int) { return m_slider.Pos() >= nTo; });
    }

    CLogicData& m_logicData;
    CWordSlider& m_slider;
    FrameInfo& m_frame;
    bool m_bRateFound = false;
};

} // namespace

bool ReadRawMPEG4Heads(CLogicData& logicData, CWordSlider& slider, FrameInfo& frame)
{
    return CHeadReader(logicData, slider, frame).Read();
}

} // namespace Marvane::FrameSift
