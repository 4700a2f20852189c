// The bytes of a Blu-ray disc's playlist, on a disc that has the clips 00001 to 00003.

#include "Require.h"
#include "core/bytes/ZVByteSpan.h"
#include "disc/bluray/BlurayPlaylistReader.h"

#include <cstdint>

namespace
{
// The files that a playlist may name. Their clip information is empty.
struct Disc
{
    Disc()
    {
        for (const wchar_t* const name : {L"00001", L"00002", L"00003"})
        {
            Streams.SetAt(ZVFormat(L"%s.m2ts", name), new BlurayStreamFile(name));
            Clips.SetAt(ZVFormat(L"%s.clpi", name), new BlurayStreamClipFile(name));
        }
    }

    BlurayStreamFileMap Streams;
    BlurayClipFileMap Clips;
};
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const Disc s_disc;
    BlurayPlaylist playlist(L"00001.mpls");
    BlurayScan scan;
    ZVString signature;
    const bool isRead = BlurayPlaylistReader(playlist, {s_disc.Streams, s_disc.Clips}, signature, scan)
                            .Read(ZVByteSpan(data, static_cast<int64_t>(size)));
    playlist.Initialize(scan);
    Require(signature.StartsWith(L"0.000 "));
    Require(isRead || playlist.Chapters.GetCount() == 0);
    Require(playlist.AngleClips.GetCount() == playlist.AngleCount);
    double length = 0.0;
    for (const BlurayStreamClip* const clip : playlist.Clips)
    {
        Require(clip->StreamClipFile != nullptr);
        Require(clip->AngleIndex <= playlist.AngleCount);
        if (clip->AngleIndex == 0)
            length += clip->Length;
    }
    Require(length == playlist.GetTotalLength());
    Require((playlist.GetReferenceClip() == nullptr) == (playlist.Clips.GetCount() == 0));
    return 0;
}
