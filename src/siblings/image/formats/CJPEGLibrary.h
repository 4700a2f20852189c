#pragma once

#include "siblings/image/formats/CErrorJump.h"
#include "siblings/image/formats/OpenOnce.h"

// In this order: the header of the library needs the types of stdio.
#include <cstdio>

#include <jpeglib.h>

#include <jerror.h>

// clang-format off
#define ZV_JPEG_FUNCTIONS(function)       \
    function(jpeg_std_error)              \
    function(jpeg_CreateDecompress)       \
    function(jpeg_destroy_decompress)     \
    function(jpeg_mem_src)                \
    function(jpeg_read_header)            \
    function(jpeg_calc_output_dimensions) \
    function(jpeg_start_decompress)       \
    function(jpeg_read_scanlines)         \
    function(jpeg_CreateCompress)         \
    function(jpeg_destroy_compress)       \
    function(jpeg_set_defaults)           \
    function(jpeg_set_quality)            \
    function(jpeg_start_compress)         \
    function(jpeg_write_scanlines)        \
    function(jpeg_finish_compress)
// clang-format on
ZV_DEFINE_FUNCTION_TABLE(CJPEGFunctions, ZV_JPEG_FUNCTIONS);

namespace CJPEGLibrary
{
inline constexpr char FileName[] = "libjpeg.so.62";
inline constexpr char MissingMessage[] = "libjpeg is not installed";

inline const CJPEGFunctions* Get()
{
    return OpenOnce<CJPEGFunctions>(FileName);
}
}

// What libjpeg reports errors to. Nothing is printed.
struct CJPEGErrors : jpeg_error_mgr
{
    explicit CJPEGErrors(const CJPEGFunctions& library);
    static CJPEGErrors& Of(j_common_ptr info) { return *static_cast<CJPEGErrors*>(info->err); }

    CErrorJump Jump;
    // The first thing that was wrong with a file and did not end it; empty if nothing was.
    char Warning[JMSG_LENGTH_MAX] = "";
    // The file ended before half of the picture was there.
    bool IsCutEarly = false;
};
