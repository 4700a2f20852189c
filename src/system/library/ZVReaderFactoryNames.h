#pragma once

#include <cstdint>

// The functions of the reader library that make a reader or a service. Each gives an interface or null. The names
// stand in the table itself, so that it costs no start a relocation.
inline constexpr char ZVReaderFactoryNames[][43] = {
    "CreateLocalReaderDLL",
    "CreateInternetReaderDLL",
    "CreateGenericReaderDLL",
    "CreateFromMemoryReaderDLL",
    "CreateMemoryReaderDLL",
    "CreateStringReaderDLL",
    "CreateMergingReaderDLL",
    "CreateTruncatingReaderDLL",
    "CreateBufferedReaderDLL",
    "CreateSharedBufferingReaderDLL",
    "CreateCirclingReaderDLL",
    "CreateSocketReaderDLL",
    "CreateTLSSocketReaderDLL",
    "CreateSplitterReaderDLL",
    "CreateSplitterLocalBufferReaderDLL",
    "CreateDVDReaderDLL",
    "CreateBufferedInternetReaderDLL",
    "CreateBufferedInternetReaderWithCachingDLL",
    "CreateRTMPReaderDLL",
    "CreateBufferedHLSReaderDLL",
    "CreateLocalIndexedHLSReaderDLL",
    "CreateLibServerIndexedHLSReaderDLL",
    "CreateBufferedRTSPReaderDLL",
    "CreateTranscodingReaderDLL",
    "CreateWakeOnLanDLL",
    "CreateFTPTransferDLL",
    "CreateZTVDataFileReaderDLL",
    "CreateTVFormatFileReaderDLL",
    "CreateZVTransportStreamZTVReaderDLL",
    "CreateNetworkStreamingReaderDLL",
    "CreateSSLCertificateManagerDLL",
};

inline constexpr int32_t ZVReaderFactoryCount = static_cast<int32_t>(sizeof ZVReaderFactoryNames / sizeof *ZVReaderFactoryNames);
