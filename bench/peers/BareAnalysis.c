// What an extended analysis costs at the least: opens a film, finds out about its streams and decodes ten frames of its best video stream, with
// the libraries of the codec component and the settings of the worker. It is linked with the libraries and writes no result.
//
//   BareAnalysis FILE
//
// Prints how many frames it saw, and leaves with 1 when the film does not open or has no video.

#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <stdio.h>

static const int FormatProbeSize = 0x400000;
static const int FrameLimit = 10;

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
    decoder->skip_loop_filter = AVDISCARD_ALL;
    if (avcodec_open2(decoder, codec, NULL) < 0)
        avcodec_free_context(&decoder);
    return decoder;
}

static int DecodeFrames(AVFormatContext* context, int streamIndex, AVCodecContext* decoder)
{
    AVPacket* packet = av_packet_alloc();
    AVFrame* frame = av_frame_alloc();
    int frames = 0;
    while (packet != NULL && frame != NULL && frames < FrameLimit && av_read_frame(context, packet) >= 0)
    {
        if (packet->stream_index == streamIndex && avcodec_send_packet(decoder, packet) >= 0)
            while (avcodec_receive_frame(decoder, frame) >= 0)
                ++frames;
        av_packet_unref(packet);
    }
    av_frame_free(&frame);
    av_packet_free(&packet);
    return frames;
}

int main(int argc, char** argv)
{
    if (argc != 2)
    {
        fprintf(stderr, "usage: BareAnalysis FILE\n");
        return 1;
    }
    av_log_set_level(AV_LOG_WARNING);
    AVFormatContext* context = avformat_alloc_context();
    if (context == NULL)
        return 1;
    context->format_probesize = FormatProbeSize;
    if (avformat_open_input(&context, argv[1], NULL, NULL) < 0)
        return 1;

    int result = 1;
    const int found = avformat_find_stream_info(context, NULL);
    const int streamIndex = found < 0 ? found : av_find_best_stream(context, AVMEDIA_TYPE_VIDEO, -1, -1, NULL, 0);
    AVCodecContext* decoder = streamIndex < 0 ? NULL : OpenDecoder(context->streams[streamIndex]);
    if (decoder != NULL)
    {
        printf("%d frames\n", DecodeFrames(context, streamIndex, decoder));
        result = 0;
    }
    avcodec_free_context(&decoder);
    avformat_close_input(&context);
    return result;
}
