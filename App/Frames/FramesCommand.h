// The verb frames.
#ifndef FRAMESIFT_APP_FRAMES_FRAMESCOMMAND_H
#define FRAMESIFT_APP_FRAMES_FRAMESCOMMAND_H

#include <CLI/CLI.hpp>

#include "Frames/FrameListing.h"
#include "Io/AppError.h"

namespace Marvane::FrameSift {

class CFramesCommand
{
public:
    // Declares the verb; the values land here when app parses its arguments.
    explicit CFramesCommand(CLI::App& app);
    bool IsChosen() const { return m_pVerb->parsed(); }
    EXIT_CODE Run(); // throws CAppError

private:
    void DeclareForm();
    void DeclareFilter();
    void FixType(int32_t nType);
    void DeclareLog();

    CLI::App* m_pVerb;
    LISTING_OPTIONS m_options;
    std::string m_logDirectory;
    int m_nLogLevel = KX_LOG_LevelWarn;
};

} // namespace Marvane::FrameSift

#endif
