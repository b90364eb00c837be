// The payload's two numbers, in the one place where they stand: the packer refuses to make a cabinet that differs from
// them, and the installer divides its progress bar by them.
#pragma once

#include <cstdint>

constexpr std::uint32_t kPayloadFiles = 333;
constexpr std::uint64_t kPayloadBytes = 20089947; // of all files together, uncompressed
