#pragma once

#include "contracts/IZVVideoPlayer.h"
#include "contracts/ZVReleasePointer.h"
#include "siblings/player/CDelivery.h"
#include "siblings/player/CFilmFrames.h"
#include "siblings/player/CPlayerSource.h"

#include <cstdint>
#include <memory>
#include <optional>

// The player of the product, without a screen: what it plays goes to an output as fast as that takes it.
class CVideoPlayer final : public ZVReleasable<IZVVideoPlayer>
{
public:
    CVideoPlayer() = default;
    ~CVideoPlayer() override { Close(); }

    bool Open(const wchar_t* path, int32_t reserved) override;
    void SetVideoOutput(IZVVideoPlayerVideoOutput* output) override { m_output = output; }
    int64_t GetDuration() override { return m_facts.Duration; }
    void Seek(int64_t milliseconds) override { m_begin = milliseconds; }
    bool Play(int32_t reserved) override;
    void Stop() override { m_delivery.Stop(); }
    void Close() override;
    int32_t GetStreamIndex(int32_t kind) override;
    bool GetStreamInfo(int32_t index, ZVStreamInfo& info) override;
    void GetTag(const char* name, IZVDllString& value) override;
    int32_t GetChapterCount() override { return static_cast<int32_t>(m_facts.Chapters.size()); }
    void GetChapterName(int32_t index, IZVDllString& name) override;
    int64_t GetChapterTime(int32_t index) override;

private:
    bool OpenFilm(const wchar_t* path);
    bool PlayFilm();
    const CChapterFacts* FindChapter(int32_t index) const;

    std::optional<CPlayerSource> m_source;
    CFilmFacts m_facts;
    std::unique_ptr<IFrameSource> m_frames;
    IZVVideoPlayerVideoOutput* m_output = nullptr;
    int64_t m_begin = 0;
    CDelivery m_delivery;
};
