// The verb ivs.
#ifndef FRAMESIFT_APP_IVS_IVSCOMMAND_H
#define FRAMESIFT_APP_IVS_IVSCOMMAND_H

#include <CLI/CLI.hpp>

#include "Io/AppError.h"
#include "Ivs/IvsListing.h"

namespace Marvane::FrameSift {

class CIvsCommand
{
public:
    // Declares the verb; the values land here when app parses its arguments.
    explicit CIvsCommand(CLI::App& app);
    bool IsChosen() const { return m_pVerb->parsed(); }
    EXIT_CODE Run(); // throws CAppError

private:
    void DeclareStream();
    void DeclareOutput();

    CLI::App* m_pVerb;
    IVS_LISTING_OPTIONS m_options;
};

} // namespace Marvane::FrameSift

#endif
