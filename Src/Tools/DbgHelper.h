// A debugging tap that keeps the newest stretch of a byte stream in a file.
#ifndef FRAMESIFT_SRC_TOOLS_DBGHELPER_H
#define FRAMESIFT_SRC_TOOLS_DBGHELPER_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

namespace Marvane::FrameSift {

// Unarmed until WriteFileInfo. Each belongs to one analyzer and has no lock.
class CDbgStreamSave
{
public:
    CDbgStreamSave() = default;
    ~CDbgStreamSave();
    CDbgStreamSave(const CDbgStreamSave&) = delete;
    CDbgStreamSave& operator=(const CDbgStreamSave&) = delete;

    // Arms the capture; only the first arming counts, later ones answer true and change nothing. The file lies in the
    // directory path, and its name tells type, handle and this object. It starts anew once it holds more than maxSize
    // bytes. A negative maxSize leaves the limit at 5 MiB: as an unsigned number it would be no limit at all. False,
    // and not armed, without a path or memory.
    bool WriteFileInfo(void* handle, const char* path, int type, int maxSize);

    // Appends to the capture. The newest bytes stay: at least the limit less one write, at most the limit and one
    // write.
    void writeData(const uint8_t* data, int length);

private:
    bool Open();
    void Close();

    std::FILE* m_pFile = nullptr;
    size_t m_nMaxDataSize = 0x500000;
    size_t m_nCurDataSize = 0;
    std::string m_outputStream; // path of the capture
    bool m_bSave = false;
};

} // namespace Marvane::FrameSift

#endif
