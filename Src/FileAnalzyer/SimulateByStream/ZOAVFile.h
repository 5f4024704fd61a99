// Recordings of the ZOAV family.
#ifndef FRAMESIFT_SRC_FILEANALZYER_SIMULATEBYSTREAM_ZOAVFILE_H
#define FRAMESIFT_SRC_FILEANALZYER_SIMULATEBYSTREAM_ZOAVFILE_H

#include "FileAnalzyer/SimulateByStream/FileParseBase.h"

namespace Marvane::FrameSift {

class CZOAVFile : public CFileParseBase
{
public:
    CZOAVFile();

    // Checks the read, and deciphers.
    int GetFrameByIndex(KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx) override;
    // The parser's keys; 13 without a parser.
    int SetExtInfo(uint32_t type, unsigned char* key, int keylen) override;
    // The times are calendar milliseconds, far beyond the 32 bits of the base.
    void CalcDuration(KX_FILE_INFO& stFileInfo) override;
    // The wall-clock time, to the second; the time stamp is not used.
    int64_t RecalcTimeStamp(FrameInfo* frameInfo) override;
    std::unique_ptr<IStreamAnalzyer> CreateStreamObj() override;

private:
    bool Decipher(const FrameInfo& frameInfo);
    void DecipherFrame(FrameInfo& frameInfo, uint8_t* pFrame);
    void DecipherAes256(FrameInfo& frameInfo, uint8_t* pFrame);
};

} // namespace Marvane::FrameSift

#endif
