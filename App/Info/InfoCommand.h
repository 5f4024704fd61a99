// The verb info.
#ifndef FRAMESIFT_APP_INFO_INFOCOMMAND_H
#define FRAMESIFT_APP_INFO_INFOCOMMAND_H

#include <CLI/CLI.hpp>

#include <cstdint>
#include <string>
#include <vector>

#include "Io/AppError.h"
#include "Io/OutputSink.h"

namespace Marvane::FrameSift {

class CInfoCommand
{
public:
    // Declares the verb; the values land here when app parses its arguments.
    explicit CInfoCommand(CLI::App& app);
    bool IsChosen() const { return m_pVerb->parsed(); }
    // The worst of all files. Throws CAppError at Ctrl-C and if the report cannot be written.
    EXIT_CODE Run();

private:
    EXIT_CODE TellAbout(const std::string& path, COutputSink& output) const;
    EXIT_CODE TellFailure(const std::string& path, EXIT_CODE eCode, const std::string& error,
                          COutputSink& output) const;

    CLI::App* m_pVerb;
    std::vector<std::string> m_paths;
    std::vector<uint8_t> m_key;
    int32_t m_nType = 0; // KX_STREAM_TYPE_*; 0: to be found out
    bool m_bJson = false;
};

} // namespace Marvane::FrameSift

#endif
