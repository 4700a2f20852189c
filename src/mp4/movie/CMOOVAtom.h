#pragma once

#include "mp4/model/CFoundAtom.h"
#include "mp4/movie/CMVHDAtom.h"
#include "mp4/movie/CTRAKAtom.h"
#include "mp4/samples/CMDATIndex.h"

#include <cstdint>
#include <vector>

// moov: the movie, with all that is known of it (ISO/IEC 14496-12, 8.2.1). What its accessors tell was found by Verify.
class CMOOVAtom : public CContainerAtom
{
public:
    static const CAtomClass Class;

    using CContainerAtom::CContainerAtom;
    // A copy must be verified anew.
    CMOOVAtom(const CMOOVAtom& other) : CContainerAtom(other) {}

    // Verifies all tracks and sorts them by their kinds. With checkOverlap it throws when samples of sound and picture lie over
    // each other in the file.
    void Verify(const CMDATList& mdatList, bool checkOverlap) override;

    // Appends the tracks of another movie, and adds up the durations. Both must be verified; this one must be verified again
    // afterwards. The chunks of both must be counted from the start of the same data already.
    void Append(CAtom& other) override;
    // Finds the first own track of the kind.
    void AppendMultiple(CAtom& child) override;
    // The timescales of the movies that two atoms are in.
    static CTimescales FindTimescales(const CAtom& own, const CAtom& other);

    // Units a second, and the length in such units.
    uint32_t GetTimescale() const;
    uint64_t GetDuration() const;
    // 'v' with a video track, else 'a' with an audio track, else 'o'.
    char GetMediaType() const;

    // Of the first video track; 0 without one.
    int32_t GetWidth() const;
    int32_t GetHeight() const;
    // The number of its codec; see CCodecNumber.h.
    int32_t GetVideoObjectType() const;
    double GetFramesPerSecond() const;

    // Of the first audio track; 0 without one.
    int32_t GetChannels() const;
    int32_t GetBitDepth() const;
    int32_t GetSampleRate() const;
    int32_t GetAudioObjectType() const;
    // Bits a second.
    uint32_t GetAudioAverageBitRate() const;

    // In the order of the file. The tracks belong to the list of children.
    const std::vector<CTRAKAtom*>& GetTracks() const { return m_tracks; }
    const std::vector<CTRAKAtom*>& GetAudioTracks() const { return m_audioTracks; }
    const std::vector<CTRAKAtom*>& GetVideoTracks() const { return m_videoTracks; }

    // Of the list that the movie was verified with last.
    const CMDATIndex& GetMDATIndex() const { return m_mdatIndex; }

private:
    void CheckOverlap() const;
    const class CSTSDAtom* FindDescriptions(const std::vector<CTRAKAtom*>& tracks) const;

    CMDATIndex m_mdatIndex;
    CFoundAtom<CMVHDAtom> m_header;
    std::vector<CTRAKAtom*> m_tracks;
    std::vector<CTRAKAtom*> m_audioTracks;
    std::vector<CTRAKAtom*> m_videoTracks;
};

inline constexpr CAtomClass CMOOVAtom::Class = MakeAtomClass<CMOOVAtom>("CMOOVAtom");
