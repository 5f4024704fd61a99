// The verb check.
#ifndef FRAMESIFT_APP_CHECK_CHECKCOMMAND_H
#define FRAMESIFT_APP_CHECK_CHECKCOMMAND_H

#include <CLI/CLI.hpp>

#include <optional>
#include <string>
#include <vector>

#include "Check/FileCheck.h"
#include "Io/AppError.h"
#include "Io/OutputSink.h"

namespace Marvane::FrameSift {

class CCheckCommand
{
public:
    // Declares the verb; the values land here when app parses its arguments.
    explicit CCheckCommand(CLI::App& app);
    bool IsChosen() const { return m_pVerb->parsed(); }
    // The worst of all files. Throws CAppError if the report cannot be written.
    EXIT_CODE Run();

private:
    void DeclareClock();

    CLI::App* m_pVerb;
    std::vector<std::string> m_paths;
    CHECK_OPTIONS m_options;
    std::optional<uint64_t> m_maxFindings;
    bool m_bJson = false;
};

} // namespace Marvane::FrameSift

#endif
