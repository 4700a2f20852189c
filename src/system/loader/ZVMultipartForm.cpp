#include "system/loader/ZVMultipartForm.h"

#include "contracts/IZVFileTypes.h"
#include "contracts/IZVTools.h"
#include "core/ZVToolsPointer.h"
#include "core/string/ZVStringUTF8.h"
#include "system/library/ZVDllString.h"
#include "system/loader/CFileLoader.h"

#include <cstring>

namespace
{
// A name in quotation marks, escaped so that it ends neither the quotation nor the line (RFC 7578, section 2).
ZVString GetQuoted(const wchar_t* format, const ZVString& name)
{
    static constexpr const wchar_t* Needles[] = {L"\"", L"\r", L"\n"};
    static constexpr const wchar_t* Escapes[] = {L"%22", L"%0D", L"%0A"};
    ZVString escaped = name;
    escaped.ReplaceMultiple(Needles, Escapes, 3);
    return ZVFormat(format, escaped);
}

// Empty for a type that is not known.
ZVString GetContentType(const ZVFilename& file)
{
    IZVFileTypes* const fileTypes = g_pZVTools == nullptr ? nullptr : g_pZVTools->GetFileTypes(true);
    if (fileTypes == nullptr)
        return ZVString();
    ZVString contentType;
    ZVDllString view(contentType);
    fileTypes->GetFileInfo(file.GetPathOnly(), 1, 1, 0, 0)->GetString(L"Content Type", view);
    return contentType;
}
}

void ZVMultipartForm::AddText(const ZVString& name, const ZVString& value)
{
    AppendBoundary(L"\r\n");
    AppendText(ZVFormat(L"Content-Disposition: form-data; %s\r\n\r\n%s\r\n", GetQuoted(L"name=\"%s\"", name), value));
}

bool ZVMultipartForm::AddFile(const ZVString& name, const ZVFilename& file)
{
    CFileLoader loader;
    loader.SetStreaming(false);
    ZVBuffer bytes;
    if (!loader.Load(file, bytes))
        return false;

    AppendBoundary(L"\r\n");
    const ZVString names = GetQuoted(L"name=\"%s\"; ", name) + GetQuoted(L"filename=\"%s\"", file.GetNameAndExtension());
    AppendText(ZVFormat(L"Content-Disposition: form-data; %s\r\n", names));
    const ZVString contentType = GetContentType(file);
    if (!contentType.IsEmpty())
        AppendText(ZVFormat(L"Content-Type: %s\r\n", contentType));
    AppendText(L"\r\n");
    m_body.Append(bytes.GetData(), bytes.GetUsed());
    AppendText(L"\r\n");
    return true;
}

void ZVMultipartForm::Finish()
{
    AppendBoundary(L"--\r\n");
}

void ZVMultipartForm::AppendBoundary(const wchar_t* end)
{
    AppendText(ZVString(L"--") + Boundary + end);
}

void ZVMultipartForm::AppendText(const ZVString& text)
{
    const ZVStringUTF8 bytes(text);
    m_body.Append(bytes.Get(), static_cast<int64_t>(strlen(bytes)));
}
