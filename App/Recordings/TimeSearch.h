// Where in a recording a time is, found while a pass goes over it.
#ifndef FRAMESIFT_APP_RECORDINGS_TIMESEARCH_H
#define FRAMESIFT_APP_RECORDINGS_TIMESEARCH_H

#include <array>
#include <optional>
#include <string>

#include "Check/SharedTime.h"
#include "Frames/FrameSource.h"
#include "Recordings/TimeLine.h"

namespace Marvane::FrameSift {

// The part of a recording between two times; a time that is not set stands for the recording's end on that side.
struct TIME_RANGE
{
    std::optional<WANTED_TIME> from;
    std::optional<WANTED_TIME> to;
    bool bMayReachOut = true; // a part that begins in front of the recording begins with it; else that is an error
};

struct CODEC_CHANGE
{
    int64_t nOffset = 0; // of the first frame of the other codec
    int32_t nBefore = 0;
    int32_t nAfter = 0;
};

// The codec of one kind of frames, from some place on.
struct CODEC_RUN
{
    std::optional<int32_t> nCodec;
    std::optional<CODEC_CHANGE> change; // the first one

    void Follow(int32_t nNext, int64_t nOffset);
};

// A place to start from.
struct START_PLACE
{
    int64_t nOffset = 0;
    CODEC_RUN video;
    CODEC_RUN audio;

    void Follow(const FrameInfo& frame, int64_t nFrameOffset);
};

// Offsets in the file.
struct FOUND_RANGE
{
    START_PLACE start;        // the key frame at or before the frame; the first frame if there is none
    int64_t nFrame = 0;       // the frame at the time itself
    int64_t nEnd = INT64_MAX; // of the first frame that is past the end
    std::string note;         // for the user, if a time reaches out of the recording
};

// One kind of frames. Several frames at the same moment count as one, with the first of them as the place.
class CLineSearch
{
public:
    explicit CLineSearch(const TIME_RANGE& range) : m_range(range) {}

    // A good frame of video or audio. bOfLine: of this line's kind; bEntry: and one to start from.
    void Take(const FrameInfo& frame, int64_t nOffset, bool bOfLine, bool bEntry);

    bool IsEmpty() const { return m_line.IsEmpty(); }
    // Once a frame with a time is taken. Throws CAppError for a time that is not there; name: of the recording.
    FOUND_RANGE Result(const std::string& name) const;

private:
    struct PLACE
    {
        START_PLACE start;
        int64_t nFrame = 0;
        MOMENT moment;
    };

    void TakeMoment(const MOMENT& now, int64_t nOffset);
    bool IsPassed(const WANTED_TIME& wanted, const MOMENT& now) const;
    const PLACE* FindStart() const;
    std::optional<int64_t> FindEnd(const PLACE& start) const;
    [[noreturn]] void ThrowOutside(const std::string& name) const;

    TIME_RANGE m_range;
    CTimeLine m_line;
    CSharedTime m_sharedTime;
    START_PLACE m_begin; // of the file
    std::optional<START_PLACE> m_entry;
    std::optional<PLACE> m_first;
    std::optional<PLACE> m_run;        // the first frame of the present moment
    std::optional<PLACE> m_from;       // where the clock has passed the range's begin
    std::optional<int64_t> m_firstEnd; // where it has first passed the range's end
    std::optional<int64_t> m_end;      // the same at or behind m_from
};

// Keeps two lines, as it turns out at the end only whether there is video, and each a handful of values: no record of
// any frame, whatever the recording's length.
class CTimeSearch
{
public:
    explicit CTimeSearch(const TIME_RANGE& range) : m_video(range), m_audio(range), m_bWanted(range.from || range.to) {}

    // Each frame of the index pass in turn.
    void Take(const LISTED_FRAME& listed);
    // Behind the pass. Throws CAppError with EXIT_CODE::Usage for a time outside the recording, with EXIT_CODE::Format if
    // no frame has a time.
    FOUND_RANGE Result(const std::string& name) const;

private:
    CLineSearch m_video;
    CLineSearch m_audio;
    START_PLACE m_begin;
    bool m_bWanted;
};

} // namespace Marvane::FrameSift

#endif
