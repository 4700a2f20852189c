#pragma once

#include "core/containers/ZVStringMap.h"

#include <cstdint>

// What the playlists of a disc have in common while it is scanned: the names of its clips, of which there may be a million, and a
// budget of what may be built and read. A playlist of three kilobytes can ask for millions of clips: each of its items may have 254
// angles, and items may lie over each other.
class BlurayScan
{
public:
    // Real discs have some ten thousand of both.
    static constexpr int32_t MaximumClips = 1 << 20;
    static constexpr int32_t MaximumStreamEntries = 1 << 24;

    // Takes one clip, or one place of a clip in the map of an angle, from the budget. False when there is none left.
    bool TakeClip() { return m_clips < MaximumClips && ++m_clips > 0; }
    // The same for the entry of a stream.
    bool TakeStreamEntry() { return m_streamEntries < MaximumStreamEntries && ++m_streamEntries > 0; }

    // The same text in a block that all clips of that name share.
    const ZVString& Share(const ZVString& name)
    {
        ZVString& shared = m_names[name];
        if (shared.IsEmpty())
            shared = name;
        return shared;
    }

private:
    int32_t m_clips = 0;
    int32_t m_streamEntries = 0;
    ZVStringMap<ZVString, true, ZVString> m_names;
};
