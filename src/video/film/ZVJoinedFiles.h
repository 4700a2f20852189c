#pragma once

#include "core/containers/ZVStringArray.h"
#include "system/file/ZVFile.h"
#include "video/film/ZVCodecObjects.h"
#include "video/film/ZVFilmBudget.h"

#include <cstdint>
#include <memory>
#include <vector>

// Several files that the codec libraries read as one, as the parts of a DVD's title are.
class ZVJoinedFiles
{
public:
    // Opens the files in their order; those that do not open are left out. Null, when none does or there is no memory. The
    // libraries and the budget, which bounds the reading, outlive the object.
    static std::unique_ptr<ZVJoinedFiles> Open(const CZVAVLibraries& codec, const ZVStringArray& paths, ZVFilmBudget& budget);
    ZVJoinedFiles(const ZVJoinedFiles&) = delete;
    ZVJoinedFiles& operator=(const ZVJoinedFiles&) = delete;
    // The context that reads it is closed by then.
    ~ZVJoinedFiles();

    // Where the libraries read from. It belongs to this object.
    AVIOContext& GetContext() { return *m_context; }
    // The bytes of all files.
    int64_t GetSize() const { return m_size; }

private:
    struct Part
    {
        std::unique_ptr<ZVFile> File;
        int64_t Start;  // among the bytes of all parts
        int64_t Size;
    };

    ZVJoinedFiles(const CZVAVLibraries& codec, ZVFilmBudget& budget) : m_codec(codec), m_budget(budget) {}

    bool MakeContext();
    void Add(const ZVString& path);
    static int ReadBytes(void* files, uint8_t* bytes, int count);
    static int64_t SeekTo(void* files, int64_t offset, int origin);
    int Read(uint8_t* bytes, int count);

    const CZVAVLibraries& m_codec;
    ZVFilmBudget& m_budget;
    std::vector<Part> m_parts;
    int64_t m_size = 0;
    int64_t m_position = 0;
    AVIOContext* m_context = nullptr;
};
