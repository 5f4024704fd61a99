// Random ZOAV streams from a seed.
#ifndef FRAMESIFT_TEST_SUPPORT_RANDOMSTREAM_H
#define FRAMESIFT_TEST_SUPPORT_RANDOMSTREAM_H

#include <cstdint>
#include <random>
#include <vector>

#include "FrameWriter/ZOAVFrameWriter.h"

namespace Marvane::FrameSift {

// Sound frames of all kinds and families with sequence numbers from 1, payloads up to nMaxPayload bytes, and heads that
// a camera would send. All kinds share one count, so records of lost frames come out between them.
// alter: what is to be done to each payload first.
using AlterPayload = void (*)(Bytes& payload, std::mt19937& random);
std::vector<Bytes> RandomFrames(uint32_t nSeed, size_t nCount, size_t nMaxPayload, AlterPayload alter = nullptr);

// A payload may hold what looks like the end of its own frame or the start of another: neither is looked at.
void HideMagics(Bytes& payload, std::mt19937& random);

Bytes RandomBytes(std::mt19937& random, size_t nSize);

Bytes Joined(const std::vector<Bytes>& parts);

} // namespace Marvane::FrameSift

#endif
