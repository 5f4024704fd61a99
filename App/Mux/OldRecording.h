// Recordings of the older formats.
#ifndef FRAMESIFT_APP_MUX_OLDRECORDING_H
#define FRAMESIFT_APP_MUX_OLDRECORDING_H

#include <deque>

#include "FrameWriter/LegacyFrameWriter.h"
#include "Mux/MuxOptions.h"
#include "Mux/RecordingWriter.h"

namespace Marvane::FrameSift {

enum class OLD_AUDIO_HEAD : uint8_t
{
    Short, // 8 bytes
    Long   // 16 bytes
};

// Audio frames, which all of the older formats share; and what none of them has. By itself, audio alone.
class COldRecording : public CRecordingWriter
{
public:
    COldRecording(const MUX_OPTIONS& options, OLD_AUDIO_HEAD eHead) : m_options(options), m_eHead(eHead) {}

    void RequireAudio(const MediaUnit& unit) const override;
    Bytes Video(const MediaUnit&, const UNIT_PLACE&) override { return {}; }
    Bytes Audio(const MediaUnit& unit, const UNIT_PLACE& place) override;
    Bytes Ivs(const IVS_UNIT&, const UNIT_PLACE&) override { return {}; }
    Bytes End() override { return LegacyEndMark(); }
    std::vector<std::string> Notes() const override;

protected:
    const MUX_OPTIONS& Options() const { return m_options; }
    std::string_view Family() const { return m_options.pFamily->name; }

private:
    const MUX_OPTIONS& m_options;
    OLD_AUDIO_HEAD m_eHead;
    uint32_t m_nChannels = 0; // most of one frame
    uint64_t m_nFrames = 0;
};

class CNewRecording : public COldRecording
{
public:
    // Throws CAppError for a rate that the format cannot tell.
    CNewRecording(const MUX_OPTIONS& options, NEW_HEADS eHeads);

    void RequireVideo(const MediaUnit& unit) const override;
    Bytes Video(const MediaUnit& unit, const UNIT_PLACE& place) override;
    std::vector<std::string> Notes() const override;

private:
    NEW_HEADS m_eHeads;
    int32_t m_nMisreadYear = 0; // the first one that readers take for another; 0: none
};

// Blocks of a fixed size, cut with no regard to where a picture ends.
class CHbRecording : public COldRecording
{
public:
    // Throws CAppError for a rate that the format cannot tell.
    explicit CHbRecording(const MUX_OPTIONS& options);

    void RequireVideo(const MediaUnit& unit) const override;
    Bytes Video(const MediaUnit& unit, const UNIT_PLACE& place) override;
    Bytes End() override;

private:
    Bytes TakeBlocks();

    LEGACY_PICTURE m_picture; // of the last unit
    Bytes m_pending;          // less than a block, once the blocks are taken
    uint32_t m_nBlocks = 0;
};

class CZoptRecording : public COldRecording
{
public:
    explicit CZoptRecording(const MUX_OPTIONS& options) : COldRecording(options, OLD_AUDIO_HEAD::Short) {}

    Bytes Video(const MediaUnit& unit, const UNIT_PLACE& place) override;
    // Only a picture right behind another one shows what the stream is.
    uint32_t LeadingPictures() const override { return 2; }
    std::vector<std::string> Notes() const override;

private:
    uint32_t m_nPictures = 0;
};

// The elementary stream, with audio frames between its pictures.
class CMpeg4Recording : public COldRecording
{
public:
    explicit CMpeg4Recording(const MUX_OPTIONS& options) : COldRecording(options, OLD_AUDIO_HEAD::Short) {}

    Bytes Video(const MediaUnit& unit, const UNIT_PLACE& place) override;
    Bytes Audio(const MediaUnit& unit, const UNIT_PLACE& place) override;
    Bytes End() override { return {}; } // its readers close the last picture themselves
    std::vector<std::string> Notes() const override;

private:
    void Grow(size_t nBytes);

    size_t m_nSize = 0;
    std::deque<size_t> m_lastPictures; // the offsets of those that have too few bytes from there to the end
};

} // namespace Marvane::FrameSift

#endif
