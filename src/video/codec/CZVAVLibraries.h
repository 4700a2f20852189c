#pragma once

#include "system/library/ZVLoadLibrary.h"
#include "video/codec/ZVCodecFunctions.h"
#include "video/codec/ZVCodecHeaders.h"

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

// The functions of the codec libraries, each under its own name and with its own signature.
struct ZVCodecFunctionTable
{
#define ZV_DECLARE(family, name) decltype(&::name) name = nullptr;
    ZV_CODEC_FUNCTIONS(ZV_DECLARE)
#undef ZV_DECLARE
};

#pragma GCC diagnostic pop

// The codec libraries, opened at run time from the folder of the optional component, so that the worker starts without them.
// Where the component's folder is not there and the system has libraries of the same versions, those are opened in its place.
//
// Whoever uses the functions tests Loaded first: it is true only when all libraries and all functions were found. Why not is in
// the log. The libraries stay in the process when the object goes.
class CZVAVLibraries : public ZVCodecFunctionTable
{
public:
    CZVAVLibraries();
    CZVAVLibraries(const CZVAVLibraries&) = delete;
    CZVAVLibraries& operator=(const CZVAVLibraries&) = delete;

    bool Loaded = false;

private:
    void LoadAll(const ZVString& folder, bool hasSuffix);
    bool Bind();

    ZVLoadLibrary m_avcodec;
    ZVLoadLibrary m_avformat;
    ZVLoadLibrary m_avutil;
    ZVLoadLibrary m_swscale;
    ZVLoadLibrary m_swresample;
    ZVLoadLibrary m_avfilter;
};
