// The verb seek.
#ifndef FRAMESIFT_APP_SEEK_SEEKCOMMAND_H
#define FRAMESIFT_APP_SEEK_SEEKCOMMAND_H

#include <CLI/CLI.hpp>

#include <optional>
#include <string>
#include <vector>

#include "Io/AppError.h"
#include "Recordings/Recording.h"
#include "Recordings/TimeOption.h"

namespace Marvane::FrameSift {

class CSeekCommand
{
public:
    // Declares the verb; the values land here when app parses its arguments.
    explicit CSeekCommand(CLI::App& app);
    bool IsChosen() const { return m_pVerb->parsed(); }
    EXIT_CODE Run(); // throws CAppError

private:
    void GoToTime(CRecording& recording);
    void GoToOffset(CRecording& recording);
    int64_t StartInFront(CRecording& recording) const;
    bool IsKeyFrameInFront(CRecording& recording) const;
    LISTED_FRAME ReadFrame(CRecording& recording) const;
    void Print(const LISTED_FRAME& listed) const;

    CLI::App* m_pVerb;
    std::string m_path;
    std::optional<WANTED_TIME> m_time;
    std::optional<int64_t> m_offset;
    bool m_bPrecise = false;
    bool m_bJson = false;
    std::vector<uint8_t> m_key;
    int32_t m_nType = 0;   // KX_STREAM_TYPE_*; 0: to be found out
    int64_t m_nWanted = 0; // frames in front of this offset are passed over
};

} // namespace Marvane::FrameSift

#endif
