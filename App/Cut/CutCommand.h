// The verb cut.
#ifndef FRAMESIFT_APP_CUT_CUTCOMMAND_H
#define FRAMESIFT_APP_CUT_CUTCOMMAND_H

#include <CLI/CLI.hpp>

#include "Cut/Cutter.h"
#include "Io/AppError.h"

namespace Marvane::FrameSift {

class CCutCommand
{
public:
    // Declares the verb; the values land here when app parses its arguments.
    explicit CCutCommand(CLI::App& app);
    bool IsChosen() const { return m_pVerb->parsed(); }
    EXIT_CODE Run(); // throws CAppError

private:
    CLI::App* m_pVerb;
    CUT_OPTIONS m_options;
};

} // namespace Marvane::FrameSift

#endif
