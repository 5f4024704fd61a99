// A recording on disk: one pass that indexes it, then reads and seeks.
#ifndef FRAMESIFT_APP_RECORDINGS_RECORDING_H
#define FRAMESIFT_APP_RECORDINGS_RECORDING_H

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>

#include "Frames/FrameSource.h"
#include "Io/AppError.h"

namespace Marvane::FrameSift {

class CProgressBar;

// The library abandons the recording at its first frame: pictures of hb are put together from blocks, and stand nowhere. It
// can be read as a stream. The text says what to do instead.
class CNoIndex : public CAppError
{
public:
    explicit CNoIndex(const std::string& name);
};

// The analyzer behind a file handle, driven as a caller of the library drives it.
class CRecording
{
public:
    // Called on the thread of the pass, one frame at a time, while Index waits; what it throws ends the pass and comes
    // out of Index. The record's pointers end with the call. nIndex: the frame's number in the index.
    using TakeFrame = std::function<void(const LISTED_FRAME& listed, int64_t nIndex)>;

    // key: AES, 16, 24 or 32 bytes; empty: enciphered frames stay so. nType: a KX_STREAM_TYPE; 0: to be found out. Throws
    // CAppError for what cannot be opened or is no regular file, and for a format that is not known or not supported;
    // CNoIndex.
    CRecording(const std::string& path, std::span<const uint8_t> key, int32_t nType = KX_STREAM_TYPE_UNKNOWN);
    ~CRecording(); // stops the pass and waits for its thread
    CRecording(const CRecording&) = delete;
    CRecording& operator=(const CRecording&) = delete;

    // The pass, once, to the end. Throws CAppError: EXIT_CODE::Interrupted at Ctrl-C, EXIT_CODE::Io if it fails,
    // EXIT_CODE::Format if no frame is of the type that was fixed; CNoIndex.
    KX_FILE_INFO Index(const TakeFrame& take, CProgressBar& progress);

    // These stand behind Index. Precise: the next read starts at this very offset; else at the last key frame that the
    // library finds in front of it. Throws CAppError if there is nothing to be found.
    void Seek(int64_t nOffset, bool bPrecise);
    // The next frame, damaged ones too; its pointers end at the next Read or Seek. False at the end.
    bool Read(LISTED_FRAME& listed);

    // What stands in the file, whatever it is; less than the buffer takes only at the end of the file.
    size_t ReadBytes(uint64_t nOffset, std::span<uint8_t> buffer) const;

    const std::string& Name() const; // escaped, for messages
    uint64_t Size() const;           // what Index has covered; in front of it, of the file
    int32_t StreamType() const;
    int32_t InnerType() const; // which of the older formats it is; behind Index

private:
    class CPass;
    std::unique_ptr<CPass> m_pPass;
};

} // namespace Marvane::FrameSift

#endif
