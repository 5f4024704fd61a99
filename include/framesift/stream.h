/**
 * @file
 * The calls for a live stream.
 *
 * A handle is a number from 1 to 4095 in the form of a pointer; null is never a handle. After KX_Destroy its number is
 * given to the next handle made, so that a stale copy may reach a stranger's stream.
 *
 * Any thread may make any call. Calls on different handles share nothing but the log. On one handle, two KX_ParseData
 * must not overlap, nor a KX_GetOneFrame with a KX_ParseData; KX_StreamEncryptKey, KX_GetStreamType, KX_GetLastError
 * and KX_Destroy may run beside anything.
 */
#ifndef FRAMESIFT_STREAM_H
#define FRAMESIFT_STREAM_H

#include <stdint.h>

#include "framesift/export.h"
#include "framesift/frame_info.h"
#include "framesift/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Stored by KX_SetInfoProcCallback. No parser calls it at present; the meaning of its arguments is open.
 * @param type      kind of the information.
 * @param info      the information; borrowed for the length of the call.
 * @param length    bytes at info.
 * @param userData  as given to KX_SetInfoProcCallback.
 */
typedef void (*fKXInfoCallback)(int32_t type, char* info, int32_t length, void* userData);

/**
 * The version of the library.
 * @return "1.3.44.55751": zero-terminated, constant, owned by the library, valid as long as the library is loaded.
 */
FRAMESIFT_API const char* KX_GetVersion(void);

/**
 * Takes settings of the library. Need not be called: nothing waits for it.
 * @param initInfo  borrowed for the length of the call; null is fine and sets nothing.
 * @retval KX_SUCCESS  always.
 */
FRAMESIFT_API int KX_LoadLibrary(KX_INIT_INFO* initInfo);

/**
 * Does nothing and need not be called: handles that are open stay open. Destroy each with KX_Destroy.
 * @retval KX_SUCCESS  always.
 */
FRAMESIFT_API int KX_ReleaseLibrary(void);

/**
 * Makes a handle for one stream. The caller owns it and ends it with one KX_Destroy.
 * @param nBufferSize  has no effect, whatever the value: the handle's memory grows as the stream needs it.
 * @return the handle, or null with 4095 handles open.
 * @note Where memory runs out, the answer is a number that no handle stands behind: every call refuses it with
 *       KX_ERROR_INVALID_HANDLE, until the next handle made gets it.
 */
FRAMESIFT_API void* KX_CreateFrameSift(int32_t nBufferSize);

/**
 * The stream's type as far as it is known.
 * @param handle           from KX_CreateFrameSift.
 * @param[out] streamType  KX_STREAM_TYPE_*; 0: not known yet. Once it is not 0 it never changes on this handle.
 * @retval KX_SUCCESS               *streamType is set.
 * @retval KX_ERROR_INVALID_HANDLE  not a live stream handle; *streamType is set to 0.
 * @retval KX_ERROR_PARAMETER       streamType is null.
 */
FRAMESIFT_API int KX_GetStreamType(void* handle, int32_t* streamType);

/**
 * How streams of a type can be parsed, by a fixed table. Needs no handle.
 *
 * The table speaks of the formats, not of this build: KX_ParseData still answers KX_ERROR_STREAM_NOSUPPORT for a type
 * that has no parser here.
 * @param streamType      KX_STREAM_TYPE_*, or any other number.
 * @param[out] parseType  KX_PARSE_TYPE_*; 0 for a number that the table does not hold.
 * @retval KX_SUCCESS          *parseType is set.
 * @retval KX_ERROR_PARAMETER  parseType is null.
 */
FRAMESIFT_API int KX_GetParseType(int32_t streamType, int32_t* parseType);

