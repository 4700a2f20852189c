#include "video/codec/CZVAVLibraries.h"

#include "system/component/DependencyInstaller.h"
#include "system/file/ZVFileSystem.h"
#include "system/log/ZVLog.h"
#include "system/log/ZVLogCategory.h"

#include <cstddef>
#include <cstring>
#include <type_traits>

namespace
{
constexpr wchar_t ScopeName[] = L"CZVAVLibraries";

// In the order in which they are loaded: each needs those in front of it.
enum class Family
{
    AVUtil,
    SWResample,
    AVCodec,
    AVFormat,
    SWScale,
    AVFilter,
};

struct LibraryFile
{
    const wchar_t* Suffixed;  // of the component, which never meets the system's
    const wchar_t* Plain;     // of a distribution
};

constexpr LibraryFile LibraryFiles[] = {
    {L"libavutil-zv.so.59",    L"libavutil.so.59"},
    {L"libswresample-zv.so.5", L"libswresample.so.5"},
    {L"libavcodec-zv.so.61",   L"libavcodec.so.61"},
    {L"libavformat-zv.so.61",  L"libavformat.so.61"},
    {L"libswscale-zv.so.8",    L"libswscale.so.8"},
    {L"libavfilter-zv.so.10",  L"libavfilter.so.10"},
};

struct FunctionPlace
{
    Family Library;
    size_t Offset;
    const char* Name;
};

static_assert(std::is_standard_layout_v<ZVCodecFunctionTable>);

constexpr FunctionPlace FunctionPlaces[] = {
#define ZV_PLACE(family, name) {Family::family, offsetof(ZVCodecFunctionTable, name), #name},
    ZV_CODEC_FUNCTIONS(ZV_PLACE)
#undef ZV_PLACE
};
static_assert(sizeof FunctionPlaces / sizeof *FunctionPlaces == 127);
static_assert(sizeof(ZVCodecFunctionTable) == 127 * sizeof(void*));
}

CZVAVLibraries::CZVAVLibraries()
{
    const ZVString folder = DependencyInstaller::GetFolder(DependencyInstaller::AVCodec);
    if (folder.IsEmpty())
        return;
    const bool isInstalled = ZVFileSystem::IsDirectory(folder);
    if (!isInstalled)
        ZVLog(ZVLogCategory::Media, ScopeName, "The codec component is not in %s, so the system's libraries are tried", folder);
    LoadAll(isInstalled ? folder : ZVString(), isInstalled);
    Loaded = Bind();
}

// A library that fails to load does not keep those behind it from being tried, so that the log names all that are missing.
void CZVAVLibraries::LoadAll(const ZVString& folder, bool hasSuffix)
{
    ZVLoadLibrary* const libraries[] = {&m_avutil, &m_swresample, &m_avcodec, &m_avformat, &m_swscale, &m_avfilter};
    for (size_t index = 0; index < sizeof libraries / sizeof *libraries; ++index)
        libraries[index]->Load(folder + (hasSuffix ? LibraryFiles[index].Suffixed : LibraryFiles[index].Plain));
}

bool CZVAVLibraries::Bind()
{
    const ZVLoadLibrary* const libraries[] = {&m_avutil, &m_swresample, &m_avcodec, &m_avformat, &m_swscale, &m_avfilter};
    for (const FunctionPlace& place : FunctionPlaces)
    {
        void* const function = libraries[static_cast<size_t>(place.Library)]->GetSymbol(place.Name);
        if (function == nullptr)
        {
            ZVLog(ZVLogCategory::Media, ScopeName, "The codec libraries cannot be used: %s is missing", place.Name);
            return false;
        }
        memcpy(reinterpret_cast<char*>(static_cast<ZVCodecFunctionTable*>(this)) + place.Offset, &function, sizeof function);
    }
    return true;
}
