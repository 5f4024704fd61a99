/**
 * @file
 * The calls for a recording: a file that holds a stream.
 *
 * The life of a file handle:
 *  1. KX_CreateFileHandle keeps path and type. No file is touched.
 *  2. KX_GetFileStreamType tells what the file holds. May be left out.
 *  3. KX_FileParser starts the pass: a thread of the library reads the file from its first byte to its last and calls
 *     back, first fFileIndex with each frame, then fFileInfo once with the summary, then fFileIndex once more with two
 *     null pointers. That is the end mark.
 *  4. Behind the end mark KX_FileSeekByOffset and KX_FileReadOneFrame read again, from any place, as often as you like.
 *  5. KX_Destroy ends the handle; at any moment.
 *
 * Threads. All callbacks of a handle come on its parse thread, one at a time, and that thread waits while you are in
 * one. The calls themselves belong to one thread of yours at a time: two of them on one handle must not overlap, but
 * for KX_Destroy and KX_GetLastError, which may run beside anything. Different handles share nothing but the log and a
 * lock that is held while a file is being closed.
 *
 * KX_Destroy stops the pass and returns when its thread has ended; fFileInfo and the end mark may still come while it
 * waits, and calls on the handle answer KX_ERROR_INVALID_HANDLE from then on. If another thread of yours is inside a
 * call on the handle, KX_Destroy returns at once instead, no new callback begins, and the thread ends when that call
 * returns; what that call hands out is then dead already. Where you do not know, keep the user data until both have
 * returned. Do not hold a lock around a call that one of your callbacks takes, and do not let two callbacks destroy
 * each other's handles: each would wait for the other for ever.
 *
 * Inside a callback. All calls may be made on any handle. On the handle of the callback itself: KX_FileReadOneFrame and
 * both seeks answer -1 while frames are reported, and work from fFileInfo on; KX_FileParser answers
 * KX_ERROR_THREAD_CREATE_FAILED; KX_Destroy makes this callback the last one and returns at once, and the parse thread
 * frees the handle's memory a moment after you have returned to it: do not unload the library meanwhile. What a callback answers changes nothing: the one
 * way to stop a pass is to destroy the handle. A callback must not throw.
 *
 * Keys. None of these calls takes a key: enciphered frames of a recording come out as they stand in the file.
 *
 * A file handle is a number from 1 to 4095 in the form of a pointer, from the same table as the handles of stream.h;
 * each kind is a bad handle for the calls of the other. KX_Destroy and KX_GetLastError take both.
 */
#ifndef FRAMESIFT_FILE_H
#define FRAMESIFT_FILE_H

#include <stdint.h>

#include "framesift/export.h"
#include "framesift/frame_info.h"
#include "framesift/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Where KX_FileSeekByOffset goes. */
typedef enum KX_SEEK_TYPE
{
    /**
     * To the last key frame whose head, of 24 bytes, lies in front of the offset. In the older formats and in raw MPEG-4
     * no key frame is searched for: to the offset itself.
     */
    KX_SEEK_I_FRAME = 0,
    /** To the offset itself, whatever stands there. */
    KX_SEEK_PRECISE_OFFSET = 1
} KX_SEEK_TYPE;

/**
 * Takes one frame of the pass, or the end mark. On the parse thread.
 * @param analyzer   a token that is the same in all callbacks of a handle. It is not the handle: no call takes it.
 * @param frameInfo  the frame; null: the end mark, behind which no callback of this pass comes. The record and all that
 *                   its pointers lead to end with this callback: copy what you need for longer. Unlike the record of
 *                   KX_GetOneFrame it is filled but for some fields: see KX_FRAME_INFO.
 * @param indexInfo  where the frame lies in the file; ends with this callback; null in the end mark.
 * @param process    how much of the file has been read, 0 to 100; 100 in the end mark.
 * @param userData   as given to KX_FileParser.
 * @return any number; it is not looked at.
 * @note Of the damaged frames only those come whose place is beyond doubt: KX_ERROR_FLAGS_DATA_VERIFY,
 *       KX_ERROR_FLAGS_WATERMARK and KX_ERROR_FLAGS_DECRYPTION_FAILURE. A frame that is cut off by the end of the file
 *       does not come.
 */
typedef int (*fFileIndex)(void* analyzer, KX_FRAME_INFO* frameInfo, KX_INDEX_INFO* indexInfo, int process,
                          void* userData);

