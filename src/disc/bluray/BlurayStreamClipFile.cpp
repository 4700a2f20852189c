#include "disc/bluray/BlurayStreamClipFile.h"

#include "core/containers/ZVBuffer.h"
#include "disc/bluray/BlurayFile.h"
#include "disc/bluray/BlurayStreamReader.h"
#include "system/log/ZVLogScope.h"

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Bluray, L"BlurayStreamClipFile::Scan"};

constexpr const wchar_t* FileTypes[] = {L"HDMV0100", L"HDMV0200", L"HDMV0240", L"HDMV0300"};

constexpr int64_t ProgramOffsetPosition = 12;
constexpr int64_t LengthSize = 4;

// In the block of programs, the count of the first program's streams and the first of their entries.
constexpr int64_t CountPosition = 8;
constexpr int64_t EntryPosition = 10;

// The bytes of the block of programs; empty when the block does not lie within the file as a whole.
ZVByteSpan FindPrograms(const ZVByteSpan& file)
{
    BlurayCursor cursor(file, ProgramOffsetPosition);
    // In a file that is too short for the offset the block is looked for at its start.
    const int64_t start = cursor.Read<int32_t>();
    cursor.SeekTo(start);
    const int64_t length = cursor.Read<uint32_t>();
    return file.Find(start + LengthSize, length) == nullptr ? ZVByteSpan() : file.Part(start + LengthSize, length);
}
}

void BlurayStreamClipFile::Scan()
{
    const ZVLogScope scope(Source, true);
    Streams.RemoveAll();
    Scanned = false;
    ZVBuffer bytes;
    if (BlurayFile::Load(Name, bytes))
        Scan(ZVByteSpan(bytes.GetData(), bytes.GetUsed()));
}

void BlurayStreamClipFile::Scan(const ZVByteSpan& file)
{
    Streams.RemoveAll();
    BlurayCursor cursor(file);
    FileType = BlurayStreamReader::ReadText(cursor, BlurayFile::TypeSize);
    Scanned = BlurayFile::IsOneOf(FileType, FileTypes);
    if (Scanned)
        ReadProgram(FindPrograms(file));
    else
        Source.Log("Clip info file %s has an unknown file type %s.", Name, FileType);
}

// Reads the streams of the first program. Each entry is found by the length of the one before it.
void BlurayStreamClipFile::ReadProgram(const ZVByteSpan& program)
{
    BlurayCursor cursor(program, CountPosition);
    const int32_t count = cursor.Read<uint8_t>();
    cursor.SeekTo(EntryPosition);
    for (int32_t index = 0; index < count; ++index)
    {
        const uint16_t pid = cursor.Read<uint16_t>();
        const int64_t lengthPosition = cursor.GetPosition();
        const int64_t length = cursor.Read<uint8_t>();
        const uint8_t codingType = cursor.Read<uint8_t>();
        std::unique_ptr<BlurayStream> stream =
            BlurayStreamReader::ReadStream(cursor, pid, codingType, BlurayStreamReader::VideoDetail::Codes);
        if (stream != nullptr)
        {
            Streams.SetAt(pid, stream.get());
            stream.release();
        }
        // A length that nothing follows does not count.
        const bool isLast = lengthPosition >= program.GetSize() - 1;
        cursor.SeekTo(lengthPosition + 1 + (isLast ? 0 : length));
    }
}
