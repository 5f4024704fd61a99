#include "Frames/FrameFields.h"
#include "Frames/FramePrinter.h"

namespace Marvane::FrameSift {

namespace {

// No cell needs quotes: all are numbers or names of our own.
std::string CellText(const FIELD_VALUE& value)
{
    if (const auto* pNumber = std::get_if<int64_t>(&value))
        return std::to_string(*pNumber);
    const auto* pText = std::get_if<std::string>(&value);
    return pText == nullptr ? std::string() : *pText;
}

std::string LineOf(const auto& cellOf)
{
    std::string line;
    for (const FRAME_FIELD& field : FrameFields()) {
        line += cellOf(field);
        line += ',';
    }
    line.back() = '\n';
    return line;
}

class CCsvPrinter : public CFramePrinter
{
public:
    std::string Title() const override
    {
        return LineOf([](const FRAME_FIELD& field) { return std::string(field.pName); });
    }

    std::string Line(const LISTED_FRAME& listed) const override
    {
        return LineOf([&listed](const FRAME_FIELD& field) { return CellText(field.pfnValue(listed)); });
    }
};

} // namespace

std::unique_ptr<CFramePrinter> MakeCsvPrinter()
{
    return std::make_unique<CCsvPrinter>();
}

} // namespace Marvane::FrameSift
