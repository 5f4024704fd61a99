// Stands in for a file that cannot be had, so that callers need no null checks: they ask IsOpen.
#ifndef FRAMESIFT_SRC_TOOLS_NULLFILEMANIP_H
#define FRAMESIFT_SRC_TOOLS_NULLFILEMANIP_H

#include "Tools/IFileManipulate.h"

namespace Marvane::FrameSift {

class CNullFileManip : public IFileManipulate
{
public:
    bool OpenFile(const char*, OPEN_MODE) override { return false; }
    bool CloseFile() override { return false; }
    bool IsOpen() override { return false; }
    int64_t WriteFile(const char*, int64_t) override { return 0; }
    int64_t ReadFile(void*, int64_t) override { return 0; }
    int64_t GetSize() override { return 1; } // not 0: a fixed rule, by which "no file" is no "empty file"
    bool SetPos(int64_t, MOVE_MODE) override { return false; }
    const char* GetFileName() override { return "Null"; }
};

} // namespace Marvane::FrameSift

#endif
