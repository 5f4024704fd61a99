// A listing of frames, in one of three forms.
#ifndef FRAMESIFT_APP_FRAMES_FRAMEPRINTER_H
#define FRAMESIFT_APP_FRAMES_FRAMEPRINTER_H

#include <memory>
#include <string>

#include "Frames/FrameSource.h"

namespace Marvane::FrameSift {

class CFramePrinter
{
public:
    virtual ~CFramePrinter() = default;
    // Both answer whole lines.
    virtual std::string Title() const = 0; // once, in front of the first frame; may be empty
    virtual std::string Line(const LISTED_FRAME& listed) const = 0;
};

std::unique_ptr<CFramePrinter> MakeTextPrinter();
std::unique_ptr<CFramePrinter> MakeCsvPrinter();
// path: the file's name as it was given, in bytes.
std::unique_ptr<CFramePrinter> MakeJsonPrinter(const std::string& path);

} // namespace Marvane::FrameSift

#endif
