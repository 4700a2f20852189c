#pragma once

// The headers of the codec libraries, whose major versions are those of the libraries that are bound at run time.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
extern "C"
{
#include <libavcodec/avcodec.h>
#include <libavcodec/bsf.h>
#include <libavfilter/avfilter.h>
#include <libavfilter/buffersink.h>
#include <libavfilter/buffersrc.h>
#include <libavformat/avformat.h>
#include <libavutil/avutil.h>
#include <libavutil/channel_layout.h>
#include <libavutil/csp.h>
#include <libavutil/display.h>
#include <libavutil/dovi_meta.h>
#include <libavutil/hwcontext.h>
#include <libavutil/imgutils.h>
#include <libavutil/mastering_display_metadata.h>
#include <libavutil/opt.h>
#include <libavutil/pixdesc.h>
#include <libswresample/swresample.h>
#include <libswscale/swscale.h>
}
#pragma GCC diagnostic pop

static_assert(LIBAVUTIL_VERSION_MAJOR == 59 && LIBSWRESAMPLE_VERSION_MAJOR == 5 && LIBAVCODEC_VERSION_MAJOR == 61 &&
                  LIBAVFORMAT_VERSION_MAJOR == 61 && LIBSWSCALE_VERSION_MAJOR == 8 && LIBAVFILTER_VERSION_MAJOR == 10,
              "the headers must be those of the libraries that are opened");
