// The verb index.
#ifndef FRAMESIFT_APP_INDEX_INDEXCOMMAND_H
#define FRAMESIFT_APP_INDEX_INDEXCOMMAND_H

#include <CLI/CLI.hpp>

#include "Index/IndexListing.h"
#include "Io/AppError.h"

namespace Marvane::FrameSift {

class CIndexCommand
{
public:
    // Declares the verb; the values land here when app parses its arguments.
    explicit CIndexCommand(CLI::App& app);
    bool IsChosen() const { return m_pVerb->parsed(); }
    EXIT_CODE Run(); // throws CAppError

private:
    CLI::App* m_pVerb;
    INDEX_OPTIONS m_options;
};

} // namespace Marvane::FrameSift

#endif
