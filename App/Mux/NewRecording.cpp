#include <fmt/format.h>

#include "Mux/FamilyTable.h"
#include "Mux/OldPicture.h"
#include "Mux/OldRecording.h"

namespace Marvane::FrameSift {

namespace {

constexpr PICTURE_SIZE sc_largest = {2040, 2040};
constexpr uint32_t sc_step = 8;

// What readers make of the year in a head of 16 bytes, in this order.
int32_t ReadYear(int32_t nYear)
{
    if (nYear > 2049)
        nYear -= 42;
    return nYear > 2019 ? nYear - 16 : nYear;
}

} // namespace

CNewRecording::CNewRecording(const MUX_OPTIONS& options, NEW_HEADS eHeads)
    : COldRecording(options, OLD_AUDIO_HEAD::Short), m_eHeads(eHeads)
{
    RequireOldRate(options.rate, Family());
}

void CNewRecording::RequireVideo(const MediaUnit& unit) const
{
    RequireOldSize(unit, sc_step, sc_largest, Family());
}

Bytes CNewRecording::Video(const MediaUnit& unit, const UNIT_PLACE& place)
{
    const bool bEx1 = m_eHeads == NEW_HEADS::Ex1;
    const bool bH264 = Options().pVideoCodec->name == "h264";
    if (!unit.bKey)
        return NewOtherFrame(m_eHeads, bH264, unit.payload);
    LEGACY_PICTURE picture;
    picture.nWidth = static_cast<int32_t>(unit.nWidth);
    picture.nHeight = static_cast<int32_t>(unit.nHeight);
    picture.nFrameRate = static_cast<int32_t>(Options().rate.nValue / Options().rate.nDenominator);
    picture.bH264 = bH264;
    picture.time = TimeAt(Options().nStart, place.nDueMs);
    if (!bEx1 && m_nMisreadYear == 0 && ReadYear(picture.time.nYear) != picture.time.nYear)
        m_nMisreadYear = picture.time.nYear;
    return NewKeyFrame(m_eHeads, picture, unit.payload);
}

std::vector<std::string> CNewRecording::Notes() const
{
    auto notes = COldRecording::Notes();
    if (m_nMisreadYear != 0)
        notes.push_back(fmt::format("readers of the family {} take the year {} for {}: of years above 2049 they take "
                                    "42, then of those above 2019 16; --start names another time",
                                    Family(), m_nMisreadYear, ReadYear(m_nMisreadYear)));
    return notes;
}

} // namespace Marvane::FrameSift
