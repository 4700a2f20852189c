#include "disc/bluray/BlurayPlaylistReader.h"

#include "disc/bluray/BlurayFile.h"
#include "system/file/ZVFileSystem.h"
#include "system/log/ZVLog.h"

#include <algorithm>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Bluray, L"BlurayPlaylist::Scan"};

constexpr const wchar_t* FileTypes[] = {L"MPLS0100", L"MPLS0200", L"MPLS0240", L"MPLS0300"};

// Times of a disc count ticks of 45 kHz.
constexpr double TicksPerSecond = 45000.0;

// A mark that is nearer to the end of the title begins no chapter.
constexpr double LastSeconds = 1.0;

constexpr int64_t NameSize = 5;      // of a clip: "12345"
constexpr int64_t CodecTagSize = 4;  // "M2TS"

constexpr uint8_t MultiAngleBit = 0x10;
constexpr uint8_t ChapterMark = 1;
constexpr int64_t MarkSize = 14;

// Where the PID of a stream stands in its entry, by the type of the entry. Entries of other types have none.
struct PIDPlace
{
    uint8_t EntryType;
    int64_t Offset;
};

constexpr PIDPlace PIDPlaces[] = {
    {1, 2},
    {2, 4},
    {3, 3},
    {4, 4},
};

double ReadTime(BlurayCursor& cursor)
{
    return static_cast<double>(cursor.Read<uint32_t>()) / TicksPerSecond;
}

ZVString ReadStreamFileName(BlurayCursor& cursor, const ZVString& clipName)
{
    return ZVFormat(L"%s.%s", clipName, BlurayStreamReader::ReadText(cursor, CodecTagSize));
}
}

BlurayPlaylistReader::BlurayPlaylistReader(BlurayPlaylist& playlist, const Files& files, ZVString& signature, BlurayScan& scan)
    : m_playlist(playlist), m_files(files), m_signature(signature), m_scan(scan)
{
}

bool BlurayPlaylistReader::Read(const ZVByteSpan& file)
{
    m_playlist.PlaylistStreams.RemoveAll();
    m_playlist.Clips.RemoveAll();
    m_playlist.m_totalLength = 0.0;
    // The length of a playlist without clips, in seconds.
    m_signature = L"0.000 ";

    BlurayCursor cursor(file);
    const ZVString type = BlurayStreamReader::ReadText(cursor, BlurayFile::TypeSize);
    if (!BlurayFile::IsOneOf(type, FileTypes))
    {
        Source.Log("Unrecognized playlist format %s, exiting scan.", type);
        return false;
    }
    const int64_t itemsPosition = cursor.Read<int32_t>();
    const int64_t marksPosition = cursor.Read<int32_t>();
    if (itemsPosition >= 0 && !ReadItems(file, itemsPosition))
        return false;
    ReadMarks(file, marksPosition);
    return true;
}

// Reads the play items. False when the playlist is refused because of one.
bool BlurayPlaylistReader::ReadItems(const ZVByteSpan& file, int64_t position)
{
    BlurayCursor cursor(file, position);
    cursor.Skip(6);  // a length and a reserved field
    const int32_t count = cursor.Read<uint16_t>();
    cursor.Skip(2);  // the count of sub paths
    ItemResult result = ItemResult::Read;
    for (int32_t index = 0; index < count && result == ItemResult::Read; ++index)
        result = ReadItem(cursor);
    return result != ItemResult::Refused;
}

