#pragma once

#include "system/library/ZVFunctionTable.h"
#include "system/library/ZVLoadLibrary.h"
#include "video/codec/ZVCodecFunctions.h"
#include "video/codec/ZVCodecHeaders.h"

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

ZV_DEFINE_FUNCTION_TABLE(ZVAVUtilFunctions, ZV_AVUTIL_FUNCTIONS);
ZV_DEFINE_FUNCTION_TABLE(ZVSWResampleFunctions, ZV_SWRESAMPLE_FUNCTIONS);
ZV_DEFINE_FUNCTION_TABLE(ZVAVCodecFunctions, ZV_AVCODEC_FUNCTIONS);
ZV_DEFINE_FUNCTION_TABLE(ZVAVFormatFunctions, ZV_AVFORMAT_FUNCTIONS);
ZV_DEFINE_FUNCTION_TABLE(ZVSWScaleFunctions, ZV_SWSCALE_FUNCTIONS);
ZV_DEFINE_FUNCTION_TABLE(ZVAVFilterFunctions, ZV_AVFILTER_FUNCTIONS);

#pragma GCC diagnostic pop

// The codec libraries, opened at run time from the folder of the optional component, so that the worker starts without them.
// Where the component's folder is not there and the system has libraries of the same versions, those are opened in its place.
//
// Whoever uses the functions tests Loaded first: it is true only when all libraries and all functions were found. Otherwise the
// log says what is missing. The libraries stay in the process when the object goes.
class CZVAVLibraries : public ZVAVUtilFunctions,
                       public ZVSWResampleFunctions,
                       public ZVAVCodecFunctions,
                       public ZVAVFormatFunctions,
                       public ZVSWScaleFunctions,
                       public ZVAVFilterFunctions
{
public:
    CZVAVLibraries();
    CZVAVLibraries(const CZVAVLibraries&) = delete;
    CZVAVLibraries& operator=(const CZVAVLibraries&) = delete;

    bool Loaded = false;

private:
    void LoadAll(const ZVString& folder, bool hasSuffix);
    bool BindAll();

    ZVLoadLibrary m_avcodec;
    ZVLoadLibrary m_avformat;
    ZVLoadLibrary m_avutil;
    ZVLoadLibrary m_swscale;
    ZVLoadLibrary m_swresample;
    ZVLoadLibrary m_avfilter;
};
