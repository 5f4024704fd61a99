#include "Tools/KXFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <new>

namespace Marvane::FrameSift {

namespace {

struct OPEN_MODE_ROW
{
    IFileManipulate::OPEN_MODE eMode;
    int nFlags; // of open(), as the mode of fopen() stands for them
    const char* pMode;
};

constexpr OPEN_MODE_ROW sc_openModes[] = {
    {IFileManipulate::READ_ONLY, O_RDONLY, "rb"},
    {IFileManipulate::WRITE_ONLY, O_WRONLY | O_CREAT | O_TRUNC, "wb"},
    {IFileManipulate::READ_WRITE, O_RDWR, "r+"},
    {IFileManipulate::READ_WRITE_SUPER, O_RDWR | O_CREAT | O_APPEND, "ab+"},
    {IFileManipulate::WRITE_SUPER, O_WRONLY | O_CREAT | O_APPEND, "a"},
};

constexpr mode_t sc_newFileRights = 0666; // less the umask, as with fopen()

const OPEN_MODE_ROW* FindMode(IFileManipulate::OPEN_MODE mode)
{
    for (const OPEN_MODE_ROW& row : sc_openModes) {
        if (row.eMode == mode)
            return &row;
    }
    return nullptr;
}

bool IsRunOfBytes(int nFile)
{
    struct stat facts;
    return fstat(nFile, &facts) == 0 && (S_ISREG(facts.st_mode) || S_ISBLK(facts.st_mode));
}

// Not fopen(): it would wait for the other end of a FIFO.
std::FILE* OpenRunOfBytes(const char* lpszFileName, const OPEN_MODE_ROW& row)
{
    const int nFile = open(lpszFileName, row.nFlags | O_NONBLOCK | O_CLOEXEC | O_NOCTTY, sc_newFileRights);
    if (nFile < 0)
        return nullptr;
    std::FILE* pFile = IsRunOfBytes(nFile) ? fdopen(nFile, row.pMode) : nullptr;
    if (pFile == nullptr)
        close(nFile);
    return pFile;
}

} // namespace

bool CKXFile::OpenFile(const char* lpszFileName, OPEN_MODE mode)
{
    if (lpszFileName == nullptr)
        return false;
    try {
        m_szFileName = lpszFileName;
    } catch (const std::bad_alloc&) {
        return false;
    }
    // Empties the name just stored, deliberately in this order: an object that is used for a second file has no name.
    if (m_pFile != nullptr)
        CKXFile::CloseFile();
    if (const OPEN_MODE_ROW* pRow = FindMode(mode); pRow != nullptr)
        m_pFile = OpenRunOfBytes(lpszFileName, *pRow);
    return m_pFile != nullptr;
}

bool CKXFile::CloseFile()
{
    m_szFileName.clear();
    CKXAutoMutexLock lock(m_lockHandle);
    if (m_pFile == nullptr)
        return false;
    const bool bClosed = std::fclose(m_pFile) == 0;
    m_pFile = nullptr;
    return bClosed;
}

int64_t CKXFile::ReadFile(void* lpBuffer, int64_t nNumberOfBytesToRead)
{
    if (!CanTransfer(lpBuffer, nNumberOfBytesToRead))
        return 0;
    return static_cast<int64_t>(std::fread(lpBuffer, 1, static_cast<size_t>(nNumberOfBytesToRead), m_pFile));
}

int64_t CKXFile::WriteFile(const char* lpBuffer, int64_t nNumberOfBytesToWrite)
{
    if (!CanTransfer(lpBuffer, nNumberOfBytesToWrite))
        return 0;
    return static_cast<int64_t>(std::fwrite(lpBuffer, 1, static_cast<size_t>(nNumberOfBytesToWrite), m_pFile));
}

// By seeking, as that is what tells the size of a block device.
int64_t CKXFile::GetSize()
{
    if (m_pFile == nullptr)
        return 0;
    const off_t nPos = ftello(m_pFile);
    if (nPos < 0 || fseeko(m_pFile, 0, SEEK_END) != 0)
        return 0;
    const off_t nSize = ftello(m_pFile);
    (void)fseeko(m_pFile, nPos, SEEK_SET);
    return nSize > 0 ? nSize : 0;
}

bool CKXFile::SetPos(int64_t pos, MOVE_MODE moveMethod)
{
    static_assert(sizeof(off_t) == sizeof(int64_t));
    static_assert(KX_FILE_BEGIN == SEEK_SET && KX_FILE_CURRENT == SEEK_CUR && KX_FILE_END == SEEK_END);
    return m_pFile != nullptr && fseeko(m_pFile, pos, moveMethod) == 0;
}

} // namespace Marvane::FrameSift
