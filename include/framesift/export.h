/**
 * @file
 * Marks the calls that the shared library exports.
 */
#ifndef FRAMESIFT_EXPORT_H
#define FRAMESIFT_EXPORT_H

/**
 * Visible outside the library; everything else in it is hidden.
 *
 * The list of exported symbols stands a second time in the linker's version script, which is what decides.
 */
#define FRAMESIFT_API __attribute__((visibility("default")))

#endif
