/**
 * @file
 * How declarations of the boundary are marked.
 */
#ifndef FRAMESIFT_EXPORT_H
#define FRAMESIFT_EXPORT_H

/**
 * Visible outside the library; everything else in it is hidden.
 *
 * The list of exported symbols stands a second time in the linker's version script, which is what decides.
 */
#define FRAMESIFT_API __attribute__((visibility("default")))

/**
 * Behind the name of an enumeration that a caller hands over: C++ then allows any int in it, as C does. A number that
 * has no name is refused by the call and is no undefined behaviour.
 */
#ifdef __cplusplus
#define FRAMESIFT_ENUM_BASE : int
#else
#define FRAMESIFT_ENUM_BASE
#endif

#endif
