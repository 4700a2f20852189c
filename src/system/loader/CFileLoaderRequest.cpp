#include "system/loader/CFileLoader.h"

#include "system/loader/ZVMultipartForm.h"

#include <utility>

bool CFileLoader::SetLimits(int64_t maximumBytes, bool failIfLarger)
{
    m_options.MaximumBytes = maximumBytes;
    m_options.FailIfLarger = failIfLarger;
    return true;
}

bool CFileLoader::SetStartOffset(int64_t offset)
{
    m_options.StartOffset = offset;
    return true;
}

bool CFileLoader::SetValidation(int32_t bytes, ZVLoadValidator* validator, int32_t context, bool validateAtEnd,
                                const ZVString& marker)
{
    m_options.ValidateBytes = bytes;
    m_options.Validator = validator;
    m_options.ValidatorContext = context;
    m_options.ValidateAtEnd = validateAtEnd;
    m_options.RequiredMarker = marker;
    return true;
}

bool CFileLoader::SetProgress(bool show, int32_t delayMs, bool flag, const ZVString& caption, bool option, const ZVString& text)
{
    m_options.ShowProgress = show;
    m_options.ProgressDelay = delayMs;
    m_options.ProgressFlag = flag;
    m_options.ProgressCaption = caption;
    m_options.ProgressOption = option;
    m_options.ProgressText = text;
    return true;
}

bool CFileLoader::SetProgressCallback(IZVFileLoaderProgress* callback)
{
    m_options.ProgressCallback = callback;
    return true;
}

bool CFileLoader::SetStreaming(bool streaming)
{
    m_options.Streaming = streaming;
    return true;
}

bool CFileLoader::SetAllowInternet(bool allow)
{
    m_options.AllowInternet = allow;
    return true;
}

bool CFileLoader::SetTimeout(int32_t milliseconds)
{
    m_options.TimeoutMs = milliseconds;
    return true;
}

bool CFileLoader::SetCancelTarget(ZVCancelHelper* target)
{
    m_ownCancel.Clear();
    m_cancelTarget = target != nullptr ? target : &m_ownCancel;
    return true;
}

void CFileLoader::SetRequest(const ZVStringArray& headers, const void* postData, int64_t postSize, bool copyPost)
{
    m_options.RequestHeaders = headers;
    const bool hasBody = postData != nullptr && postSize > 0;
    ZVString contentType;
    if (hasBody && !ZVRequestHeaders::FindHeader(headers, L"Content-Type", contentType))
    {
        m_options.RequestHeaders.Add(L"Content-Type: text/xml");
        ZVRequestHeaders::SetEntry(m_options.RequestHeaders, ZVRequestHeaders::Method,
                                   ZVRequestHeaders::GetMethodName(ZVRequestMethod::Post));
    }
    AddDefaultHeaders(m_options.RequestHeaders, true);

    ZVBuffer copy;
    if (hasBody && copyPost)
        copy.Append(postData, postSize);
    m_ownedPost = std::move(copy);
    m_options.PostSize = hasBody ? postSize : 0;
    m_options.PostData = hasBody && copyPost ? m_ownedPost.GetData() : postData;
}

void CFileLoader::AddDefaultHeaders(ZVStringArray& headers, bool addGzip)
{
    ZVString accepted;
    if (addGzip && !ZVRequestHeaders::FindHeader(headers, L"Accept-Encoding", accepted))
        headers.Add(L"Accept-Encoding: gzip");
}

bool CFileLoader::SetRequestOption(const wchar_t* key, const ZVString& value)
{
    return ZVRequestHeaders::SetEntry(m_options.RequestHeaders, key, value);
}

void CFileLoader::SetBody(ZVRequestMethod method, ZVRequestBodyKind kind, const void* data, int64_t size, bool copy,
                          const ZVString& contentType)
{
    ZVStringArray headers;
    ZVRequestHeaders::SetEntry(headers, ZVRequestHeaders::Method, ZVRequestHeaders::GetMethodName(method));
    headers.Add(ZVRequestHeaders::GetBodyHeaders(kind, size, contentType));
    SetRequest(headers, data, size, copy);
}

void CFileLoader::SetForm(ZVRequestMethod method, const ZVMultipartForm& form, bool succeedOnError)
{
    const ZVBuffer& body = form.GetBody();
    SetBody(method, ZVRequestBodyKind::Multipart, body.GetData(), body.GetUsed(), false, ZVMultipartForm::Boundary);
    if (succeedOnError)
        SetRequestOption(ZVRequestHeaders::SucceedOnError, L"1");
}

// A later load is another request: it starts with neither headers nor a body.
void CFileLoader::ResetRequest()
{
    m_options.RequestHeaders.RemoveAll();
    m_options.PostData = nullptr;
    m_options.PostSize = 0;
    m_ownedPost = ZVBuffer();
}
