// The exported calls for intelligent video metadata.
#include <algorithm>
#include <iterator>

#include "FrameSift/CallLog.h"
#include "HandleMgr/HandleMgr.h"
#include "IVSParser/IVSParser.h"
#include "ParserMethod/StreamAnalyzer.h"
#include "framesift/framesift.h"

using namespace Marvane::FrameSift;

namespace {

using PARSE_IVS = int (*)(const uint8_t* pFrameBody, int len, IVSCallBack pCallBack, void* pUserData);

struct PARSE_TYPE_ROW
{
    KX_IVS_PARSE_TYPE eParseType;
    PARSE_IVS pfnParse;
};

// The other numbers of the enumeration are for callbacks only.
constexpr PARSE_TYPE_ROW sc_parsers[] = {
    {IVS_TRACK, &ParseIVSTrack},        {IVS_TRACK_EX, &ParseIVSTrackEx},      {IVS_TRACK_EX2, &ParseIVSTrackEx2},
    {IVS_TRACK_EX3, &ParseIVSTrackEx3}, {IVS_TRACK_ZOOP, &ParserIVSTrackZOOP}, {IVS_TRACK_15, &ParseIVSTrackEx15},
};

// A caller may ask for the judgement alone. The parsers need not know.
int NoCallBack(KX_IVS_PARSE_TYPE, void*, int, void*)
{
    return 0;
}

struct SUB_TYPE_ROW
{
    int frameSubType;
    KX_IVS_PARSE_TYPE eParseType;
};

constexpr SUB_TYPE_ROW sc_subTypes[] = {
    {KX_FRAME_SUB_TYPE_DATA_INTLEX, IVS_TRACK_EX2},
    {KX_FRAME_SUB_TYPE_DATA_INTL, IVS_TRACK_EX},
};

} // namespace

int KX_ParseIVS(unsigned char* pBuffer, int len, KX_IVS_PARSE_TYPE parseType, IVSCallBack pCallBack, void* pUserData)
{
    if (pBuffer == nullptr || len == 0) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_callPath, "[KX_ParseIVS] input param buffer %p,len %d is invailed! \n",
                     static_cast<void*>(pBuffer), len);
        return KX_ERROR_PARAMETER;
    }
    const auto* pRow = std::find_if(std::begin(sc_parsers), std::end(sc_parsers),
                                    [&](const PARSE_TYPE_ROW& row) { return row.eParseType == parseType; });
    if (pRow == std::end(sc_parsers)) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_callPath, "[KX_ParseIVS] ivs parsetype %d is invailed \n",
                     static_cast<int>(parseType));
        return KX_ERROR_PARSE_TYPE_NO_SUPPORT;
    }
    return pRow->pfnParse(pBuffer, len, pCallBack != nullptr ? pCallBack : &NoCallBack, pUserData);
}

int KX_ParseIVSEx(void* handle, unsigned char* pBuffer, int len, int frameSubType)
{
    CStreamAnalyzer* pAnalyzer = g_handleMgr.GetStreamAnalzyer(handle);
    // The reference that the look-up took is not given back here, deliberately: such a call leaves the handle with one
    // more, and it takes one more destroy to end it.
    if (pAnalyzer == nullptr || pBuffer == nullptr || len == 0)
        return KX_ERROR_PARAMETER;
    // A frame of any other subtype is simply no metadata, which is no failure.
    int nResult = KX_SUCCESS;
    for (const SUB_TYPE_ROW& row : sc_subTypes) {
        if (row.frameSubType == frameSubType)
            nResult = pAnalyzer->ParseIVSEx(pBuffer, len, row.eParseType);
    }
    g_handleMgr.ReleaseRefCount(handle);
    return nResult;
}

int KX_SetIVSObjAttrCBFun(void* handle, IVSObjAttrCBFun pCallBack, void* pUserData)
{
    CStreamAnalyzer* pAnalyzer = g_handleMgr.GetStreamAnalzyer(handle);
    if (pAnalyzer == nullptr)
        return KX_ERROR_PARAMETER;
    pAnalyzer->SetIVSObjAttrCBFun(pCallBack, pUserData);
    g_handleMgr.ReleaseRefCount(handle);
    return KX_SUCCESS;
}
