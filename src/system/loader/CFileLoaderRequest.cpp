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

bool CFileLoader::SetValidation(const CFileLoaderValidation& validation)
{
    m_options.Validation = validation;
    return true;
}

bool CFileLoader::SetProgress(bool show, const ZVWaitMessageOptions& message)
{
    m_options.ShowProgress = show;
    m_options.WaitMessage = message;
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

void CFileLoader::SetBody(ZVRequestMethod method, const ZVRequestBody& body)
{
    ZVStringArray headers;
    ZVRequestHeaders::SetEntry(headers, ZVRequestHeaders::Method, ZVRequestHeaders::GetMethodName(method));
    headers.Add(ZVRequestHeaders::GetBodyHeaders(body));
    SetRequest(headers, body.Data, body.Size, body.IsCopied);
}

void CFileLoader::SetForm(ZVRequestMethod method, const ZVMultipartForm& form)
{
    SetBody(method, {.Kind = ZVRequestBodyKind::Multipart,
                     .Data = form.GetBody().GetData(),
                     .Size = form.GetBody().GetUsed(),
                     .Detail = ZVMultipartForm::Boundary});
}
