// A listing of intelligent video metadata, in one of two forms.
#ifndef FRAMESIFT_APP_IVS_IVSPRINTER_H
#define FRAMESIFT_APP_IVS_IVSPRINTER_H

#include <memory>
#include <string>

#include "Ivs/IvsFrame.h"

namespace Marvane::FrameSift {

class CIvsPrinter
{
public:
    virtual ~CIvsPrinter() = default;
    // What one callback brings.
    virtual void Take(KX_IVS_PARSE_TYPE eType, const void* pRecords, int nLen) = 0;
    // Whole lines of the frame that the records were of. The next Take is of another frame.
    virtual std::string Finish(const IVS_FRAME& frame, const IVS_OUTCOME& outcome) = 0;
};

std::unique_ptr<CIvsPrinter> MakeIvsTextPrinter();
// path: the file's name as it was given, in bytes.
std::unique_ptr<CIvsPrinter> MakeIvsJsonPrinter(const std::string& path);

} // namespace Marvane::FrameSift

#endif
