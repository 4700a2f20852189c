#include "video/codec/CZVAVLibraries.h"

#include "system/component/DependencyInstaller.h"
#include "system/file/ZVFileSystem.h"
#include "system/log/ZVLog.h"
#include "system/log/ZVLogCategory.h"

#include <cstddef>
#include <iterator>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Media, L"CZVAVLibraries"};

// In the order in which they are loaded.
struct LibraryFile
{
    const wchar_t* Suffixed;  // of the component, which never meets the system's
    const wchar_t* Plain;     // of a distribution
};

constexpr LibraryFile LibraryFiles[] = {
    {L"libavutil-zv.so.59",    L"libavutil.so.59"   },
    {L"libswresample-zv.so.5", L"libswresample.so.5"},
    {L"libavcodec-zv.so.61",   L"libavcodec.so.61"  },
    {L"libavformat-zv.so.61",  L"libavformat.so.61" },
    {L"libswscale-zv.so.8",    L"libswscale.so.8"   },
    {L"libavfilter-zv.so.10",  L"libavfilter.so.10" },
};

// True when all functions of a table are in the library.
template <class Table>
bool Bind(const ZVLoadLibrary& library, Table& table)
{
    const char* const missing = library.BindAll(table);
    if (missing != nullptr)
        Source.Log("The codec libraries cannot be used: %s is missing", missing);
    return missing == nullptr;
}
}

CZVAVLibraries::CZVAVLibraries()
{
    const ZVString folder = DependencyInstaller::GetFolder(DependencyInstaller::AVCodec);
    if (folder.IsEmpty())
        return;
    const bool isInstalled = ZVFileSystem::IsDirectory(folder);
    if (!isInstalled)
        Source.Log("The codec component is not in %s, so the system's libraries are tried", folder);
    LoadAll(isInstalled ? folder : ZVString(), isInstalled);
    Loaded = BindAll();
}

// A library that fails to load does not keep those after it from being tried, so that the log names all that are missing.
void CZVAVLibraries::LoadAll(const ZVString& folder, bool hasSuffix)
{
    ZVLoadLibrary* const libraries[] = {&m_avutil, &m_swresample, &m_avcodec, &m_avformat, &m_swscale, &m_avfilter};
    for (size_t index = 0; index < std::size(LibraryFiles); ++index)
        libraries[index]->Load(folder + (hasSuffix ? LibraryFiles[index].Suffixed : LibraryFiles[index].Plain));
}

bool CZVAVLibraries::BindAll()
{
    return Bind<ZVAVUtilFunctions>(m_avutil, *this) && Bind<ZVSWResampleFunctions>(m_swresample, *this) &&
           Bind<ZVAVCodecFunctions>(m_avcodec, *this) && Bind<ZVAVFormatFunctions>(m_avformat, *this) &&
           Bind<ZVSWScaleFunctions>(m_swscale, *this) && Bind<ZVAVFilterFunctions>(m_avfilter, *this);
}
