#include "disc/bluray/BlurayPlaylist.h"

#include "core/containers/ZVBuffer.h"
#include "core/containers/ZVStringMap.h"
#include "disc/bluray/BlurayCodes.h"
#include "disc/bluray/BlurayFile.h"
#include "disc/bluray/BlurayPlaylistReader.h"
#include "system/log/ZVLogScope.h"

#include <algorithm>
#include <memory>
#include <set>
#include <utility>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Bluray, L"BlurayPlaylist::Scan"};
}

bool BlurayPlaylist::Scan(const BlurayStreamFileMap& streamFiles, const BlurayClipFileMap& clipFiles, ZVString& signature,
                          BlurayScan& scan)
{
    const ZVLogScope scope(Source, true);
    ZVBuffer bytes;
    // A file that cannot be read has no tag.
    BlurayFile::Load(Name, bytes);
    return BlurayPlaylistReader(*this, {streamFiles, clipFiles}, signature, scan)
        .Read(ZVByteSpan(bytes.GetData(), bytes.GetUsed()));
}

void BlurayPlaylist::AddClip(std::unique_ptr<BlurayStreamClip> clip)
{
    Clips.Add(clip.get());
    const BlurayStreamClip* const added = clip.release();
    if (added->AngleIndex == 0)
        m_totalLength += added->Length;
}

void BlurayPlaylist::Initialize(BlurayScan& scan)
{
    LoadStreamClips(scan);
    FindLoops();
    Initialized = true;
}

BlurayStreamClip* BlurayPlaylist::GetReferenceClip() const
{
    BlurayStreamClip* best = nullptr;
    for (BlurayStreamClip* const clip : Clips)
        // A clip with fewer streams that is longer wins too, and so does one that is shorter and has more; the last winner stands.
        if (best == nullptr || clip->StreamClipFile->Streams.GetCount() > best->StreamClipFile->Streams.GetCount() ||
            clip->Length > best->Length)
            best = clip;
    return best;
}

void BlurayPlaylist::LoadStreamClips(BlurayScan& scan)
{
    LoadAngleClips(scan);
    const BlurayStreamClip* const reference = GetReferenceClip();
    if (reference != nullptr)
        LoadClipFileStreams(reference->StreamClipFile->Streams);
}

// Each angle shows the main clips where it has none of its own.
void BlurayPlaylist::LoadAngleClips(BlurayScan& scan)
{
    AngleClips.RemoveAll();
    for (int32_t angle = 0; angle < AngleCount; ++angle)
    {
        auto clips = std::make_unique<AngleMap>();
        AngleClips.Add(clips.get());
        clips.release();
    }
    for (BlurayStreamClip* const clip : Clips)
    {
        const int32_t first = clip->AngleIndex == 0 ? 0 : clip->AngleIndex - 1;
        const int32_t last = clip->AngleIndex == 0 ? AngleCount : std::min(clip->AngleIndex, AngleCount);
        for (int32_t angle = first; angle < last; ++angle)
        {
            if (!scan.TakeClip())
            {
                Source.Log("The angles have too many clips, and the rest is left out: %s", Name);
                return;
            }
            AngleClips[angle]->SetAt(clip->RelativeTimeIn, clip);
        }
    }
}

void BlurayPlaylist::LoadClipFileStreams(const BlurayStreamMap& streams)
{
    for (const auto& entry : streams)
    {
        if (entry.Value == nullptr)
            return;
        if (PlaylistStreams.Contains(entry.Key))
            continue;
        auto copy = std::make_unique<BlurayStream>(*entry.Value);
        BlurayStream* const added = copy.get();
        PlaylistStreams.SetAt(entry.Key, added);
        copy.release();
        if (ZVArray<BlurayStream*>* const list = FindList(*added))
            list->Add(added);
    }
}

ZVArray<BlurayStream*>* BlurayPlaylist::FindList(const BlurayStream& stream)
{
    switch (BlurayCodes::FindStreamCoding(stream.CodingType).Kind)
    {
    case BlurayStreamKind::Video:
        return &VideoStreams;
    case BlurayStreamKind::Audio:
        return &AudioStreams;
    case BlurayStreamKind::Graphics:
        return &GraphicsStreams;
    case BlurayStreamKind::Text:
        return &TextStreams;
    case BlurayStreamKind::None:
        break;
    }
    return nullptr;
}

// A title that plays a clip twice from the same place is a loop: a menu, or a title that keeps copying programs from the film.
void BlurayPlaylist::FindLoops()
{
    ZVStringMap<ZVString, false, int32_t> numbers;  // of the names, in any case
    std::set<std::pair<int32_t, double>> starts;
    for (const BlurayStreamClip* const clip : Clips)
    {
        if (clip->AngleIndex != 0)
            continue;
        int32_t& number = numbers[clip->Name];
        if (number == 0)
            number = numbers.GetCount();
        HasLoops = !starts.emplace(number, clip->TimeIn).second;
        if (HasLoops)
            return;
    }
}
