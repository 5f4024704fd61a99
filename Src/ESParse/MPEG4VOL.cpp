// The head of a video object layer: ISO/IEC 14496-2, 6.2.3, and 6.2.14 for the studio profiles.
#include <algorithm>
#include <array>
#include <initializer_list>

#include "ESParse/MPEG4ESParser.h"
#include "Tools/BitsStream.h"
#include "Tools/KXLog.h"
#include "Tools/KXMath.h"

namespace Marvane::FrameSift {

namespace {

constexpr auto sc_sourcePath = "Src/ESParse/MPEG4VOL";

// video_object_type_indication.
constexpr uint32_t sc_simpleStudio = 14;
constexpr uint32_t sc_coreStudio = 15;
// Of a stream whose profile somebody could not tell. Nothing sets it here.
constexpr int32_t sc_unknownProfile = -99;

// video_object_layer_shape.
constexpr uint32_t sc_rectangular = 0;
constexpr uint32_t sc_binaryOnly = 2;
constexpr uint32_t sc_grayscale = 3;

bool Refuse(const char* pReason)
{
    KX_WRITE_LOG(KX_LOG_LevelWarn, sc_sourcePath, "%s", pReason);
    return false;
}

void SkipFields(CBitsStream& bs, std::initializer_list<uint32_t> lengths)
{
    for (const uint32_t nBits : lengths)
        bs.Skip(nBits);
}

// 0 without an identifier.
uint32_t ReadVerid(CBitsStream& bs)
{
    if (bs.GetOneBit() == 0)
        return 0;
    const uint32_t nVerid = bs.GetBits(4);
    bs.Skip(3); // video_object_layer_priority
    return nVerid;
}

void SkipAspectRatio(CBitsStream& bs)
{
    constexpr uint32_t nExtended = 15;
    if (bs.GetBits(4) != nExtended)
        return;
    SkipFields(bs, {8, 8}); // par_width, par_height
}

// How long vop_time_increment is.
uint32_t IncrementBits(uint32_t nResolution)
{
    return static_cast<uint32_t>(CKXMath::Log2(static_cast<int32_t>(nResolution) - 1));
}

void SkipControlParameters(CBitsStream& bs)
{
    SkipFields(bs, {2, 1}); // chroma_format, low_delay
    if (bs.GetOneBit() == 0)
        return;
    // Halves of bit_rate, vbv_buffer_size and vbv_occupancy, and their marker bits.
    SkipFields(bs, {15, 1, 15, 1, 15, 1, 3, 11, 1, 15, 1});
}

void ReadSize(CBitsStream& bs, uint32_t nBits, MPEG4_INFO& info)
{
    bs.Skip(1); // marker bit
    info.nWidth = bs.GetBits(nBits);
    bs.Skip(1); // marker bit
    info.nHeight = bs.GetBits(nBits);
}

// From is_object_layer_identifier on.
bool ReadCommonHead(CBitsStream& bs, MPEG4_INFO& info)
{
    ReadVerid(bs);
    SkipAspectRatio(bs);
    if (bs.GetOneBit() != 0)
        SkipControlParameters(bs);
    if (bs.GetBits(2) != sc_rectangular)
        return false;
    bs.Skip(1); // marker bit
    const uint32_t nResolution = bs.GetBits(16);
    if (nResolution == 0)
        return false;
    bs.Skip(1);              // marker bit
    if (bs.GetOneBit() != 0) // fixed_vop_rate
        bs.Skip(IncrementBits(nResolution));
    ReadSize(bs, 13, info);
    return true;
}

// From the object type on. Shapes other than a rectangle are left to the common head, from wherever this one has come
// to. Kept: its fields do not stand there, so that a size it finds means nothing.
bool ReadStudioHead(CBitsStream& bs, MPEG4_INFO& info)
{
    constexpr uint32_t nOnlyDepth = 10;
    bs.Skip(4); // video_object_layer_verid
    const uint32_t nShape = bs.GetBits(2);
    bs.Skip(4); // video_object_layer_shape_extension
    bs.Skip(1); // progressive_sequence
    if (nShape == sc_binaryOnly)
        return ReadCommonHead(bs, info);
    bs.Skip(1); // rgb_components
    if (bs.GetBits(2) == 0)
        return Refuse("MPEG4 illegal chroma format\n");
    if (bs.GetBits(4) != nOnlyDepth)
        return Refuse("MPEG4 error patch\n");
    if (nShape != sc_rectangular)
        return ReadCommonHead(bs, info);
    ReadSize(bs, 14, info);
    return true;
}

// Rounded, in single precision. An increment of 0 is an endless rate.
int32_t RateOf(uint32_t nResolution, uint32_t nIncrement)
{
    if (nIncrement == 0)
        return INT32_MAX;
    const float fRate = static_cast<float>(nResolution) / static_cast<float>(nIncrement);
    return CKXMath::Round(static_cast<double>(fRate));
}

} // namespace

bool CMPEG4ESParser::ParseVol(CBitsStream& bs, int32_t& nStudioProfile, int32_t& nProfile, MPEG4_INFO& mpeg4Info)
{
    bs.Skip(32);
    bs.Skip(1); // random_accessible_vol
    const uint32_t nType = bs.GetBits(8);
    if (nType != sc_simpleStudio && nType != sc_coreStudio)
        return nStudioProfile == 0 ? ReadCommonHead(bs, mpeg4Info) : Refuse("MPEG4 error patch\n");
    if (nProfile != sc_studioProfile && nProfile != sc_unknownProfile)
        return Refuse("MPEG4 Invalid data.\n");
    nStudioProfile = 1;
    nProfile = sc_studioProfile;
    return ReadStudioHead(bs, mpeg4Info);
}

int CMPEG4ESParser::ParseBlock20(const uint8_t* pDataAfter20, uint32_t nLen, FrameInfo& frameInfo, bool& bIsHBE)
{
    std::array<uint8_t, 20> head;
    head.fill(0xFF);
    std::copy_n(pDataAfter20, std::min<size_t>(nLen, head.size()), head.begin());
    CBitsStream bs;
    bs.Init(head.data(), head.size());
    SkipFields(bs, {1, 8}); // random_accessible_vol, video_object_type_indication
    const uint32_t nVerid = ReadVerid(bs);
    SkipAspectRatio(bs);
    // The flag in front of the control parameters goes unread: they are taken to be there. Kept, and so is one bit less
    // for the vbv fields than they have.
    SkipFields(bs, {3, 1}); // vol_control_parameters and chroma_format, low_delay
    if (bs.GetOneBit() != 0)
        SkipFields(bs, {15, 16, 16, 3, 11, 1, 16});
    if (bs.GetBits(2) == sc_grayscale && nVerid != 1)
        bs.Skip(4); // video_object_layer_shape_extension
    bs.Skip(1);     // marker bit
    const uint32_t nResolution = bs.GetBits(16);
    if (nResolution == 0)
        return 0;
    bs.Skip(1); // marker bit
    const bool bFixed = bs.GetOneBit() != 0;
    const int32_t nRate = RateOf(nResolution, bFixed ? bs.GetBits(IncrementBits(nResolution)) : 1);
    frameInfo.frameRate = nRate;
    if ((nRate >= 1 && nRate <= 30) || nRate == 50 || nRate == 60)
        bIsHBE = true;
    return 0;
}

} // namespace Marvane::FrameSift