/**
 * Takes the next bytes of the stream and finds the frames in them; fetch those with KX_GetOneFrame.
 *
 * Frames of the call before that were not fetched are dropped, whatever this call answers. A frame that is not complete
 * yet waits for the next calls, however many; meanwhile the handle keeps its bytes, below 20 MiB for one ZOAV frame.
 * Rubbish between frames is stepped over. In the older formats (KX_STREAM_TYPE_OLD) and in raw MPEG-4 only the start of
 * the next frame ends a frame: the last one of a stream waits for ever.
 * @param handle  from KX_CreateFrameSift.
 * @param stream  first byte; borrowed, not copied. Leave the bytes in place and unchanged until you are done with the
 *                frames of this call, at most until the next KX_ParseData or KX_Destroy on this handle. Not const:
 *                this call writes into them. A ZOAV frame that is deciphered is rewritten in place, with a mark in its
 *                head. In the older formats (KX_STREAM_TYPE_OLD) a length of a New frame that uses more than its 24 bits
 *                loses the top byte, and a sample rate code of audio that stands for no rate becomes 0.
 * @param length  in bytes, 1 to INT32_MAX; frames may start and end anywhere in them.
 * @retval KX_SUCCESS                     parsed; there may be no frame yet.
 * @retval KX_ERROR_INVALID_HANDLE        not a live stream handle.
 * @retval KX_ERROR_STREAM_NOSUPPORT      the type is known, but not one that this library parses.
 * @retval KX_ERROR_PARAMETER             stream is null or length is below 1; the handle goes on as before.
 * @retval KX_ERROR_SYSTEM_OUT_OF_MEMORY  out of memory: bytes are lost, the frames queued so far can be fetched,
 *                                        and the handle stays valid.
 * @retval KX_ERROR_UNGET_STREAM_TYPE     type not known yet: the bytes are kept, up to 4 MiB, beyond which all but the
 *                                        last 4 bytes are dropped. Feed more.
 * @retval -1                             out of memory at the first call on the handle; as
 *                                        KX_ERROR_SYSTEM_OUT_OF_MEMORY.
 */
FRAMESIFT_API int KX_ParseData(void* handle, uint8_t* stream, int32_t length);

/**
 * Takes the next frame that the last KX_ParseData found, in stream order.
 *
 * Call it until it answers KX_ERROR_LIST_EMPTY. Damaged frames come too: see KX_FRAME_INFO::errorFlags.
 * @param handle          from KX_CreateFrameSift.
 * @param[out] frameInfo  must not be null. 18 of its fields are written, and always all of them: with zeros if there is
 *                        no frame. The others keep what they held; which is which stands at KX_FRAME_INFO. Its pointers
 *                        end at the next KX_ParseData or KX_Destroy on this handle.
 * @retval KX_SUCCESS               a frame; it is no longer in the queue.
 * @retval KX_ERROR_INVALID_HANDLE  not a live stream handle; *frameInfo is not touched.
 * @retval KX_ERROR_LIST_EMPTY      no frame is waiting. Feed the next chunk. KX_GetLastError does not report this.
 */
FRAMESIFT_API int KX_GetOneFrame(void* handle, KX_FRAME_INFO* frameInfo);

/**
 * Gives the handle a key for enciphered frames. It counts from the start of the next KX_ParseData on, and may be given
 * before the stream's type is known. Only the kind given last is handed to the parser.
 * @param handle  from KX_CreateFrameSift.
 * @param type    KX_ENCRYPT_AES: key is the bare key of 16, 24 or 32 bytes, which replaces the one before. One of
 *                another length answers KX_SUCCESS too, and is of no use: after an odd length above 1, or one above 63,
 *                the key before stays in force; after any other, none is. KX_ENCRYPT_AES256: key is any
 *                number of records of 49 bytes: the byte 1, the key's identifier in 16 bytes, the key in 32 bytes; they
 *                are added to those that wait.
 * @param key     first byte; copied.
 * @param keylen  in bytes, at least 1.
 * @retval KX_SUCCESS               the key waits for the next KX_ParseData.
 * @retval KX_ERROR_INVALID_HANDLE  not a live stream handle.
 * @retval KX_ERROR_PARAMETER       key is null, keylen is below 1, or type is none of the two. A wrong type also takes
 *                                  away a key that waits.
 * @retval KX_ERROR_SYSTEM_OUT_OF_MEMORY  out of memory; a key that waited is gone as well.
 * @note Frames of kind KX_ENCRYPT_AES are deciphered in place, in the bytes that KX_ParseData was given. Those of any
 *       other kind come out as they stand in the stream, and so does all without a key. The record does not tell which
 *       of these happened, and a wrong key gives noise without an error. A deciphered frame is for use, not for
 *       storing: its cipher head is marked as done, and a payload sum in it still belongs to the enciphered bytes. A
 *       key is never logged.
 */
FRAMESIFT_API int KX_StreamEncryptKey(void* handle, uint32_t type, const uint8_t* key, int32_t keylen);

