// The verb extract.
#ifndef FRAMESIFT_APP_EXTRACT_EXTRACTCOMMAND_H
#define FRAMESIFT_APP_EXTRACT_EXTRACTCOMMAND_H

#include <CLI/CLI.hpp>

#include "Extract/Extraction.h"
#include "Io/AppError.h"

namespace Marvane::FrameSift {

class CExtractCommand
{
public:
    // Declares the verb; the values land here when app parses its arguments.
    explicit CExtractCommand(CLI::App& app);
    bool IsChosen() const { return m_pVerb->parsed(); }
    EXIT_CODE Run(); // throws CAppError

private:
    void CheckOutputs() const;

    CLI::App* m_pVerb;
    EXTRACT_OPTIONS m_options;
};

} // namespace Marvane::FrameSift

#endif