/**
 * Takes the summary of the recording, behind its last frame and in front of the end mark. On the parse thread.
 * @param analyzer  as at fFileIndex.
 * @param fileInfo  the summary; ends with this callback.
 * @param userData  as given to KX_FileParser.
 * @return any number; it is not looked at.
 */
typedef int (*fFileInfo)(void* analyzer, KX_FILE_INFO* fileInfo, void* userData);

/**
 * Makes a handle for one file. No file is opened yet. The caller owns the handle and ends it with one KX_Destroy.
 * @param nType  KX_STREAM_TYPE_* of what the file holds; 0: to be found out from its bytes, when it is needed.
 * @param file   path, zero-terminated; copied. Bytes, handed to the system as they are.
 * @return the handle; null if file is null, with 4095 handles open, or without memory.
 */
FRAMESIFT_API void* KX_CreateFileHandle(int nType, const char* file);

/**
 * Starts the pass over the file. It returns as soon as the thread runs; the callbacks may begin before.
 *
 * What has to be found out about the type is found out in this call, which may read the whole file for it. The file is
 * read as it grows: the pass ends where there are no more bytes. What cannot be read counts as the end too.
 * @param handle     from KX_CreateFileHandle.
 * @param fileIndex  takes the frames and the end mark; null: none, and nothing tells when the pass is over.
 * @param fileInfo   takes the summary; null: none.
 * @param userData   handed to both as it stands; not owned. Keep it until the end mark has come, or until KX_Destroy and
 *                   every other call on the handle have returned.
 * @retval KX_SUCCESS                    the pass has begun.
 * @retval KX_ERROR_INVALID_HANDLE       not a live file handle.
 * @retval KX_ERROR_FILE_TYPE_NOSUPPORT  the type is not one of those that can be parsed (1, 8, 194 to 197), or the file
 *                                       does not show any: an empty file, or bytes of no known format; also without
 *                                       memory for the parser.
 * @retval KX_ERROR_THREAD_CREATE_FAILED the system gives no thread, or the caller is a callback of this handle.
 * @retval KX_ERROR_FILE_OPEN            the path cannot be opened, or is neither a regular file nor a block device: a
 *                                       directory, a FIFO, a socket, a character device; or without memory for it. Paths
 *                                       that begin with "tvf://" are never opened.
 * @retval KX_ERROR_SYSTEM_OUT_OF_MEMORY out of memory.
 * @note Meant to be called once for each handle. A second call stops a pass that still runs, waits for its thread (and
 *       so for its end mark), and starts anew. Whatever it answers, what it answered is also what KX_GetLastError
 *       tells, unless that is KX_SUCCESS or KX_ERROR_INVALID_HANDLE. Behind a second call that fails nothing can be
 *       read any more. Whether a file shows a type is looked at once: make a new handle for a file that has changed.
 */
FRAMESIFT_API int KX_FileParser(void* handle, fFileIndex fileIndex, fFileInfo fileInfo, void* userData);

/**
 * What the file holds. Finds it out if it is not known: that may read the whole file, in this call.
 * @param handle           from KX_CreateFileHandle.
 * @param[out] streamType  KX_STREAM_TYPE_*: what KX_CreateFileHandle was given, or what the bytes show; 0: the file
 *                         cannot be opened, its bytes show no type, or there is no memory to look at them. If they show
 *                         none, KX_GetLastError tells KX_ERROR_UNGET_STREAM_TYPE; else it stays as it was.
 * @retval KX_SUCCESS               *streamType is set; also to 0.
 * @retval KX_ERROR_INVALID_HANDLE  not a live file handle; *streamType is set to 0.
 * @retval KX_ERROR_PARAMETER       streamType is null.
 * @note The answer is also what KX_FileParser goes by, which does not look at the bytes a second time: ask when the
 *       file is written. A file that could not be opened is not tried again by this call.
 */
FRAMESIFT_API int KX_GetFileStreamType(void* handle, int* streamType);

