// The verb mux.
#ifndef FRAMESIFT_APP_MUX_MUXCOMMAND_H
#define FRAMESIFT_APP_MUX_MUXCOMMAND_H

#include <CLI/CLI.hpp>

#include "Io/AppError.h"
#include "Mux/MuxOptions.h"

namespace Marvane::FrameSift {

class CMuxCommand
{
public:
    // Declares the verb; the values land here when app parses its arguments.
    explicit CMuxCommand(CLI::App& app);
    bool IsChosen() const { return m_pVerb->parsed(); }
    EXIT_CODE Run(); // throws CAppError

private:
    void DeclareVideo();
    void DeclareAudio();
    void DeclareIvs();
    void DeclareRecording();
    void DeclareSeal();
    void CheckTogether() const;

    CLI::App* m_pVerb;
    MUX_OPTIONS m_options;
};

} // namespace Marvane::FrameSift

#endif
