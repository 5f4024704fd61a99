// Writes a recording from a video track, an audio track and a track of intelligent video metadata.
#ifndef FRAMESIFT_APP_MUX_MUXER_H
#define FRAMESIFT_APP_MUX_MUXER_H

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Io/OutputSink.h"
#include "Mux/IvsDescription.h"
#include "Mux/MuxOptions.h"
#include "Mux/RecordingWriter.h"

namespace Marvane::FrameSift {

// The frames stand in the order of their time; at the same time video comes first, then audio. Each track
// counts its own frames from 1 on, since a reader looks for gaps in the numbers of the video frames. What a frame is, the
// writer of the family knows.
class CMuxer
{
public:
    // Opens the inputs and then creates the output: nothing is overwritten if an input is missing.
    explicit CMuxer(const MUX_OPTIONS& options);

    // Throws CAppError; the text says how much of the output there is.
    void Run();

    const CTrack* Video() const { return m_video ? &*m_video : nullptr; }
    const CTrack* Audio() const { return m_audio ? &*m_audio : nullptr; }
    const CIvsTrack* Ivs() const { return m_ivs ? &*m_ivs : nullptr; }
    const COutputSink& Output() const { return *m_output; }
    // What the user should know of the recording.
    std::vector<std::string> Notes() const { return m_writer->Notes(); }

private:
    void OpenTracks();
    void RefuseToOverwriteInputs() const;
    bool WriteNext(); // false: all tracks are at their end
    void WriteVideo(const MediaUnit& unit);
    void WriteAudio(const MediaUnit& unit);
    void WriteIvs(const IVS_UNIT& unit);

    const MUX_OPTIONS& m_options;
    std::unique_ptr<CRecordingWriter> m_writer;
    std::optional<CUnitSource> m_videoSource;
    std::optional<CUnitSource> m_audioSource;
    std::optional<CVideoTrack> m_video;
    std::optional<CAudioTrack> m_audio;
    std::optional<CIvsTrack> m_ivs;
    std::optional<COutputSink> m_output;
};

} // namespace Marvane::FrameSift

#endif