BlurayPlaylistReader::ItemResult BlurayPlaylistReader::ReadItem(BlurayCursor& cursor)
{
    const int64_t start = cursor.GetPosition();
    const int64_t length = cursor.Read<int16_t>();
    const ZVString name = BlurayStreamReader::ReadText(cursor, NameSize);
    const ZVString streamFileName = ReadStreamFileName(cursor, name);
    BlurayStreamClipFile* const clipFile = m_files.Clips.Get(name + L".CLPI");
    if (clipFile == nullptr)
        return ItemResult::EndOfItems;
    m_signature += streamFileName;

    cursor.Skip(1);
    const bool isMultiAngle = (cursor.Read<uint8_t>() & MultiAngleBit) != 0;
    cursor.Skip(1);
    if (!m_scan.TakeClip())
        return EndItems(L"clips");
    auto clip = std::make_unique<BlurayStreamClip>();
    UseFiles(*clip, m_files.Streams.Get(streamFileName), clipFile);
    clip->Name = m_scan.Share(streamFileName);
    clip->TimeIn = ReadTime(cursor);
    clip->TimeOut = ReadTime(cursor);
    clip->Length = clip->TimeOut - clip->TimeIn;
    clip->RelativeTimeIn = m_playlist.GetTotalLength();
    clip->RelativeTimeOut = clip->RelativeTimeIn + clip->Length;
    BlurayStreamClip& mainClip = *clip;
    m_playlist.AddClip(std::move(clip));
    m_mainClips.Add(&mainClip);

    cursor.Skip(12);
    ItemResult result = isMultiAngle ? ReadAngles(cursor, mainClip) : ItemResult::Read;
    if (result == ItemResult::Read)
        result = ReadStreams(cursor);
    cursor.SeekTo(start + 2 + length);
    return result;
}

BlurayPlaylistReader::ItemResult BlurayPlaylistReader::ReadAngles(BlurayCursor& cursor, const BlurayStreamClip& mainClip)
{
    const int32_t count = cursor.Read<uint8_t>() - 1;
    m_playlist.AngleCount = std::max(m_playlist.AngleCount, count);
    cursor.Skip(1);
    for (int32_t angle = 1; angle <= count; ++angle)
    {
        const ZVString name = BlurayStreamReader::ReadText(cursor, NameSize);
        cursor.Skip(CodecTagSize + 1);
        const ZVString streamFileName = name + L".M2TS";
        BlurayStreamFile* const streamFile = m_files.Streams.Get(streamFileName);
        if (streamFile == nullptr)
            continue;
        m_signature += streamFileName;
        BlurayStreamClipFile* const clipFile = m_files.Clips.Get(name + L".CLPI");
        if (clipFile == nullptr)
            return ItemResult::Refused;
        if (!m_scan.TakeClip())
            return EndItems(L"clips");
        auto clip = std::make_unique<BlurayStreamClip>();
        UseFiles(*clip, streamFile, clipFile);
        clip->Name = streamFile->Name;
        clip->AngleIndex = angle;
        clip->TimeIn = mainClip.TimeIn;
        clip->TimeOut = mainClip.TimeOut;
        clip->RelativeTimeIn = mainClip.RelativeTimeIn;
        clip->RelativeTimeOut = mainClip.RelativeTimeOut;
        clip->Length = mainClip.Length;
        m_playlist.AddClip(std::move(clip));
    }
    return ItemResult::Read;
}

// The item's table of streams.
BlurayPlaylistReader::ItemResult BlurayPlaylistReader::ReadStreams(BlurayCursor& cursor)
{
    constexpr int64_t SkipAfterSecondaryAudio = 2;
    constexpr int64_t SkipAfterSecondaryVideo = 6;

    cursor.Skip(4);
    const int32_t videoCount = cursor.Read<uint8_t>();
    const int32_t audioCount = cursor.Read<uint8_t>();
    const int32_t graphicsCount = cursor.Read<uint8_t>();
    const int32_t interactiveCount = cursor.Read<uint8_t>();
    const int32_t secondaryAudioCount = cursor.Read<uint8_t>();
    const int32_t secondaryVideoCount = cursor.Read<uint8_t>();
    cursor.Skip(6);
    m_playlist.VideoStreamCount = std::max(m_playlist.VideoStreamCount, videoCount);
    m_playlist.AudioStreamCount = std::max(m_playlist.AudioStreamCount, audioCount);
    m_signature.AppendFormat(L"%d%d", m_playlist.VideoStreamCount, m_playlist.AudioStreamCount);

    // The first two are the largest counts of all items so far: in an item with fewer streams they read on into the entries that
    // follow. Signatures and languages depend on it, and it stays.
    const bool isRead = ReadStreamEntries(cursor, m_playlist.VideoStreamCount) &&
                        ReadStreamEntries(cursor, m_playlist.AudioStreamCount) && ReadStreamEntries(cursor, graphicsCount) &&
                        ReadStreamEntries(cursor, interactiveCount) &&
                        ReadStreamEntries(cursor, secondaryAudioCount, SkipAfterSecondaryAudio) &&
                        ReadStreamEntries(cursor, secondaryVideoCount, SkipAfterSecondaryVideo);
    return isRead ? ItemResult::Read : EndItems(L"entries of streams");
}

