// A file of the file system, through the C library's buffered files.
#ifndef FRAMESIFT_SRC_TOOLS_KXFILE_H
#define FRAMESIFT_SRC_TOOLS_KXFILE_H

#include <cstdio>
#include <string>

#include "Tools/AutoLock.h"
#include "Tools/IFileManipulate.h"

namespace Marvane::FrameSift {

// Regular files and block devices only. Anything else may keep its reader waiting for ever, or is no run of bytes.
class CKXFile : public IFileManipulate
{
public:
    explicit CKXFile(int nPathEncodeType) : m_nPathEncodeType(nPathEncodeType) {}
    ~CKXFile() override { CKXFile::CloseFile(); }
    CKXFile(const CKXFile&) = delete;
    CKXFile& operator=(const CKXFile&) = delete;

    // Closes what is open. False for a mode that does not exist too.
    bool OpenFile(const char* lpszFileName, OPEN_MODE mode) override;
    // False if nothing is open, or if the last bytes could not be written.
    bool CloseFile() override;
    bool IsOpen() override { return m_pFile != nullptr; }
    int64_t WriteFile(const char* lpBuffer, int64_t nNumberOfBytesToWrite) override;
    int64_t ReadFile(void* lpBuffer, int64_t nNumberOfBytesToRead) override;
    int64_t GetSize() override; // 0 if nothing is open
    bool SetPos(int64_t pos, MOVE_MODE moveMethod) override;
    const char* GetFileName() override { return m_szFileName.c_str(); }

private:
    bool CanTransfer(const void* pBuffer, int64_t nLen) const { return m_pFile != nullptr && pBuffer && nLen > 0; }

    std::string m_szFileName;
    CKXMutex m_lockHandle;
    [[maybe_unused]] int32_t m_nPathEncodeType; // nothing reads it: a path goes to the system as it is
    std::FILE* m_pFile = nullptr;
};

} // namespace Marvane::FrameSift

#endif
