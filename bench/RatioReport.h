#pragma once

#include <benchmark/benchmark.h>

// Registers our side and the peer's side of one comparison. What is quoted is the ratio of the two, measured in one run; a time alone says
// more about the machine than about the code.
//
//   limit   how many times the peer's time ours may take
#define ZV_COMPARE(name, limit, ours, peer, peerName)                                                                            \
    static const bool s_##name##Registered = ZVRegisterComparison(#name, limit, ours, peer, peerName, false)

// The same for a comparison in which a side starts a thread in the process of the benchmarks.
#define ZV_COMPARE_WITH_THREADS(name, limit, ours, peer, peerName)                                                               \
    static const bool s_##name##Registered = ZVRegisterComparison(#name, limit, ours, peer, peerName, true)

bool ZVRegisterComparison(const char* name, double limit, void (*ours)(benchmark::State&), void (*peer)(benchmark::State&),
                          const char* peerName, bool startsThreads);
