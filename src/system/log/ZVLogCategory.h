#pragma once

#include <cstdint>

// The categories of log lines, single bits of a mask.
namespace ZVLogCategory
{
inline constexpr uint32_t General = 1;        // file system, process start, library loading, monitors, atoms
inline constexpr uint32_t Devices = 32;       // device enumeration
inline constexpr uint32_t Network = 64;       // downloads, installing, network loaders
inline constexpr uint32_t Media = 256;        // media analysis and thumbnails
inline constexpr uint32_t Image = 512;        // the image side
inline constexpr uint32_t Television = 2048;  // television recording files
inline constexpr uint32_t Bluray = 4096;      // Blu-ray disc reading
}
