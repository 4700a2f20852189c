#include "siblings/image/formats/CJPEGLibrary.h"

namespace
{
void OnError(j_common_ptr info)
{
    char message[JMSG_LENGTH_MAX];
    info->err->format_message(info, message);
    CJPEGErrors::Of(info).Jump.Leave(message);
}

// A negative level is a warning, any other one tells what is going on.
void OnMessage(j_common_ptr info, int level)
{
    if (level >= 0)
        return;
    CJPEGErrors& errors = CJPEGErrors::Of(info);
    if (errors.num_warnings++ == 0)
        info->err->format_message(info, errors.Warning);
    if (info->err->msg_code != JWRN_JPEG_EOF || !info->is_decompressor)
        return;
    // Later scans only make a whole picture finer.
    const auto* const file = reinterpret_cast<j_decompress_ptr>(info);
    errors.IsCutEarly |= file->input_scan_number <= 1 && file->input_iMCU_row < file->total_iMCU_rows / 2;
}
}

CJPEGErrors::CJPEGErrors(const CJPEGFunctions& library) : jpeg_error_mgr()
{
    library.jpeg_std_error(this);
    error_exit = OnError;
    emit_message = OnMessage;
}
