#include "Tools/DbgHelper.h"

#include <cinttypes>
#include <new>

#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

CDbgStreamSave::~CDbgStreamSave()
{
    Close();
}

bool CDbgStreamSave::WriteFileInfo(void* handle, const char* path, int type, int maxSize)
{
    if (m_bSave)
        return true;
    if (path == nullptr)
        return false;
    char name[96]; // holds three numbers of any size
    std::snprintf(name, sizeof name, "//CDbgStreamSave_%d_%#" PRIxPTR "_%#" PRIxPTR ".dat", type,
                  reinterpret_cast<uintptr_t>(handle), reinterpret_cast<uintptr_t>(this));
    try {
        m_outputStream = path;
        m_outputStream += name;
    } catch (const std::bad_alloc&) {
        return false;
    }
    m_bSave = true;
    if (maxSize >= 0)
        m_nMaxDataSize = static_cast<size_t>(maxSize);
    return true;
}

void CDbgStreamSave::writeData(const uint8_t* data, int length)
{
    if (!m_bSave || data == nullptr || length < 1)
        return;
    if (m_nCurDataSize > m_nMaxDataSize)
        Close();
    if (m_pFile == nullptr && !Open()) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, "Src/Tools/DbgHelper", "open file error in save stream writeData.\n");
        return;
    }
    std::fwrite(data, 1, static_cast<size_t>(length), m_pFile);
    std::fflush(m_pFile);
    m_nCurDataSize += static_cast<size_t>(length); // what was asked for: a full disk must not keep the file growing
}

// Truncates.
bool CDbgStreamSave::Open()
{
    m_pFile = std::fopen(m_outputStream.c_str(), "wb");
    return m_pFile != nullptr;
}

void CDbgStreamSave::Close()
{
    if (m_pFile != nullptr)
        std::fclose(m_pFile);
    m_pFile = nullptr;
    m_nCurDataSize = 0;
}

} // namespace Marvane::FrameSift