/**
 * Reads the next frame from where the last seek or read has stopped. Damaged frames come too, all of them: see
 * KX_FRAME_INFO::errorFlags.
 *
 * Seek before the first read. Without a seek the first reads start from what the pass has kept of the file's end, go on
 * from the file's first byte, and state offsets that are too large.
 *
 * What a frame does not tell of itself (codec, picture size, rate) it inherits from the key frame in front of it: from
 * the last one that this handle has read. Behind a precise seek into the midst of pictures that may be one from elsewhere
 * in the file, until the next key frame comes.
 *
 * If a seek to a key frame has passed a smart P frame (KX_FRAME_SUB_TYPE_VIDEO_SMART_P_FRAME) on its way, the read
 * hands out the key frame and goes on at that smart P frame, which needs nothing in between.
 * @param handle             from KX_CreateFileHandle.
 * @param[out] pFrameOffset  byte offset of the frame in the file; set only with KX_SUCCESS.
 * @param[out] frameInfo     the 18 fields that KX_FRAME_INFO marks "Filled" are written, with zeros if there is no
 *                           frame; the others keep what they held. Its pointers lead into memory of the handle and end
 *                           at the next read, seek, KX_FileParser or KX_Destroy on it.
 * @retval KX_SUCCESS                     a frame.
 * @retval KX_ERROR_INVALID_HANDLE        not a live file handle; nothing is written.
 * @retval KX_ERROR_PARAMETER             KX_FileParser has not succeeded yet, or failed at a second call; or a pointer is
 *                                        null.
 * @retval KX_ERROR_SYSTEM_OUT_OF_MEMORY  out of memory; a frame is lost.
 * @retval KX_ERROR_READ_FILE_END         no frame behind this place. Stop, or seek.
 * @retval -1                             not now: the pass still runs, and the parser is its own until its end; or it
 *                                        has found no memory to begin with, or the file gone when it opened it again.
 * @note A call with a null pointer on a live handle, but for one inside a callback of that handle, leaves a reference
 *       behind that nobody gives back: a later KX_Destroy answers KX_SUCCESS, but ends only the callbacks. Memory, file
 *       and number of the handle stay taken.
 */
FRAMESIFT_API int KX_FileReadOneFrame(void* handle, KXint64* pFrameOffset, KX_FRAME_INFO* frameInfo);

/**
 * Seeks by time. Behind the pass that KX_FileParser runs only the time 0 can be found: that pass does not learn when
 * the recording begins and ends. Take KX_INDEX_INFO::frameOffset from the callbacks, and KX_FileSeekByOffset.
 * @param handle  from KX_CreateFileHandle.
 * @param time    in milliseconds from the start of the file. The time 0 is answered with KX_SUCCESS, but it does not
 *                move the file: the next read goes on behind the block of the file that was read last (64 KiB as a rule,
 *                most of whose frames it leaves out), at the first byte if nothing has been read, and the offsets that it states count from there, less 1. To read from the first frame on, seek
 *                precisely to the offset 0.
 * @retval KX_SUCCESS                     done; with this pass for the time 0 only.
 * @retval KX_ERROR_INVALID_HANDLE        not a live file handle.
 * @retval KX_ERROR_PARAMETER             KX_FileParser has not succeeded yet.
 * @retval KX_ERROR_SYSTEM_OUT_OF_MEMORY  out of memory.
 * @retval -1                             the pass still runs, or the time is not 0.
 */
FRAMESIFT_API int KX_FileSeekByTime(void* handle, unsigned int time);

/**
 * Seeks to a place in the file.
 * @param handle      from KX_CreateFileHandle.
 * @param fileOffset  in bytes, 0 to the size that the file had for the pass.
 * @param seekType    KX_SEEK_PRECISE_OFFSET: reading starts at the offset. Inside a frame, the first record may be what is
 *                    left of it, with an error; the next sound frame follows. Any other number is KX_SEEK_I_FRAME: the
 *                    last key frame in front of the offset is looked for, up to 200 MiB back. One that begins less than
 *                    24 bytes in front of it, or at it, is not found: give an offset further behind its start, or seek
 *                    precisely. If there is none, it is looked for forward from the offset; and if
 *                    there is none in the next 640 KiB either, the seek settles for the offset itself and answers
 *                    KX_SUCCESS. Look at what the next read brings.
 * @retval KX_SUCCESS                     the next read starts there.
 * @retval KX_ERROR_INVALID_HANDLE        not a live file handle.
 * @retval KX_ERROR_PARAMETER             KX_FileParser has not succeeded yet.
 * @retval KX_ERROR_SYSTEM_OUT_OF_MEMORY  out of memory.
 * @retval -1                             the pass still runs, the offset is not in the file, or there is nothing to be
 *                                        found behind it.
 */
FRAMESIFT_API int KX_FileSeekByOffset(void* handle, KXint64 fileOffset, int seekType);

#ifdef __cplusplus
}
#endif

#endif
