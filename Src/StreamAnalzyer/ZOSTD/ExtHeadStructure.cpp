// Extension heads that tell what a frame belongs to, when it was made, and how to check it.
#include <array>

#include "StreamAnalzyer/ZOSTD/ExtHead.h"

namespace Marvane::FrameSift {

namespace {

void TakeMilliSecond(uint64_t nMilliSecond, EXT_HEAD_TARGET& target)
{
    target.frame.frameTime.nMilliSecond = static_cast<int32_t>(nMilliSecond);
}

// Only the top bit is a flag: the field reads 0 or 0x80.
void TakeIncompleteFlag(uint64_t nFlag, EXT_HEAD_TARGET& target)
{
    target.frame.incompleteFrameFlag = static_cast<uint8_t>(nFlag & 0x80);
}

void TakeReferenceFrame(uint64_t nFrameOffset, EXT_HEAD_TARGET& target)
{
    target.ext.refIFrameSeq = static_cast<uint32_t>(target.frame.frameSeq) - static_cast<uint32_t>(nFrameOffset);
}

int TakeCheckValue(const EXT_HEAD_PLACE& place, EXT_HEAD_TARGET& target, int nStep)
{
    CopyExtHead(place, target.heads.head88);
    return nStep;
}

constexpr std::array sc_fields85 = {
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_85, chType, ext.customChangeInfo.chType),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_85, chLength, ext.customChangeInfo.chLength),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_85, chValue, ext.customChangeInfo.chValue),
};
constexpr std::array sc_fields92 = {
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_92, companyType, frame.companyType),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_92, tpStreamHeaderLen, frame.tpStreamHeaderLen),
};
constexpr std::array sc_fields94 = {
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_94, nAllLevels, frame.allLevels),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_94, nLevelOrder, frame.levelOrder),
};
constexpr std::array sc_fields96 = {
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_96, totalChannels, frame.totalChannels),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_96, curChannel, frame.curChannel),
};
constexpr std::array sc_fieldsA0 = {
    EXT_HEAD_TAKES(EXT_FRAME_HEAD_A0, nMilliSecond, TakeMilliSecond),
};
constexpr std::array sc_fieldsA1 = {
    EXT_HEAD_TAKES(EXT_FRAME_HEAD_A1, nIsCompleteFrameFlag, TakeIncompleteFlag),
};
constexpr std::array sc_fieldsB2 = {
    EXT_HEAD_TAKES(EXT_FRAME_HEAD_B2, refFrameOffset, TakeReferenceFrame),
};
constexpr std::array sc_fieldsB8 = {
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_B8, timeStamp, frame.nYuvTimeStamp),
};
constexpr std::array sc_fieldsB9 = {
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_B9, privacyVersion, frame.bPrivacyEnable),
};
constexpr std::array sc_fieldsBD = {
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_BD, utcTime, frame.utcTime),
};

constexpr EXT_HEAD_ROW sc_rows[] = {
    {0x84, EXT_HEAD_STEP::Fixed4, {}, &EXT_FRAME_HEAD::pHead84},
    {0x85, EXT_HEAD_STEP::Fixed4, sc_fields85},
    {0x88, EXT_HEAD_STEP::Fixed8, {}, &EXT_FRAME_HEAD::pHead88, &TakeCheckValue},
    {0x92, EXT_HEAD_STEP::Fixed8, sc_fields92, &EXT_FRAME_HEAD::pHead92},
    {0x94, EXT_HEAD_STEP::Fixed4, sc_fields94, &EXT_FRAME_HEAD::pHead94},
    {0x96, EXT_HEAD_STEP::Fixed4, sc_fields96, &EXT_FRAME_HEAD::pHead96},
    {0xA0, EXT_HEAD_STEP::Fixed4, sc_fieldsA0},
    {0xA1, EXT_HEAD_STEP::Fixed4, sc_fieldsA1},
    {0xB2, EXT_HEAD_STEP::SelfSized, sc_fieldsB2, &EXT_FRAME_HEAD::pHeadB2},
    {0xB8, EXT_HEAD_STEP::SelfSized, sc_fieldsB8, &EXT_FRAME_HEAD::pHeadB8},
    {0xB9, EXT_HEAD_STEP::SelfSized, sc_fieldsB9, &EXT_FRAME_HEAD::pHeadB9},
    {0xBD, EXT_HEAD_STEP::SelfSized, sc_fieldsBD, &EXT_FRAME_HEAD::pHeadBD},
};

} // namespace

std::span<const EXT_HEAD_ROW> ExtHeadsOfStructure()
{
    return sc_rows;
}

} // namespace Marvane::FrameSift
