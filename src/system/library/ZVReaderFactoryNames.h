#pragma once

#include <cstdint>

// The functions of the reader library that make a reader. Each returns an interface or null. The names stand in the table itself,
// so that it costs no start a relocation.
inline constexpr char ZVReaderFactoryNames[][26] = {
    "CreateLocalReaderDLL",
    "CreateInternetReaderDLL",
    "CreateGenericReaderDLL",
    "CreateFromMemoryReaderDLL",
};

inline constexpr int32_t ZVReaderFactoryCount = static_cast<int32_t>(sizeof ZVReaderFactoryNames / sizeof *ZVReaderFactoryNames);
