// What a thumbnail costs without any thought: opens a film, finds out about its streams, moves to the key frame before a time, decodes
// every frame up to the one that is on screen then, converts it as the worker does, and writes it as a JPEG file. It is linked with the
// libraries.
//
//   BareThumbnail FILE MILLISECONDS PICTURE
//
// Leaves with 1 when there is no such frame or the picture cannot be written.

#include <stdio.h>

#include <jpeglib.h>
#include <libavcodec/avcodec.h>
#include <libavfilter/avfilter.h>
#include <libavfilter/buffersink.h>
#include <libavfilter/buffersrc.h>
#include <libavformat/avformat.h>
#include <stdlib.h>

static const char Convert[] = "scale,format=bgr0";
static const char ToneMap[] = "zscale=t=linear:npl=203,format=gbrpf32le,zscale=p=bt709,tonemap=mobius:param=3/5:desat=0:peak=1000/203,"
                              "zscale=t=bt709:m=gbr:r=full,format=gbrp,scale,format=bgr0";

static AVCodecContext* OpenDecoder(const AVStream* stream)
{
    const AVCodec* const codec = avcodec_find_decoder(stream->codecpar->codec_id);
    AVCodecContext* decoder = codec == NULL ? NULL : avcodec_alloc_context3(codec);
    if (decoder == NULL)
        return NULL;
    avcodec_parameters_to_context(decoder, stream->codecpar);
    decoder->pkt_timebase = stream->time_base;
    decoder->thread_count = 0;
    if (avcodec_open2(decoder, codec, NULL) < 0)
        avcodec_free_context(&decoder);
    return decoder;
}

// Decodes up to the first frame that ends after the target; 0 when there is none.
static int DecodeTo(AVFormatContext* context, const AVStream* stream, AVCodecContext* decoder, int64_t target, AVFrame* frame)
{
    AVPacket* packet = av_packet_alloc();
    int isFound = 0;
    while (packet != NULL && !isFound && av_read_frame(context, packet) >= 0)
    {
        if (packet->stream_index == stream->index && avcodec_send_packet(decoder, packet) >= 0)
            while (!isFound && avcodec_receive_frame(decoder, frame) >= 0)
                isFound = frame->best_effort_timestamp + frame->duration > target;
        av_packet_unref(packet);
    }
    av_packet_free(&packet);
    return isFound;
}

// Puts the picture of a frame into another one; 0 when that fails.
static int MakePicture(AVFrame* frame, AVRational timeBase, AVFrame* picture)
{
    AVFilterGraph* graph = avfilter_graph_alloc();
    AVFilterInOut* inputs = NULL;
    AVFilterInOut* outputs = NULL;
    AVFilterContext* source = NULL;
    AVFilterContext* sink = NULL;
    char arguments[256];
    const int isHDR = frame->color_trc == AVCOL_TRC_SMPTE2084 || frame->color_trc == AVCOL_TRC_ARIB_STD_B67;
    snprintf(arguments, sizeof arguments, "video_size=%dx%d:pix_fmt=%d:time_base=%d/%d", frame->width, frame->height, frame->format,
             timeBase.num, timeBase.den);
    int result = graph == NULL ? -1 : avfilter_graph_parse2(graph, isHDR ? ToneMap : Convert, &inputs, &outputs);
    if (result >= 0)
        result = avfilter_graph_create_filter(&source, avfilter_get_by_name("buffer"), "in", arguments, NULL, graph);
    if (result >= 0)
        result = avfilter_graph_create_filter(&sink, avfilter_get_by_name("buffersink"), "out", NULL, NULL, graph);
    if (result >= 0)
        result = avfilter_link(source, 0, inputs->filter_ctx, (unsigned)inputs->pad_idx);
    if (result >= 0)
        result = avfilter_link(outputs->filter_ctx, (unsigned)outputs->pad_idx, sink, 0);
    if (result >= 0)
        result = avfilter_graph_config(graph, NULL);
    if (result >= 0)
        result = av_buffersrc_add_frame(source, frame);
    if (result >= 0)
        result = av_buffersink_get_frame(sink, picture);
    avfilter_inout_free(&inputs);
    avfilter_inout_free(&outputs);
    avfilter_graph_free(&graph);
    return result >= 0;
}

static int WritePicture(const AVFrame* picture, const char* path)
{
    FILE* const file = fopen(path, "wb");
    if (file == NULL)
        return 0;
    struct jpeg_compress_struct writer;
    struct jpeg_error_mgr errors;
    writer.err = jpeg_std_error(&errors);
    jpeg_create_compress(&writer);
    jpeg_stdio_dest(&writer, file);
    writer.image_width = (JDIMENSION)picture->width;
    writer.image_height = (JDIMENSION)picture->height;
    writer.input_components = 4;
    writer.in_color_space = JCS_EXT_BGRX;
    jpeg_set_defaults(&writer);
    jpeg_set_quality(&writer, 90, TRUE);
    jpeg_start_compress(&writer, TRUE);
    for (int row = 0; row < picture->height; ++row)
    {
        JSAMPROW line = picture->data[0] + (ptrdiff_t)row * picture->linesize[0];
        jpeg_write_scanlines(&writer, &line, 1);
    }
    jpeg_finish_compress(&writer);
    jpeg_destroy_compress(&writer);
    return fclose(file) == 0;
}

int main(int argc, char** argv)
{
    if (argc != 4)
    {
        fprintf(stderr, "usage: BareThumbnail FILE MILLISECONDS PICTURE\n");
        return 1;
    }
    av_log_set_level(AV_LOG_ERROR);
    AVFormatContext* context = NULL;
    if (avformat_open_input(&context, argv[1], NULL, NULL) < 0)
        return 1;
    int result = 1;
    const int found = avformat_find_stream_info(context, NULL);
    const int index = found < 0 ? found : av_find_best_stream(context, AVMEDIA_TYPE_VIDEO, -1, -1, NULL, 0);
    AVCodecContext* decoder = index < 0 ? NULL : OpenDecoder(context->streams[index]);
    AVFrame* frame = av_frame_alloc();
    AVFrame* picture = av_frame_alloc();
    if (decoder != NULL && frame != NULL && picture != NULL)
    {
        const AVStream* const stream = context->streams[index];
        const AVRational milliseconds = {1, 1000};
        const int64_t start = stream->start_time == AV_NOPTS_VALUE ? 0 : stream->start_time;
        const int64_t target = start + av_rescale_q(atoll(argv[2]), milliseconds, stream->time_base);
        if (av_seek_frame(context, index, target, AVSEEK_FLAG_BACKWARD) >= 0 && DecodeTo(context, stream, decoder, target, frame) &&
            MakePicture(frame, stream->time_base, picture) && WritePicture(picture, argv[3]))
            result = 0;
    }
    av_frame_free(&picture);
    av_frame_free(&frame);
    avcodec_free_context(&decoder);
    avformat_close_input(&context);
    return result;
}
