/**
 * @file
 * Levels of the log.
 */
#ifndef FRAMESIFT_LOG_LEVEL_H
#define FRAMESIFT_LOG_LEVEL_H

/**
 * Levels of the log. A line is written if its level is at most the level that KX_CreatePrintLog was given; a level
 * above the highest one writes everything.
 */
typedef enum KX_LOG_LEVEL
{
    /** Nothing is written. */
    KX_LOG_LevelUnknown = 0,
    /** Word in the log: "fatal". The level before the first KX_CreatePrintLog, when there is nowhere to write yet. */
    KX_LOG_LevelFatal = 1,
    /** Word in the log: "error". */
    KX_LOG_LevelError = 2,
    /** Word in the log: "warn". Faults of the caller, and wire data that was refused. */
    KX_LOG_LevelWarn = 3,
    /** Word in the log: "info". */
    KX_LOG_LevelInfo = 4,
    /** Word in the log: "trace". The calls that open, set up and close; the stream's type when it is found. */
    KX_LOG_LevelTrace = 5,
    /** Word in the log: "debug". */
    KX_LOG_LevelDebug = 6,
    /** Word in the log: "hidden". A line for each chunk and each frame: it slows the library down. */
    KX_LOG_LevelHidden = 7
} KX_LOG_LEVEL;

#endif
