#pragma once

#include <zlib.h>

// The functions of zlib that a decoder needs, bound when the first one is made: most processes inflate nothing and should not pay
// for the library.
struct CZLibrary
{
    // The bound library; null when it is not there or lacks a function. It is never closed.
    static const CZLibrary* Get();

    decltype(&inflateInit2_) InflateInit = nullptr;
    decltype(&inflate) Inflate = nullptr;
    decltype(&inflateReset) InflateReset = nullptr;
    decltype(&inflateEnd) InflateEnd = nullptr;

private:
    bool Load(const char* fileName);
};
