// All that the library does with a file.
#ifndef FRAMESIFT_SRC_TOOLS_IFILEMANIPULATE_H
#define FRAMESIFT_SRC_TOOLS_IFILEMANIPULATE_H

#include <cstdint>

#include "Tools/KXSmartPtr.h"

namespace Marvane::FrameSift {

// How a path is encoded. Stored for the day when it matters: here a path is bytes, whatever they mean.
enum KX_PATH_ENCODE_TYPE : int
{
    KX_PATH_ENCODE_TYPE_ANSI = 0,
    KX_PATH_ENCODE_TYPE_UTF8 = 1
};

// One object belongs to one thread at a time.
class IFileManipulate
{
public:
    enum OPEN_MODE : int
    {
        READ_ONLY = 0,
        WRITE_ONLY = 1,
        READ_WRITE = 2,
        READ_WRITE_SUPER = 3,
        WRITE_SUPER = 4
    };

    // The numbers are the C library's seek origins.
    enum MOVE_MODE : int
    {
        KX_FILE_BEGIN = 0,
        KX_FILE_CURRENT = 1,
        KX_FILE_END = 2
    };

    virtual ~IFileManipulate() = default;
    virtual bool OpenFile(const char* lpszFileName, OPEN_MODE mode) = 0;
    virtual bool CloseFile() = 0;
    virtual bool IsOpen() = 0;
    // Both answer the bytes that went through; a short count is the only sign of an end or an error.
    virtual int64_t WriteFile(const char* lpBuffer, int64_t nNumberOfBytesToWrite) = 0;
    virtual int64_t ReadFile(void* lpBuffer, int64_t nNumberOfBytesToRead) = 0;
    virtual int64_t GetSize() = 0; // of now; the position stays
    virtual bool SetPos(int64_t pos, MOVE_MODE moveMethod) = 0;
    virtual int64_t GetPos() { return 0; }
    virtual const char* GetFileName() = 0;
};

using IFileManipPtr = CKXSmartPtr<IFileManipulate>;

} // namespace Marvane::FrameSift

#endif
