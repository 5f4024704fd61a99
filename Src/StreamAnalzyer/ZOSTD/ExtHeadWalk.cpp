// The walk over the extension heads, and the lookup of a tag.
#include <algorithm>
#include <array>

#include "StreamAnalzyer/ZOSTD/ExtHead.h"

namespace Marvane::FrameSift {

namespace {

constexpr int sc_unknownStep = 4;
constexpr int sc_guardedMinSize = 3;
// Above this tag every head, known or not, tells its length in byte 1. This is what lets the format grow.
constexpr uint8_t sc_lastUnsizedTag = 0xB6;

using EXT_HEAD_LOOKUP = std::array<const EXT_HEAD_ROW*, 256>;

EXT_HEAD_LOOKUP MakeLookup()
{
    EXT_HEAD_LOOKUP lookup{};
    for (const auto& rows :
         {ExtHeadsOfPicture(), ExtHeadsOfAudio(), ExtHeadsOfStructure(), ExtHeadsOfCipher(), ExtHeadsOfOverlay()}) {
        for (const EXT_HEAD_ROW& row : rows)
            lookup[row.nTag] = &row;
    }
    return lookup;
}

int StepOfUnknown(uint8_t nTag, int nOwnSize)
{
    return nTag > sc_lastUnsizedTag && nOwnSize != 0 ? nOwnSize : sc_unknownStep;
}

int StepOf(EXT_HEAD_STEP eStep, int nOwnSize)
{
    switch (eStep) {
    case EXT_HEAD_STEP::Fixed8:
        return 8;
    case EXT_HEAD_STEP::Guarded:
        return nOwnSize;
    case EXT_HEAD_STEP::SelfSized:
        return nOwnSize != 0 ? nOwnSize : 4;
    case EXT_HEAD_STEP::Fixed4:
        break;
    }
    return 4;
}

int TakeHead(const EXT_HEAD_ROW& row, const EXT_HEAD_PLACE& place, EXT_HEAD_TARGET& target)
{
    const int nOwnSize = place.bytes.size() > 1 ? place.bytes[1] : 0;
    if (row.pfnNotePlace != nullptr)
        row.pfnNotePlace(place.nIndex, target);
    if (row.eStep == EXT_HEAD_STEP::Guarded && nOwnSize < sc_guardedMinSize)
        return sc_unknownStep;
    if (row.pSeen != nullptr)
        target.heads.*row.pSeen = place.bytes.data();
    TakeExtHeadFields(row.fields, place.bytes, target);
    const int nStep = StepOf(row.eStep, nOwnSize);
    return row.pfnEffect != nullptr ? row.pfnEffect(place, target, nStep) : nStep;
}

} // namespace

void TakeExtHeadFields(std::span<const EXT_HEAD_FIELD> fields, std::span<const uint8_t> bytes, EXT_HEAD_TARGET& target)
{
    for (const EXT_HEAD_FIELD& field : fields) {
        if (field.nOffset + field.nSize <= bytes.size())
            field.pfnTake(bytes.data() + field.nOffset, target);
    }
}

uint64_t ExtHeadNumber(std::span<const uint8_t> bytes, size_t nOffset, size_t nSize)
{
    return nOffset + nSize <= bytes.size() ? LoadLsb(bytes.data() + nOffset, nSize) : 0;
}

uint8_t* CopyExtHeadPart(const EXT_HEAD_PLACE& place, size_t nOffset, size_t nLen, EXT_HEAD_TARGET& target)
{
    if (nOffset + nLen > place.bytes.size())
        return nullptr;
    return target.linkBuffer.InsertBuffer(place.bytes.data() + nOffset, static_cast<uint32_t>(nLen));
}

void WalkExtHeads(std::span<const uint8_t> bytes, int nExtFrameLen, EXT_HEAD_TARGET& target)
{
    static const EXT_HEAD_LOOKUP s_lookup = MakeLookup();
    const int nEnd = static_cast<int>(std::min(bytes.size(), static_cast<size_t>(nExtFrameLen)));
    int nStep = 0;
    for (int nIndex = 0; nIndex < nEnd; nIndex += nStep) {
        const EXT_HEAD_PLACE place{bytes.subspan(static_cast<size_t>(nIndex)), nIndex, nExtFrameLen};
        const uint8_t nTag = place.bytes[0];
        if (const EXT_HEAD_ROW* pRow = s_lookup[nTag]; pRow != nullptr)
            nStep = TakeHead(*pRow, place, target);
        else
            nStep = StepOfUnknown(nTag, place.bytes.size() > 1 ? place.bytes[1] : 0);
        if (nStep == EXT_HEAD_STOP)
            return;
    }
    // Whatever a head said of fields: these two codecs are taken as progressive.
    const int32_t nEncodeType = target.frame.frameEncodeType;
    if (nEncodeType == KX_ENCODE_VIDEO_MPEG4 || nEncodeType == KX_ENCODE_VIDEO_HI_H264)
        target.frame.deinterlace = KX_DEINTERLACE_NONE;
}

} // namespace Marvane::FrameSift