// False when the budget is spent.
bool BlurayPlaylistReader::ReadStreamEntries(BlurayCursor& cursor, int32_t count, int64_t skipAfterEach)
{
    for (int32_t index = 0; index < count; ++index)
    {
        if (!m_scan.TakeStreamEntry())
            return false;
        ReadStreamEntry(cursor);
        cursor.Skip(skipAfterEach);
    }
    return true;
}

// An entry has two parts, each with its length in front: where the stream is, and what it is.
void BlurayPlaylistReader::ReadStreamEntry(BlurayCursor& cursor)
{
    const int64_t start = cursor.GetPosition();
    const int64_t firstLength = cursor.Read<uint8_t>();
    const uint8_t entryType = cursor.Read<uint8_t>();
    uint16_t pid = 0;
    for (const PIDPlace& place : PIDPlaces)
    {
        if (place.EntryType != entryType)
            continue;
        cursor.SeekTo(start + place.Offset);
        pid = cursor.Read<uint16_t>();
    }
    const int64_t secondStart = start + 1 + firstLength;
    cursor.SeekTo(secondStart);
    const int64_t secondLength = cursor.Read<uint8_t>();
    const uint8_t codingType = cursor.Read<uint8_t>();
    std::unique_ptr<BlurayStream> stream =
        BlurayStreamReader::ReadStream(cursor, pid, codingType, BlurayStreamReader::VideoDetail::Decoded);
    if (stream != nullptr)
    {
        m_playlist.PlaylistStreams.SetAt(pid, stream.get());
        stream.release();
    }
    cursor.SeekTo(secondStart + 1 + secondLength);
}

void BlurayPlaylistReader::ReadMarks(const ZVByteSpan& file, int64_t position)
{
    BlurayCursor cursor(file, position);
    cursor.Skip(4);  // a length
    const int32_t count = cursor.Read<int16_t>();
    m_signature.AppendFormat(L"%d", count);
    for (int32_t index = 0; index < count; ++index)
        ReadMark(cursor);
}

void BlurayPlaylistReader::ReadMark(BlurayCursor& cursor)
{
    const int64_t start = cursor.GetPosition();
    cursor.Skip(1);
    const uint8_t type = cursor.Read<uint8_t>();
    const int32_t item = cursor.Read<uint16_t>();
    const double time = cursor.Read<int32_t>() / TicksPerSecond;
    cursor.SeekTo(start + MarkSize);
    if (type != ChapterMark)
        return;
    if (item >= m_mainClips.GetCount())
    {
        Source.Log("Null pStream pClip.");
        return;
    }
    BlurayStreamClip& clip = *m_mainClips[item];
    const double chapter = time - clip.TimeIn + clip.RelativeTimeIn;
    if (m_playlist.GetTotalLength() - chapter <= LastSeconds)
        return;
    clip.Chapters.Add(time);
    m_playlist.Chapters.Add(chapter);
}

BlurayPlaylistReader::ItemResult BlurayPlaylistReader::EndItems(const wchar_t* what) const
{
    Source.Log("The disc has too many %s, and the other items are left out: %s", what, m_playlist.Name);
    return ItemResult::EndOfItems;
}

void BlurayPlaylistReader::UseFiles(BlurayStreamClip& clip, BlurayStreamFile* streamFile, BlurayStreamClipFile* clipFile) const
{
    clip.StreamFile = streamFile;
    clip.StreamClipFile = clipFile;
    if (streamFile != nullptr && streamFile->InterleavedFile != nullptr)
        clip.FileSize = ZVFileSystem::GetFileSize(streamFile->InterleavedFile->Name);
}
