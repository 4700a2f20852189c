#include "disc/recording/CTVRecordingStubFile.h"

#include "core/bytes/ZVByteCursor.h"
#include "disc/recording/CRecordingPath.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace
{
using StubCursor = ZVByteCursor<std::endian::native, ZVZeroPastEnd>;

using StubPath = ZVString CTVRecordingStubFile::*;

// The paths in the order of the file.
constexpr StubPath AllPaths[] = {&CTVRecordingStubFile::FirstPath, &CTVRecordingStubFile::SecondPath,
                                 &CTVRecordingStubFile::ThirdPath, &CTVRecordingStubFile::StreamPath};

constexpr int64_t HeaderSize = 40;
static_assert(sizeof(CTVRecordingStubFile::Header) == HeaderSize);

// How long to wait for a server, in milliseconds.
constexpr int32_t Timeout = 20'000;

constexpr uint32_t LastCharacter = 0x10ffff;

// Reads exactly that many bytes. False when there are fewer.
bool ReadExactly(IZVReader& reader, std::vector<uint8_t>& bytes, int64_t count)
{
    bytes.resize(static_cast<size_t>(count));
    return reader.Read(bytes.data(), count) == count;
}

// The text of a path string: whole 32-bit characters, of which zeros at the end are padding. Empty when another zero or a value
// that is no character is among them: no file has such a name, and what is left without them would be the name of another.
ZVString DecodePath(const std::vector<uint8_t>& bytes)
{
    constexpr int64_t CharacterSize = 4;
    const int64_t size = static_cast<int64_t>(bytes.size());
    StubCursor cursor(ZVByteSpan(bytes.data(), size));
    std::vector<uint32_t> characters(bytes.size() / CharacterSize);
    for (uint32_t& character : characters)
        character = cursor.Read<uint32_t>();
    while (!characters.empty() && characters.back() == 0)
        characters.pop_back();
    const auto isRefused = [](uint32_t character) { return character == 0 || character > LastCharacter; };
    ZVString path;
    if (std::none_of(characters.begin(), characters.end(), isRefused))
        path.SetFromUTF32(characters.data(), static_cast<int32_t>(characters.size()), false);
    return path;
}

bool ReadPath(IZVReader& reader, ZVString& path)
{
    std::vector<uint8_t> bytes;
    if (!ReadExactly(reader, bytes, sizeof(uint16_t)))
        return false;
    const uint16_t size = StubCursor(ZVByteSpan(bytes.data(), sizeof(uint16_t))).Read<uint16_t>();
    if (!ReadExactly(reader, bytes, size))
        return false;
    path = DecodePath(bytes);
    return true;
}
}

bool CTVRecordingStubFile::Read(const ZVFilename& path)
{
    return Read(path, ZVReaders::CreateGeneric(path.GetFilename()));
}

bool CTVRecordingStubFile::Read(const ZVFilename& path, ZVReaderPointer reader)
{
    m_reader = std::move(reader);
    for (const StubPath member : AllPaths)
        (this->*member).Empty();
    if (m_reader == nullptr)
        return false;
    m_reader->SetTimeout(Timeout);
    if (m_reader->Open() && ReadHeader() && ReadPaths(path))
        return true;
    // Half a stub names nothing.
    for (const StubPath member : AllPaths)
        (this->*member).Empty();
    return false;
}

bool CTVRecordingStubFile::ReadHeader()
{
    std::vector<uint8_t> bytes;
    if (!ReadExactly(*m_reader, bytes, HeaderSize))
        return false;
    StubCursor cursor(ZVByteSpan(bytes.data(), HeaderSize));
    memcpy(Head.Magic, cursor.ReadBytes(sizeof Head.Magic).data(), sizeof Head.Magic);
    Head.Version = cursor.Read<int32_t>();
    for (int64_t* const number : {&Head.MinimumTime, &Head.MinimumBytes, &Head.MaximumTime, &Head.MaximumBytes})
        *number = cursor.Read<int64_t>();
    return true;
}

bool CTVRecordingStubFile::ReadPaths(const ZVFilename& path)
{
    const bool hasAllPaths = Head.Version % 2 != 0;
    const CRecordingPath::Base base(path);
    for (const StubPath member : AllPaths)
    {
        if (!hasAllPaths && member != &CTVRecordingStubFile::StreamPath)
            continue;
        if (!ReadPath(*m_reader, this->*member))
            return false;
        this->*member = base.MakeAbsolute(this->*member);
    }
    return true;
}
