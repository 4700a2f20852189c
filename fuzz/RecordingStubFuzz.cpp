// The stub of a television recording, read as a local file and as one that came from a server.

#include "Require.h"
#include "disc/recording/CTVRecordingStubFile.h"
#include "siblings/reader/CMemoryReader.h"

#include <cstdint>

namespace
{
constexpr ZVString CTVRecordingStubFile::*Paths[] = {&CTVRecordingStubFile::FirstPath, &CTVRecordingStubFile::SecondPath,
                                                     &CTVRecordingStubFile::ThirdPath, &CTVRecordingStubFile::StreamPath};

bool Read(CTVRecordingStubFile& stub, const wchar_t* path, const uint8_t* data, size_t size)
{
    ZVReaderPointer reader(new CMemoryReader(data, static_cast<int64_t>(size)));
    return stub.Read(ZVFilename(path), std::move(reader));
}

// A path of a local stub, as it is made absolute and as the stub has it.
void CheckPath(const ZVString& path, const ZVString& written)
{
    Require(path.IsEmpty() == written.IsEmpty());
    Require(path.IsEmpty() || path.StartsWith(L'/'));
    for (const wchar_t character : path.View())
        Require(character > 0 && character <= 0x10ffff);
    if (written.StartsWith(L'/'))
    {
        Require(IsSame(path, written));
        return;
    }
    // The system finds the file of a joined path and not a server.
    Require(!ZVFilename::IsRemote(path));
    Require((path + L"/").Find(L"/../") == -1);
    Require((path + L"/").Find(L"/./") == -1);
    Require(path.Find(L'\\') == -1);
}
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    CTVRecordingStubFile local;
    CTVRecordingStubFile remote;
    const bool isRead = Read(local, L"/recordings/a/show.ztv", data, size);
    Require(Read(remote, L"http://server/a/show.ztv", data, size) == isRead);
    Require(!isRead || size >= sizeof local.Head + sizeof(uint16_t));
    for (const auto path : Paths)
    {
        Require(isRead || (local.*path).IsEmpty());
        Require(local.Head.Version % 2 != 0 || path == Paths[3] || (local.*path).IsEmpty());
        CheckPath(local.*path, remote.*path);
    }
    return 0;
}
