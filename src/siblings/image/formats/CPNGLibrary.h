#pragma once

#include "siblings/image/formats/CErrorJump.h"
#include "siblings/image/formats/OpenOnce.h"

#include <png.h>

// clang-format off
#define ZV_PNG_FUNCTIONS(function)          \
    function(png_get_error_ptr)             \
    function(png_get_io_ptr)                \
    function(png_create_info_struct)        \
    function(png_create_read_struct)        \
    function(png_destroy_read_struct)       \
    function(png_set_read_fn)               \
    function(png_set_keep_unknown_chunks)   \
    function(png_set_chunk_malloc_max)      \
    function(png_set_user_limits)           \
    function(png_read_info)                 \
    function(png_get_image_width)           \
    function(png_get_image_height)          \
    function(png_set_expand)                \
    function(png_set_scale_16)              \
    function(png_set_gray_to_rgb)           \
    function(png_set_add_alpha)             \
    function(png_set_bgr)                   \
    function(png_set_interlace_handling)    \
    function(png_read_update_info)          \
    function(png_get_rowbytes)              \
    function(png_read_row)                  \
    function(png_create_write_struct)       \
    function(png_destroy_write_struct)      \
    function(png_set_write_fn)              \
    function(png_set_IHDR)                  \
    function(png_set_compression_level)     \
    function(png_set_compression_strategy)  \
    function(png_set_filter)                \
    function(png_write_info)                \
    function(png_set_filler)                \
    function(png_write_row)                 \
    function(png_write_end)
// clang-format on
ZV_DEFINE_FUNCTION_TABLE(CPNGFunctions, ZV_PNG_FUNCTIONS);

namespace CPNGLibrary
{
inline constexpr char FileName[] = "libpng16.so.16";
inline constexpr char MissingMessage[] = "libpng is not installed";

inline const CPNGFunctions* Get()
{
    return OpenOnce<CPNGFunctions>(FileName);
}

// The functions that the library reports to; its error pointer is a CErrorJump. What it only warns of does not count.
[[noreturn]] inline void OnError(png_structp png, png_const_charp message)
{
    static_cast<CErrorJump*>(Get()->png_get_error_ptr(png))->Leave(message);
}
inline void OnWarning(png_structp, png_const_charp) {}
}
