// Chooses the file object for a path.
#ifndef FRAMESIFT_SRC_TOOLS_FILEFACTORY_H
#define FRAMESIFT_SRC_TOOLS_FILEFACTORY_H

#include "Tools/IFileManipulate.h"

namespace Marvane::FrameSift {

class CFileFactory
{
public:
    // The file, opened. For what cannot be opened, an object on which IsOpen is false; empty only without memory.
    static IFileManipPtr createFileManipObj(const char* lpszFileName, IFileManipulate::OPEN_MODE mode,
                                            int nPathEncodeType);
};

} // namespace Marvane::FrameSift

#endif
