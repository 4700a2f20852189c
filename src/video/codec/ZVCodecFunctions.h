#pragma once

// The functions that the product calls in the codec libraries, a list for each library and in the order in which they are looked
// up. It is the binding of the whole product, so a set of libraries that lacks one of them cannot be used by any of its
// programs.
//
// Each list applies a macro to the names of its functions; see ZVFunctionTable.h.

// clang-format off
#define ZV_AVUTIL_FUNCTIONS(function)       \
    function(av_log_set_callback)           \
    function(av_malloc)                     \
    function(av_mallocz)                    \
    function(av_free)                       \
    function(av_freep)                      \
    function(av_buffer_alloc)               \
    function(av_buffer_unref)               \
    function(av_frame_alloc)                \
    function(av_frame_free)                 \
    function(av_frame_ref)                  \
    function(av_frame_unref)                \
    function(av_frame_copy_props)           \
    function(av_fourcc_make_string)         \
    function(av_rescale)                    \
    function(av_rescale_q)                  \
    function(av_d2q)                        \
    function(av_find_nearest_q_idx)         \
    function(av_image_fill_arrays)          \
    function(av_image_get_buffer_size)      \
    function(av_opt_get)                    \
    function(av_opt_set)                    \
    function(av_opt_set_int)                \
    function(av_opt_set_double)             \
    function(av_opt_set_q)                  \
    function(av_opt_set_bin)                \
    function(av_opt_set_defaults)           \
    function(av_set_options_string)         \
    function(av_dict_get)                   \
    function(av_dict_set)                   \
    function(av_dict_count)                 \
    function(av_dict_free)                  \
    function(av_samples_get_buffer_size)    \
    function(av_sample_fmt_is_planar)       \
    function(av_get_bytes_per_sample)       \
    function(av_get_pix_fmt_name)           \
    function(av_pix_fmt_desc_get)           \
    function(av_pix_fmt_count_planes)       \
    function(av_strdup)                     \
    function(av_hwdevice_ctx_create)        \
    function(av_hwframe_transfer_data)      \
    function(av_frame_get_side_data)        \
    function(av_display_rotation_get)       \
    function(av_color_primaries_name)       \
    function(av_csp_primaries_id_from_desc) \
    function(av_int_list_length_for_size)   \
    function(av_channel_layout_default)     \
    function(av_channel_layout_describe)    \
    function(av_channel_layout_copy)        \
    function(av_strerror)

#define ZV_SWRESAMPLE_FUNCTIONS(function) \
    function(swr_alloc_set_opts2)         \
    function(swr_init)                    \
    function(swr_free)                    \
    function(swr_convert_frame)

#define ZV_AVCODEC_FUNCTIONS(function)        \
    function(av_init_packet)                  \
    function(av_packet_alloc)                 \
    function(av_new_packet)                   \
    function(av_packet_ref)                   \
    function(av_packet_rescale_ts)            \
    function(av_packet_get_side_data)         \
    function(av_packet_unref)                 \
    function(av_packet_free)                  \
    function(av_get_profile_name)             \
    function(avcodec_open2)                   \
    function(avcodec_close)                   \
    function(avcodec_fill_audio_frame)        \
    function(avcodec_find_decoder)            \
    function(avcodec_find_decoder_by_name)    \
    function(avcodec_find_encoder)            \
    function(avcodec_find_encoder_by_name)    \
    function(avcodec_alloc_context3)          \
    function(avcodec_free_context)            \
    function(avcodec_flush_buffers)           \
    function(avcodec_parameters_to_context)   \
    function(avcodec_parameters_from_context) \
    function(avcodec_send_packet)             \
    function(avcodec_receive_frame)           \
    function(avcodec_send_frame)              \
    function(avcodec_receive_packet)          \
    function(avcodec_descriptor_get)          \
    function(av_parser_init)                  \
    function(av_parser_parse2)                \
    function(av_parser_close)                 \
    function(av_bsf_get_by_name)              \
    function(av_bsf_alloc)                    \
    function(av_bsf_init)                     \
    function(av_bsf_send_packet)              \
    function(av_bsf_receive_packet)           \
    function(av_bsf_free)                     \
    function(avcodec_profile_name)            \
    function(avcodec_get_hw_config)

#define ZV_AVFORMAT_FUNCTIONS(function)        \
    function(av_read_frame)                    \
    function(av_interleaved_write_frame)       \
    function(av_write_frame)                   \
    function(av_write_trailer)                 \
    function(av_stream_new_side_data)          \
    function(av_stream_get_side_data)          \
    function(av_guess_format)                  \
    function(av_find_best_stream)              \
    function(avio_alloc_context)               \
    function(avio_open)                        \
    function(avio_close)                       \
    function(avformat_write_header)            \
    function(avformat_alloc_context)           \
    function(avformat_free_context)            \
    function(avformat_new_stream)              \
    function(avformat_alloc_output_context2)   \
    function(avformat_find_stream_info)        \
    function(avformat_open_input)              \
    function(avformat_close_input)             \
    function(avformat_seek_file)               \
    function(av_seek_frame)                    \
    function(avformat_index_get_entry)         \
    function(avformat_index_get_entries_count)

#define ZV_SWSCALE_FUNCTIONS(function) \
    function(sws_getCachedContext)     \
    function(sws_scale)                \
    function(sws_freeContext)

#define ZV_AVFILTER_FUNCTIONS(function)    \
    function(avfilter_get_by_name)         \
    function(avfilter_free)                \
    function(avfilter_graph_alloc)         \
    function(avfilter_graph_create_filter) \
    function(avfilter_graph_config)        \
    function(avfilter_graph_free)          \
    function(avfilter_inout_alloc)         \
    function(avfilter_inout_free)          \
    function(avfilter_graph_parse_ptr)     \
    function(av_buffersink_get_frame)      \
    function(av_buffersrc_write_frame)
// clang-format on
