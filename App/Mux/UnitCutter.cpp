#include "Mux/UnitCutter.h"

#include <string>
#include <utility>

#include "Io/AppError.h"

namespace Marvane::FrameSift {

void CUnitCutter::Deliver(MediaUnit&& unit)
{
    if (unit.payload.size() > gsk_maxUnitSize)
        throw CAppError(EXIT_CODE::Format, "the unit at byte " + std::to_string(unit.nOffset) +
                                               " is longer than 10 MiB, which a recording cannot carry");
    m_units.push_back(std::move(unit));
}

bool CUnitCutter::Take(MediaUnit& unit)
{
    if (m_units.empty())
        return false;
    unit = std::move(m_units.front());
    m_units.pop_front();
    return true;
}

} // namespace Marvane::FrameSift
