#pragma once

#include "core/containers/ZVStringArray.h"
#include "core/string/ZVString.h"
#include "system/filename/ZVFilename.h"

#include <cstdint>

// A disc's folder as one item of the library: whether a file name stands for such a folder, which kind of disc it is, which file
// stands for it, and what belongs to it.
class CMediaAggregate
{
public:
    // The kinds of discs, with the numbers of a name's property MediaAggregate.
    static constexpr int32_t NoAggregate = 0;
    static constexpr int32_t DVD = 1;
    static constexpr int32_t Bluray = 2;
    static constexpr int32_t Bluray3D = 3;

    // An aggregate with more files is none that a disc made; its walk ends there.
    static constexpr int32_t MaximumFiles = 100'000;

    // The type of a text like "bluray", of which what follows the last ";" does not count; 0 for a text of no disc.
    static int32_t TypeFromText(const ZVString& text);
    // The type that a name carries in its properties, with the extension of its file; 0 when it tells none.
    static int32_t GetType(const ZVFilename& name, const ZVString& extension);
    // The path of the file that stands for a DVD's folder, or empty. When only its backup is left on the disc, the file is made
    // from that.
    static ZVString FindDvdMainFile(const ZVString& folder);
    // "/VIDEO_TS/" and "/BDMV/", or the same without slashes; empty when there is no disc.
    static ZVString GetMarker(int32_t type, bool withSlashes);

    // Extensions that stand for a disc, and those of the files of one kind of disc, in any case.
    static bool IsAggregateExtension(const ZVString& extension);
    static bool IsDvdExtension(const ZVString& extension);
    static bool IsBlurayExtension(const ZVString& extension);

    // Looks for a disc in a folder.
    bool DetectInFolder(const ZVString& folder);
    // Looks for the disc that a file name stands for: by its properties, otherwise in its folder. Null and empty names are none.
    bool Detect(const wchar_t* name);

    // The folder that holds VIDEO_TS or BDMV, with a slash at its end; without such a step the folder of the disc itself.
    ZVString GetRootFolder() const;
    // Appends the paths of the disc's files; those of a DVD in the order in which they lie on the disc.
    void GetFiles(ZVStringArray& out, bool recursive) const;
    // The size of these files together, in bytes.
    int64_t GetTotalSize(bool recursive) const;

    int32_t Type = NoAggregate;
    ZVString MainFile;  // the bare name of the file that stands for the disc

private:
    bool Set(int32_t type, const wchar_t* mainFile);

    ZVString m_folder;
};
