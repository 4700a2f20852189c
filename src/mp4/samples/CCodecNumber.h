#pragma once

#include <cstdint>

// What identifies a codec: the object type indications of MPEG-4 (ISO/IEC 14496-1, 7.2.6.6) as they stand in a file, which may be
// any byte, and numbers of our own from 0xff00 on for codecs that have none. 0 is a codec that is not known.
struct CCodecNumber
{
    static constexpr int32_t Unknown = 0;
    static constexpr int32_t MPEG4Visual = 32;
    static constexpr int32_t MPEG4Audio = 64;
    static constexpr int32_t JPEG = 108;
    static constexpr int32_t ALAC = 254;
    static constexpr int32_t AVC1 = 0xff00;
    static constexpr int32_t Animation = 0xff01;
    static constexpr int32_t SVQ3 = 0xff02;
    static constexpr int32_t Twos = 0xff03;
    static constexpr int32_t Sowt = 0xff04;
    static constexpr int32_t SVQ1 = 0xff05;
    static constexpr int32_t Raw = 0xff06;
    static constexpr int32_t Ulaw = 0xff07;
    static constexpr int32_t AC3 = 0xff08;
    static constexpr int32_t EAC3 = 0xff09;

    // The codec that the type of a sample entry stands for when nothing else describes it.
    static int32_t FromEntryType(uint32_t type);
};
