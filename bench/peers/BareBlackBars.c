// What a plain look for black bars costs: it seeks to nine places of a film, decodes up to 200 frames at each and has them, but for the
// opening's, looked at by the crop detection, with the libraries of the codec component. It is linked with the libraries and writes no
// result. The worker does less: it leaves out the opening and the packets of other streams.
//
//   BareBlackBars FILE
//
// Prints how many frames it saw and how many rectangles were reported, and leaves with 1 when the film does not open or has no video.

#include <libavcodec/avcodec.h>
#include <libavfilter/avfilter.h>
#include <libavfilter/buffersink.h>
#include <libavfilter/buffersrc.h>
#include <libavformat/avformat.h>
#include <libavutil/pixdesc.h>
#include <stdio.h>

enum
{
    FormatProbeSize = 0x400000,
    FrameLimit = 200,
    Parts = 8,
};

struct Filter
{
    AVFilterGraph* Graph;
    AVFilterContext* Source;
    AVFilterContext* Sink;
    AVFrame* Output;
};

struct Film
{
    AVFormatContext* Context;
    AVStream* Stream;
    AVCodecContext* Decoder;
    AVPacket* Packet;
    AVFrame* Frame;
    struct Filter Filter;
    int Frames;
    int Reports;
};

static AVCodecContext* OpenDecoder(const AVStream* stream)
{
    const AVCodec* const codec = avcodec_find_decoder(stream->codecpar->codec_id);
    AVCodecContext* decoder = codec == NULL ? NULL : avcodec_alloc_context3(codec);
    if (decoder == NULL)
        return NULL;
    avcodec_parameters_to_context(decoder, stream->codecpar);
    decoder->pkt_timebase = stream->time_base;
    decoder->thread_count = 0;
    decoder->thread_type = FF_THREAD_FRAME;
    if (stream->codecpar->codec_id == AV_CODEC_ID_H264)
        decoder->strict_std_compliance = FF_COMPLIANCE_STRICT;
    if (avcodec_open2(decoder, codec, NULL) < 0)
        avcodec_free_context(&decoder);
    return decoder;
}

static int OpenFilter(struct Filter* filter, const AVFrame* frame)
{
    char text[256];
    const int depth = av_pix_fmt_desc_get((enum AVPixelFormat)frame->format)->comp[0].depth;
    const int black = frame->color_range == AVCOL_RANGE_JPEG ? 4 : 20;
    snprintf(text, sizeof text,
             "buffer@in=video_size=%dx%d:pix_fmt=%s:time_base=%d/%d:pixel_aspect=%d/%d,cropdetect=limit=%d:round=4:skip=16:reset=32,"
             "buffersink@out",
             frame->width, frame->height, av_get_pix_fmt_name((enum AVPixelFormat)frame->format), frame->time_base.num,
             frame->time_base.den, frame->sample_aspect_ratio.num, frame->sample_aspect_ratio.den, (1 << depth) / 256 * black);
    AVFilterInOut* inputs = NULL;
    AVFilterInOut* outputs = NULL;
    filter->Graph = avfilter_graph_alloc();
    if (filter->Graph == NULL || avfilter_graph_parse2(filter->Graph, text, &inputs, &outputs) < 0 ||
        avfilter_graph_config(filter->Graph, NULL) < 0)
        return 0;
    filter->Source = avfilter_graph_get_filter(filter->Graph, "buffer@in");
    filter->Sink = avfilter_graph_get_filter(filter->Graph, "buffersink@out");
    return filter->Source != NULL && filter->Sink != NULL;
}

static int RunFilter(struct Filter* filter, const AVFrame* frame)
{
    int reports = 0;
    if (filter->Graph == NULL && !OpenFilter(filter, frame))
        return 0;
    if (av_buffersrc_write_frame(filter->Source, frame) < 0)
        return 0;
    for (; av_buffersink_get_frame(filter->Sink, filter->Output) >= 0; av_frame_unref(filter->Output))
        reports += av_dict_get(filter->Output->metadata, "lavfi.cropdetect.h", NULL, 0) != NULL;
    return reports;
}

static void LookAtPlace(struct Film* film, int isCounted)
{
    int frames = 0;
    avfilter_graph_free(&film->Filter.Graph);
    while (frames < FrameLimit && av_read_frame(film->Context, film->Packet) >= 0)
    {
        if (film->Packet->stream_index == film->Stream->index && avcodec_send_packet(film->Decoder, film->Packet) >= 0)
            for (; avcodec_receive_frame(film->Decoder, film->Frame) >= 0; ++frames)
            {
                film->Frame->time_base = film->Decoder->pkt_timebase;
                if (isCounted)
                    film->Reports += RunFilter(&film->Filter, film->Frame);
            }
        av_packet_unref(film->Packet);
    }
    film->Frames += frames;
}

static void LookAtPlaces(struct Film* film)
{
    const int64_t seconds = film->Context->duration / AV_TIME_BASE;
    const AVRational timeBase = film->Stream->time_base;
    LookAtPlace(film, 0);
    for (int part = 0; part < Parts; ++part)
    {
        const int64_t place = part == 0 ? 45 : seconds / Parts * part;
        int64_t target = av_rescale(place, timeBase.den, timeBase.num);
        if (film->Context->start_time != AV_NOPTS_VALUE)
            target += av_rescale(film->Context->start_time, timeBase.den, (int64_t)timeBase.num * AV_TIME_BASE);
        av_seek_frame(film->Context, film->Stream->index, target, AVSEEK_FLAG_BACKWARD);
        avcodec_flush_buffers(film->Decoder);
        LookAtPlace(film, 1);
    }
}

int main(int argc, char** argv)
{
    if (argc != 2)
    {
        fprintf(stderr, "usage: BareBlackBars FILE\n");
        return 1;
    }
    av_log_set_level(AV_LOG_WARNING);
    struct Film film = {0};
    film.Context = avformat_alloc_context();
    if (film.Context == NULL)
        return 1;
    film.Context->format_probesize = FormatProbeSize;
    if (avformat_open_input(&film.Context, argv[1], NULL, NULL) < 0)
        return 1;

    int result = 1;
    const int found = avformat_find_stream_info(film.Context, NULL);
    const int streamIndex = found < 0 ? found : av_find_best_stream(film.Context, AVMEDIA_TYPE_VIDEO, -1, -1, NULL, 0);
    if (streamIndex >= 0)
    {
        film.Stream = film.Context->streams[streamIndex];
        film.Decoder = OpenDecoder(film.Stream);
    }
    film.Packet = av_packet_alloc();
    film.Frame = av_frame_alloc();
    film.Filter.Output = av_frame_alloc();
    if (film.Decoder != NULL && film.Packet != NULL && film.Frame != NULL && film.Filter.Output != NULL)
    {
        LookAtPlaces(&film);
        printf("%d frames, %d reports\n", film.Frames, film.Reports);
        result = 0;
    }
    avfilter_graph_free(&film.Filter.Graph);
    av_frame_free(&film.Filter.Output);
    av_frame_free(&film.Frame);
    av_packet_free(&film.Packet);
    avcodec_free_context(&film.Decoder);
    avformat_close_input(&film.Context);
    return result;
}
