// The parsers of intelligent video metadata, one for each format. KX_ParseIVS picks one.
#ifndef FRAMESIFT_SRC_IVSPARSER_IVSPARSER_H
#define FRAMESIFT_SRC_IVSPARSER_IVSPARSER_H

#include <cstdint>

#include "framesift/ivs.h"
#include "framesift/result.h"

namespace Marvane::FrameSift {

class CBufferRead;
struct IVS_LANE_STORE;

// All messages of the parsers are logged under the folder, whichever file they stand in.
inline constexpr auto gsk_ivsPath = "Src/IVSParser";

// Each takes a payload, calls back with its records as ivs.h tells, and answers a KX_RESULT or KX_RESULT_EX. pFrameBody
// is not null and pCallBack neither; len may be any number, also below 0. No byte outside of the len bytes is read.
int ParseIVSTrack(const uint8_t* pFrameBody, int len, IVSCallBack pCallBack, void* pUserData);
int ParseIVSTrackEx(const uint8_t* pFrameBody, int len, IVSCallBack pCallBack, void* pUserData);
int ParseIVSTrackEx2(const uint8_t* pFrameBody, int len, IVSCallBack pCallBack, void* pUserData);
int ParseIVSTrackEx3(const uint8_t* pFrameBody, int len, IVSCallBack pCallBack, void* pUserData);
int ParserIVSTrackZOOP(const uint8_t* pFrameBody, int len, IVSCallBack pCallBack, void* pUserData);
int ParseIVSTrackEx15(const uint8_t* pFrameBody, int len, IVSCallBack pCallBack, void* pUserData);

// Traffic records; nIvsTrafficNum: how many of them the buffer was found to hold.
int ParseIVSTrackTraffic(const uint8_t* pFrameBody, int len, int nIvsTrafficNum, IVSCallBack pCallBack,
                         void* pUserData);

// A segment of A0 objects, of nLen bytes: what its own length says, or what is left of the buffer. nBufferLen: bytes from its start to the end of the buffer,
// which is never less: the fields of a segment shorter than its head are looked for behind it.
int ParseIVSTrackA1(const uint8_t* pFrameBody, int nLen, int nBufferLen, IVSCallBack pCallBack, void* pUserData);

// A segment of common objects, from its head on. pFrameBody may be null. store: none of its records may be in use.
int ParseIVSCommonObj(const uint8_t* pFrameBody, int len, IVSCallBack pCallBack, void* pUserData,
                      IVS_LANE_STORE& store);

// The lanes of a signal flow object, from behind its objType on. pObject may be null. What pArrtibute95 and pArrtibute96
// lead to is the store's.
int ParseSignalFlow(CBufferRead& pb, KX_IVS_COMMON_OBJ* pObject, IVS_LANE_STORE& store);

} // namespace Marvane::FrameSift

#endif
