// The object behind a stream handle: two windows, the detector, the parser, the queue and the keys.
#ifndef FRAMESIFT_SRC_PARSERMETHOD_STREAMANALYZER_H
#define FRAMESIFT_SRC_PARSERMETHOD_STREAMANALYZER_H

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <span>

#include "ESParse/ESHead.h"
#include "Error/Error.h"
#include "FileAnalzyer/SimulateByStream/FrameStore.h"
#include "IAnalyzer/IGetError.h"
#include "IAnalyzer/IStreamAnalzyer.h"
#include "Memory/DynamicBuffer.h"
#include "Memory/LogicData.h"
#include "ParserMethod/ParserCreator.h"
#include "Tools/AutoLock.h"
#include "Tools/DbgHelper.h"

namespace Marvane::FrameSift {

// One thread parses and fetches. Keys may be set, and type and last error asked for, on any other meanwhile.
class CStreamAnalyzer : public IFrameCallBack, public IGetError
{
public:
    explicit CStreamAnalyzer(int nBufferSize);
    ~CStreamAnalyzer() override;
    CStreamAnalyzer(const CStreamAnalyzer&) = delete;
    CStreamAnalyzer& operator=(const CStreamAnalyzer&) = delete;

    int OnFrame(FrameInfo* frame, ExtZOAVIFrameInfo* ext, void* userData) override;
    int32_t GetLastError() override { return m_errorType.GetErrorType(); }

    // A key that waits for the start of the next cycle. 0, 6 or 13.
    virtual int SetExtInfo(unsigned int type, const unsigned char* key, int keylen);
    // The same from a KX_DECRYPT_PARAM, which is copied. type: a KX_PARAM_TYPE, of which the keys are taken. size: of
    // param, at least 1. 0, 6 or 13; -1 without memory for the public key.
    int SetParamEx(unsigned int type, const void* param, int size);
    // No parser has parameters with a name: both answer true.
    bool SetParam(const char* name, int64_t nValue);
    bool GetParam(const char* name, int64_t& nValue);

    int Init();
    // Fixes the type: nothing is detected.
    int InitEx(int nType);
    int Uninit();

    // One cycle: attaches the chunk, finds out the type if it is not known, and scans. Frames that were not fetched
    // since the last cycle are gone.
    int ParseData(unsigned char* buffer, int length);
    int GetOneFrame(FrameInfo* frame, ExtZOAVIFrameInfo* ext);
    int GetStreamType() const { return m_nStreamType.load(std::memory_order_relaxed); }
    // The format that the parser has found inside: of a legacy stream, 0 as long as it is audio alone.
    int GetInnerType() const { return m_pStreamAnalzyer != nullptr ? m_pStreamAnalzyer->GetType() : 0; }
    // The bytes that wait for the next cycle. They stay the window's.
    int GetRemainData(unsigned char** data, int* len);
    int ClearBuffer();
    int FlushBuffer();

    // Arms a capture: 0 of what goes in, 1 of what comes out, any other number of both.
    bool WriteFileInfo(void* handle, const char* pWritePath, int nWriteType, int nWriteSize);
    int SetInfoProcCallback(fKXInfoCallback pInfoCallback, void* userData);
    // Who takes the objects of ParseIVSEx; null: nobody. Not while that runs.
    void SetIVSObjAttrCBFun(IVSObjAttrCBFun pCallBack, void* pUserData);
    // Parses a payload of metadata and hands its objects out in the plain form. A KX_RESULT or KX_RESULT_EX.
    int ParseIVSEx(unsigned char* pBuffer, int len, KX_IVS_PARSE_TYPE eParseType);
    // From then on each cycle tells the parser to spare work. There is no way back.
    void SetLowCpuPercentageEnable();

protected:
    // From then on this one parses, whatever the bytes look like.
    void TakeParser(std::unique_ptr<IStreamAnalzyer> pStreamAnalzyer);

    CLogicData m_logicData; // the parser's window

private:
    static int CallBackIVSEx(KX_IVS_PARSE_TYPE IVSType, void* pIVSBuff, int nIVSBuffLen, void* pUserData);
    void HandOutTracks(const KX_IVS_OBJ_EX* pObjects, int nIVSBuffLen) const;
    void HandOutCommonObjects(std::span<uint8_t> objects) const;
    void HandOut(KX_IVS_OBJ_INFO& info) const;
    int ParseDataEx();
    int AnalyzeStreamType();
    int ChooseClass();
    bool HasParserForParams();
    int WaitWithKey(const KX_DECRYPT_PARAM& param);
    int WaitWithKeyRecord(const KX_DECRYPT_PARAM& param);
    int WaitInKeyRing(const KX_DECRYPT_PARAM& param);
    int KeyTaken();
    void HandOverKeys();
    void HandOverKeyRing();
    int StoreError(int nResult);

    int32_t m_nBufferSize;                    // stored; windows start at a size of their own
    std::atomic<bool> m_bChoosedClass{false}; // set behind m_pStreamAnalzyer, for threads that bring keys
    CError m_errorType;
    CLogicData m_checkData; // the detector's window over the same chunks
    std::unique_ptr<IStreamAnalzyer> m_pStreamAnalzyer;
    CFrameStore m_frameStore;
    std::atomic<int32_t> m_nStreamType{KX_STREAM_TYPE_UNKNOWN};
    [[maybe_unused]] int32_t m_nTimeStamp = 0, m_nRate = 0, m_nMSecond = 0, m_nSecond = 0;
    CParserCreator m_creator;
    [[maybe_unused]] int32_t m_nPreVideoFrameNum = 0;
    [[maybe_unused]] bool m_bIFrameExist = false;

    // The waiting keys, under m_csMutex. m_bKeySet is looked at without it first, so that a cycle without a new key
    // takes no lock.
    CKXMutex m_csMutex;
    std::atomic<bool> m_bKeySet{false};
    uint32_t m_nEncryptType = KX_ENCRYPT_UNKOWN;
    CESHead m_DecryptKey;         // kind 1
    CDynamicBuffer m_DecryptData; // kind 8, several in a row
    std::array<KX_DECRYPT_PARAM, 10> m_DecryptParam{};
    int32_t m_nVkekNum = 0; // next slot of m_DecryptParam

    fKXInfoCallback m_pInfoCallback = nullptr;
    void* m_userData = nullptr;
    IVSObjAttrCBFun m_fpIVSObjAttrCBFun = nullptr;
    void* m_pIVSUserData = nullptr;
    CDbgStreamSave m_streamSaveDebug;
    CDbgStreamSave m_streamSaveDebugOut;
    bool m_bLowCpuPercentage = false;
};

// Blanks what a frame that leaves a stream handle must not tell of its source: the stream's type, its encryption, the
// device's extension data. Smart subtypes become plain ones.
void CloseSensitiveBytesForRepublic(FrameInfo* frame, ExtZOAVIFrameInfo* ext);

} // namespace Marvane::FrameSift

#endif
