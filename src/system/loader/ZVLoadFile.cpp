#include "system/loader/ZVLoadFile.h"

#include "system/loader/CFileLoader.h"

namespace
{
void SetUp(CFileLoader& loader, IZVFileLoaderProgress* progress, const ZVStringArray* requestHeaders)
{
    loader.SetStreaming(true);
    loader.SetLimits(-1, false);
    loader.SetProgress(false, {.Text = L"Working..."});
    loader.SetProgressCallback(progress);
    if (requestHeaders != nullptr)
        loader.SetRequest(*requestHeaders, nullptr, 0, false);
}
}

bool ZVLoadFile(const wchar_t* path, ZVBuffer& buffer, IZVFileLoaderProgress* progress, const ZVStringArray* requestHeaders)
{
    buffer.Empty();
    if (path == nullptr || *path == L'\0')
        return true;
    CFileLoader loader;
    SetUp(loader, progress, requestHeaders);
    return loader.Load(ZVFilename(path), buffer);
}

bool ZVString::LoadFromFile(const wchar_t* path, ZVEncoding encoding, bool dropNulBytes, IZVFileLoaderProgress* progress,
                            const ZVStringArray* requestHeaders)
{
    if (path == nullptr || *path == L'\0')
    {
        Empty();
        return true;
    }
    CFileLoader loader;
    SetUp(loader, progress, requestHeaders);
    return loader.LoadText(ZVFilename(path), *this, encoding, dropNulBytes);
}
