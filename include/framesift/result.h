/**
 * @file
 * Result codes of the calls.
 */
#ifndef FRAMESIFT_RESULT_H
#define FRAMESIFT_RESULT_H

/**
 * What a call answers. Which codes a call can answer stands at the call; no other comes from it.
 *
 * KX_ERROR_LIST_EMPTY and KX_ERROR_UNGET_STREAM_TYPE are no failures: they mean "not now, feed more".
 */
typedef enum KX_RESULT
{
    /** Done. */
    KX_SUCCESS = 0,
    /** Not a live handle of this kind: never created, already destroyed, or null. Create one; do not use this again. */
    KX_ERROR_INVALID_HANDLE = 1,
    /** A recording of a type that no parser here reads, or of none that shows. Give it to another reader. */
    KX_ERROR_FILE_TYPE_NOSUPPORT = 2,
    /** The stream's type is known, but no parser here reads it. Destroy the handle and give the stream to another. */
    KX_ERROR_STREAM_NOSUPPORT = 3,
    /** The thread of a recording did not start. Destroy the handle; try again when the process has fewer threads. From
       inside a callback of the same recording none can be started. */
    KX_ERROR_THREAD_CREATE_FAILED = 4,
    /** The thread of a recording did not end. No call answers this: KX_Destroy waits for it. */
    KX_ERROR_THREAD_CLOSE_FAILED = 5,
    /** A fault of the caller: a null pointer, a length below 1, a kind of key not accepted, or a read of a recording
       that KX_FileParser has not begun. Correct the call. */
    KX_ERROR_PARAMETER = 6,
    /** The index of the recording has no such entry. No call answers this at present. */
    KX_ERROR_INDEX_OUTOFRANGE = 7,
    /** The recording is empty. There is nothing to read. No call answers this: an empty recording ends at once. */
    KX_ERROR_FILE_SIZE_ZERO = 8,
    /** The bytes do not follow the format that they claim. Drop them; later bytes may be sound. Metadata only. */
    KX_ERROR_BAD_FORMATTED = 9,
    /** The recording could not be read. No call answers this: what cannot be read counts as the end. */
    KX_ERROR_FILE_READ = 10,
    /** The recording could not be opened, or is no file that can be. Look at the path, what it names, and its rights.
       */
    KX_ERROR_FILE_OPEN = 11,
    /** The bytes do not fit into the room given. Give more room. No call answers this at present. */
    KX_ERROR_BUFFER_OVERFLOW = 12,
    /** Out of memory. The handle stays valid, the bytes of this call may be lost. Free memory and go on, or destroy. */
    KX_ERROR_SYSTEM_OUT_OF_MEMORY = 13,
    /** No frame is waiting. Feed the next chunk with KX_ParseData. */
    KX_ERROR_LIST_EMPTY = 14,
    /** The stream's type is not known yet; the bytes are kept, up to 4 MiB. Feed the next chunk. As the last error of a
       recording: its bytes show no type. */
    KX_ERROR_UNGET_STREAM_TYPE = 15,
    /** A pointer inside a record is null. Fill it and call again. No call answers this. */
    KX_ERROR_EMPTY_PTR = 16,
    /** A number in a record names nothing that exists. Correct the record. No call answers this. */
    KX_ERROR_INVALID_INDEX = 17,
    /** A line of the log was too long. No call answers this: such a line is left out. */
    KX_ERROR_LOG_CUT = 18,
    /** The recording has been read to its end. Stop, or seek. */
    KX_ERROR_READ_FILE_END = 19
} KX_RESULT;

/**
 * Codes of the calls for intelligent video metadata, KX_ParseIVS and KX_ParseIVSEx. They reuse the numbers from 15 on, so
 * that a code says something only together with the call that answered it.
 */
typedef enum KX_RESULT_EX
{
    /** The metadata has a version that is not known. Skip this payload; others may be readable. */
    KX_ERROR_WRONG_VERSION = 15,
    /** The metadata announces more objects than there can be. Skip this payload. */
    KX_ERROR_BAD_OBJ_COUNT = 16,
    /** The format asked for is none that is parsed. Correct the call. */
    KX_ERROR_PARSE_TYPE_NO_SUPPORT = 17,
    /** The metadata is damaged. Skip this payload. */
    KX_ERROR_IVS_DATA_WRONG = 18
} KX_RESULT_EX;

#endif
