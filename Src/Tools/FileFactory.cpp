#include "Tools/FileFactory.h"

#include <cstring>
#include <new>

#include "Tools/KXFile.h"
#include "Tools/NullFileManip.h"

namespace Marvane::FrameSift {

namespace {

// A scheme for which there is no file object here.
constexpr char sc_remotePrefix[] = "tvf://";

bool IsPath(const char* lpszFileName)
{
    return lpszFileName != nullptr && std::strncmp(lpszFileName, sc_remotePrefix, sizeof sc_remotePrefix - 1) != 0;
}

} // namespace

IFileManipPtr CFileFactory::createFileManipObj(const char* lpszFileName, IFileManipulate::OPEN_MODE mode,
                                               int nPathEncodeType)
{
    if (IsPath(lpszFileName)) {
        const IFileManipPtr file(new (std::nothrow) CKXFile(nPathEncodeType));
        if (file.get() != nullptr && file->OpenFile(lpszFileName, mode))
            return file;
    }
    return IFileManipPtr(new (std::nothrow) CNullFileManip);
}

} // namespace Marvane::FrameSift
