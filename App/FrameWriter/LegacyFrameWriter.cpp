#include "FrameWriter/LegacyFrameWriter.h"

#include <algorithm>
#include <array>

namespace Marvane::FrameSift {

namespace {

void AppendLsb(Bytes& to, uint32_t nValue, int nBytes)
{
    for (int n = 0; n < nBytes; ++n)
        to.push_back(static_cast<uint8_t>(nValue >> (8 * n)));
}

Bytes WithId(uint8_t chCode)
{
    return {0, 0, 1, chCode};
}

// What the head has besides is filled: zeros would read as the start code that the payload begins with, and the
// head as one that ends before them.
Bytes Finish(Bytes head, size_t nHeadLen, std::span<const uint8_t> payload)
{
    head.resize(nHeadLen, 0x11);
    head.insert(head.end(), payload.begin(), payload.end());
    return head;
}

struct NEW_FORM
{
    uint8_t chKeyMpeg4;
    uint8_t chKeyH264;
    uint8_t chOtherMpeg4;
    uint8_t chOtherH264;
    size_t nKeyHeadLen;
    size_t nOtherHeadLen;
};

constexpr std::array<NEW_FORM, 3> sc_forms = {{
    {0xFB, 0xFD, 0xFA, 0xFC, 16, 8},
    {0xFA, 0xFC, 0xFB, 0xFD, 16, 8},
    {0xFB, 0xFD, 0xFA, 0xFC, 20, 12},
}};

const NEW_FORM& FormOf(NEW_HEADS eHeads)
{
    return sc_forms[static_cast<size_t>(eHeads)];
}

uint32_t PackDateTime(const KX_TIME& time)
{
    const auto field = [](int32_t nValue, int nShift) { return static_cast<uint32_t>(nValue) << nShift; };
    return field(time.nSecond, 0) | field(time.nMinute, 6) | field(time.nHour, 12) | field(time.nDay, 17) |
           field(time.nMonth, 22) | field(time.nYear - 2000, 26);
}

Bytes AudioFrame(uint8_t chType, uint8_t chSamples, size_t nHeadLen, std::span<const uint8_t> payload)
{
    Bytes head = WithId(0xF0);
    head.push_back(chType);
    head.push_back(chSamples);
    AppendLsb(head, static_cast<uint32_t>(payload.size()), 2);
    return Finish(std::move(head), nHeadLen, payload);
}

} // namespace

Bytes NewKeyFrame(NEW_HEADS eHeads, const LEGACY_PICTURE& picture, std::span<const uint8_t> payload)
{
    const NEW_FORM& form = FormOf(eHeads);
    Bytes head = WithId(picture.bH264 ? form.chKeyH264 : form.chKeyMpeg4);
    head.push_back(picture.chReserved);
    head.push_back(static_cast<uint8_t>(picture.chInterlace << 5 | (picture.nFrameRate & 31)));
    head.push_back(static_cast<uint8_t>(picture.nWidth / 8));
    head.push_back(static_cast<uint8_t>(picture.nHeight / 8));
    AppendLsb(head, PackDateTime(picture.time), 4);
    AppendLsb(head, static_cast<uint32_t>(payload.size()), 4);
    return Finish(std::move(head), form.nKeyHeadLen, payload);
}

Bytes NewOtherFrame(NEW_HEADS eHeads, bool bH264, std::span<const uint8_t> payload)
{
    const NEW_FORM& form = FormOf(eHeads);
    Bytes head = WithId(bH264 ? form.chOtherH264 : form.chOtherMpeg4);
    AppendLsb(head, static_cast<uint32_t>(payload.size()), 4);
    return Finish(std::move(head), form.nOtherHeadLen, payload);
}

Bytes NewDataFrame(uint8_t chKind, std::span<const uint8_t> payload)
{
    constexpr std::array<size_t, 8> headLens = {5, 12, 12, 5, 17, 16, 17, 12}; // 5: no head is told for it
    Bytes head = WithId(0xF1);
    head.push_back(chKind);
    return Finish(std::move(head), chKind < headLens.size() ? headLens[chKind] : 5, payload);
}

Bytes ZoptFrame(std::span<const uint8_t> payload)
{
    Bytes head = {'Z', 'O', 'P', 'T'};
    AppendLsb(head, static_cast<uint32_t>(payload.size()), 4);
    return Finish(std::move(head), 8, payload);
}

Bytes OldAudioFrame(uint8_t chType, uint8_t chSamples, std::span<const uint8_t> payload)
{
    return AudioFrame(chType, chSamples, 8, payload);
}

Bytes OldAudioFrameEx(uint8_t chType, uint8_t chSamples, std::span<const uint8_t> payload)
{
    return AudioFrame(chType, chSamples, 16, payload);
}

Bytes HbBlock(const LEGACY_PICTURE& picture, uint32_t nBlockSeq, std::span<const uint8_t> payload)
{
    Bytes head = WithId(0xF2);
    head.push_back(0);
    head.push_back(static_cast<uint8_t>(picture.nFrameRate << 3));
    AppendLsb(head, static_cast<uint32_t>(picture.nWidth / 16 << 3 | picture.nHeight / 16 << 9), 2);
    for (const int nShift : {24, 16, 8, 0})
        head.push_back(static_cast<uint8_t>(picture.nSeconds >> nShift));
    AppendLsb(head, nBlockSeq, 4);
    Bytes block = Finish(std::move(head), 16, payload.first(std::min(payload.size(), gsk_hbBlockPayload)));
    block.resize(16 + gsk_hbBlockPayload, 0);
    return block;
}

Bytes LegacyEndMark()
{
    return WithId(0xF0);
}

} // namespace Marvane::FrameSift