/**
 * Ends a handle, of a stream or of a file, and frees all that belongs to it; the pointers of its frames end too.
 *
 * May run while another thread is inside a call on the handle: the memory is then freed when that call returns. Call it
 * once for each handle; a second one may end the handle of someone else, or pull the memory from under a running call.
 *
 * A file handle may be ended at any moment of its pass. The pass then stops at its next block, and KX_Destroy returns
 * when its thread has ended: up to then a callback may still be running, and the summary and the end mark may come;
 * behind it nothing comes. While it waits every other call refuses the handle, also from inside the callback. Two cases
 * differ: from inside a callback of the handle see file.h; and if another thread is inside a call on the handle,
 * KX_Destroy does not wait, and the pass ends with that call.
 * @param handle  from KX_CreateFrameSift or KX_CreateFileHandle. One that KX_CreatePrintLog was given, or that
 *                KX_FileReadOneFrame was called on with a null pointer, stays in memory to the end of the process.
 * @retval KX_SUCCESS               ended.
 * @retval KX_ERROR_INVALID_HANDLE  out of range, or no handle has this number.
 */
FRAMESIFT_API int KX_Destroy(void* handle);

/**
 * The last code that the handle has kept.
 *
 * Of a stream handle: the last code other than KX_SUCCESS that a KX_ParseData answered. A later success does not clear
 * it.
 *
 * Of a file handle: what the pass has come to, KX_SUCCESS as well, as soon as it is over; that is a moment behind the
 * end mark, in which it cannot be seen yet. In front of that, what KX_FileParser answered, unless that was KX_SUCCESS;
 * or that KX_GetFileStreamType found no type. Reads and seeks leave nothing here.
 * @param handle  from KX_CreateFrameSift or KX_CreateFileHandle.
 * @retval KX_SUCCESS                     nothing has failed so far.
 * @retval KX_ERROR_INVALID_HANDLE        not a live handle.
 * @retval KX_ERROR_FILE_TYPE_NOSUPPORT   as at KX_FileParser.
 * @retval KX_ERROR_STREAM_NOSUPPORT      as at KX_ParseData.
 * @retval KX_ERROR_THREAD_CREATE_FAILED  as at KX_FileParser.
 * @retval KX_ERROR_PARAMETER             as at KX_ParseData; but a null stream or a length of 0 is
 *                                        refused before the handle is looked at, and not kept.
 * @retval KX_ERROR_FILE_OPEN             as at KX_FileParser.
 * @retval KX_ERROR_SYSTEM_OUT_OF_MEMORY  as at KX_ParseData; the pass has lost frames for want of memory.
 * @retval KX_ERROR_UNGET_STREAM_TYPE     as at KX_ParseData: it stays here after the type has been found. Of a file:
 *                                        its bytes show no type.
 * @retval -1                             as at KX_ParseData.
 */
FRAMESIFT_API int KX_GetLastError(void* handle);

/**
 * Stores a callback for the parser of the stream. No parser calls it at present.
 *
 * Takes no lock: call it before the first KX_ParseData.
 * @param handle         from KX_CreateFrameSift.
 * @param pInfoCallback  null is fine and means none.
 * @param userData       handed to the callback as it stands; not owned.
 * @retval KX_SUCCESS               stored.
 * @retval KX_ERROR_INVALID_HANDLE  not a live stream handle.
 */
FRAMESIFT_API int KX_SetInfoProcCallback(void* handle, fKXInfoCallback pInfoCallback, void* userData);

/**
 * Switches on the log of the whole process, and, if asked, the capture of one stream.
 *
 * A line begins with local date and time; its month reads one too high, 02 for January to 13 for December, as readers
 * of these logs expect.
 *
 * The first call that opens a file decides where the log goes; later calls only set the level. Standard output, once
 * chosen, stays chosen. A file that cannot be opened leaves the log silent, and the answer is KX_SUCCESS all the same.
 * @param pLogPath        directory of the log, zero-terminated, borrowed: the file is "SiftKit.log" in it, and lines
 *                        are added at its end. Empty: the log goes to standard output.
 * @param nLogPathLength  not read.
 * @param hModule         not null: the log goes to the directory of the library itself, and pLogPath is not read.
 * @param logLevel        KX_LOG_LEVEL: lines up to this level are written.
 * @param pWriteFileInfo  null: no capture. Otherwise borrowed for the length of the call; see KX_WRITE_FILE_INFO. A
 *                        handle in it that is not a live stream handle is passed over.
 * @retval KX_SUCCESS               the level is set, unless the file could not be opened.
 * @retval KX_ERROR_INVALID_HANDLE  pLogPath is null. The capture is on nevertheless.
 * @note The handle in pWriteFileInfo gets one reference that is never given back: KX_Destroy on it still answers
 *       KX_SUCCESS, but its memory and its number stay taken to the end of the process.
 */
FRAMESIFT_API int KX_CreatePrintLog(const char* pLogPath, int32_t nLogPathLength, void* hModule, int32_t logLevel,
                                    const KX_WRITE_FILE_INFO* pWriteFileInfo);

#ifdef __cplusplus
}
#endif

#endif
