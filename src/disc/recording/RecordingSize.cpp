#include "disc/recording/RecordingSize.h"

#include "disc/recording/CRecordingPath.h"
#include "disc/recording/CTVRecordingStubFile.h"
#include "system/file/ZVFileSearch.h"
#include "system/file/ZVFileSystem.h"

#include <algorithm>
#include <cstdint>

namespace
{
constexpr wchar_t TimeShiftExtension[] = L"zts";
constexpr wchar_t StubExtension[] = L"ztv";
constexpr wchar_t ChunkExtension[] = L"cnk";

// The last letter of a path stays as it is.
constexpr wchar_t OwnEnding = L'\0';

// The files of a recording in a time-shift folder.
constexpr wchar_t TimeShiftEndings[] = {L'f', L'i', L'r', OwnEnding, L'a'};

// The files that a stub names, in the order in which they are looked at.
struct StubPart
{
    ZVString CTVRecordingStubFile::*Path;
    wchar_t Ending;
};

constexpr StubPart StubParts[] = {
    {&CTVRecordingStubFile::FirstPath,  OwnEnding},
    {&CTVRecordingStubFile::SecondPath, OwnEnding},
    {&CTVRecordingStubFile::StreamPath, L'r'     },
    {&CTVRecordingStubFile::StreamPath, OwnEnding},
    {&CTVRecordingStubFile::ThirdPath,  OwnEnding},
};

ZVString WithEnding(ZVString path, wchar_t ending)
{
    if (ending != OwnEnding && !path.IsEmpty())
        path.SetAt(path.GetLength() - 1, ending);
    return path;
}

bool Exists(const ZVString& path)
{
    return CRecordingPath::IsLocal(path) ? ZVFileSystem::Exists(path) : ZVFilename::FromPath(path).Exists();
}

// A server is asked only for an address. Of a local file with "file://" or another "://" in its path, ZVFilename would read the
// content.
int64_t SizeOf(ZVString path)
{
    ZVFilename::ClearFileScheme(path);
    return CRecordingPath::IsLocal(path) ? ZVFileSystem::GetFileSize(path) : ZVFilename::FromPath(path).GetFileSize();
}

// Sizes that are added up. Those of sparse files may come to more than a number holds.
class TotalSize
{
public:
    void Add(const ZVString& path)
    {
        if (__builtin_add_overflow(m_bytes, std::max<int64_t>(SizeOf(path), 0), &m_bytes))
            m_bytes = INT64_MAX;
    }
    void AddChunksBeside(const ZVString& path)
    {
        if (path.IsEmpty() || !CRecordingPath::IsLocal(path))
            return;
        const ZVString folder = ZVFilename::FromPath(path).GetDirectory();
        ZVFileSearch search(folder.IsEmpty() ? ZVString(L".") : folder, ChunkExtension);
        for (const ZVString& chunk : search.GetResults())
            Add(chunk);
    }
    int64_t Get() const { return m_bytes; }

private:
    int64_t m_bytes = 0;
};

int64_t GetTimeShiftSize(const ZVString& path)
{
    TotalSize total;
    for (const wchar_t ending : TimeShiftEndings)
        total.Add(WithEnding(path, ending));
    total.AddChunksBeside(path);
    return total.Get();
}

int64_t GetStubSize(const ZVString& path)
{
    // The paths of a bad stub are empty.
    CTVRecordingStubFile stub;
    stub.Read(ZVFilename::FromPath(path));
    TotalSize total;
    total.Add(path);
    for (const StubPart& part : StubParts)
        total.Add(WithEnding(stub.*part.Path, part.Ending));
    total.AddChunksBeside(stub.StreamPath);
    return total.Get();
}
}

int64_t GetRecordingSize(const ZVFilename& path)
{
    ZVString text = path.GetFilename();
    ZVFilename::ClearFileScheme(text);
    if (!Exists(text))
        return 0;
    const ZVString extension = path.GetExtension();
    if (extension == TimeShiftExtension)
        return GetTimeShiftSize(text);
    return extension == StubExtension ? GetStubSize(text) : 0;
}

int64_t GetMediaFileSize(const ZVFilename& name)
{
    const ZVString extension = name.GetExtension();
    const bool isRecording = extension == TimeShiftExtension || extension == StubExtension;
    return isRecording ? GetRecordingSize(name) : name.GetFileSize();
}
