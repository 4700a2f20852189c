#include "video/StandIns.h"

#include "system/filename/ZVNativePath.h"
#include "system/library/ZVImages.h"
#include "system/library/ZVPlayers.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <mutex>
#include <thread>

namespace
{
StandInFilm s_film;
std::mutex s_mutex;
std::vector<std::string> s_calls;

void Note(const std::string& call)
{
    const std::lock_guard lock(s_mutex);
    s_calls.push_back(call);
}

class Picture final : public ZVReleasable<IZVImage>
{
public:
    bool SetFromPixels(const void* pixels, int32_t width, int32_t height, int32_t stride, int32_t) override
    {
        const auto* const bytes = static_cast<const uint8_t*>(pixels);
        m_width = width;
        m_height = height;
        m_value = bytes[(height - 1) * stride + width * 4 - 1];
        return true;
    }
    bool CopyFrom(const IZVImage& other) override
    {
        const auto& picture = static_cast<const Picture&>(other);
        m_width = picture.m_width;
        m_height = picture.m_height;
        m_value = picture.m_value;
        return true;
    }
    bool IsBlank(int32_t) override { return m_value == 0; }
    bool Rotate(int32_t degrees, int32_t, int32_t) override
    {
        m_turned += degrees;
        return true;
    }
    bool SetAlphaFill(int32_t alpha, int32_t, int32_t) override
    {
        m_alpha = alpha;
        return true;
    }
    bool Save(const wchar_t* path) override
    {
        if (!ZVString(path).EndsWith(L".png"))
            return false;
        std::ofstream(ZVNativePath(path).GetBytes())
            << m_width << "x" << m_height << " of " << m_value << ", turned " << m_turned << ", alpha " << m_alpha;
        return true;
    }
    void SetKind(int32_t kind) override { m_kind = kind; }
    bool Load(const wchar_t* path, const ZVImageSize&, int32_t, int32_t, int32_t, int32_t, int32_t, int32_t, int32_t) override
    {
        std::string text;
        std::getline(std::ifstream(ZVNativePath(path).GetBytes()), text);
        return m_kind == KindCover && sscanf(text.c_str(), "picture %dx%d", &m_width, &m_height) == 2;
    }
    int32_t GetWidth() const override { return m_width; }
    int32_t GetHeight() const override { return m_height; }
    const void* GetPixels() const override { return nullptr; }
    int32_t GetStride() const override { return 0; }
    int32_t GetValue() const { return m_value; }

private:
    int32_t m_kind = 0;
    int32_t m_width = 0;
    int32_t m_height = 0;
    int32_t m_value = 0;
    int32_t m_turned = 0;
    int32_t m_alpha = 0;
};

class Player final : public ZVReleasable<IZVVideoPlayer>
{
public:
    ~Player() override { Note("Release"); }

    bool Open(const wchar_t* path, int32_t) override
    {
        Note("Open " + ZVNativePath(path).GetBytes());
        return s_film.Opens;
    }
    void SetVideoOutput(IZVVideoPlayerVideoOutput* output) override { m_output = output; }
    int64_t GetDuration() override { return s_film.Duration; }
    void Seek(int64_t milliseconds) override { Note("Seek " + std::to_string(milliseconds)); }
    bool Play(int32_t) override
    {
        Note("Play");
        if (!s_film.Plays || !m_output->IsFormatSupported(IZVVideoPlayerVideoOutput::FormatRGB32))
            return false;
        m_frames = m_attempt < s_film.Attempts.size() ? s_film.Attempts[m_attempt] : std::vector<uint8_t>();
        ++m_attempt;
        m_isStopped = false;
        m_thread = std::thread([this] { Deliver(); });
        return true;
    }
    void Stop() override
    {
        Note("Stop");
        m_isStopped = true;
        if (m_thread.joinable())
            m_thread.join();
    }
    void Close() override { Note("Close"); }
    int32_t GetStreamIndex(int32_t kind) override
    {
        return kind == ZVStreamInfo::KindVideo ? s_film.VideoStream : s_film.AudioStream;
    }
    bool GetStreamInfo(int32_t index, ZVStreamInfo& info) override
    {
        IZVDllString* const compression = info.Compression;
        info = {};
        info.Compression = compression;
        return index == s_film.VideoStream || index == s_film.AudioStream;
    }
    void GetTag(const char* name, IZVDllString& value) override
    {
        const auto found = s_film.Tags.find(name);
        value.SetString(found == s_film.Tags.end() ? L"" : found->second, -1);
    }
    int32_t GetChapterCount() override { return static_cast<int32_t>(s_film.Chapters.size()); }
    void GetChapterName(int32_t index, IZVDllString& name) override { name.SetString(GetChapter(index).first, -1); }
    int64_t GetChapterTime(int32_t index) override { return GetChapter(index).second; }

private:
    static const std::pair<const wchar_t*, int64_t>& GetChapter(int32_t index)
    {
        return s_film.Chapters.at(static_cast<size_t>(index));
    }
    void Deliver()
    {
        // Long enough for an output that does not wait to stop the player before the first frame.
        constexpr std::chrono::milliseconds Start(10);
        constexpr int32_t Stride = 16;
        do
            std::this_thread::sleep_for(Start);
        while (s_film.IsLate && !m_isStopped);
        for (const uint8_t value : m_frames)
        {
            if (m_isStopped && !s_film.IsLate)
                return;
            const std::vector<uint8_t> pixels(2 * Stride, value);
            m_output->OnVideoFrame({.Width = 3, .Height = 2, .Pixels = pixels.data(), .Stride = Stride});
        }
        if (s_film.Ends)
            m_output->OnEndOfStream();
    }

    IZVVideoPlayerVideoOutput* m_output = nullptr;
    std::vector<uint8_t> m_frames;
    size_t m_attempt = 0;
    std::atomic<bool> m_isStopped = false;
    std::thread m_thread;
};
}

void StandIns::Show(const StandInFilm& film)
{
    s_film = film;
    s_calls.clear();
}

std::vector<std::string> StandIns::GetCalls()
{
    const std::lock_guard lock(s_mutex);
    return s_calls;
}

int StandIns::GetValue(const IZVImage& image)
{
    return static_cast<const Picture&>(image).GetValue();
}

// The two doors to the libraries. The program is linked with these instead of the product's.

ZVVideoPlayerPointer ZVPlayers::CreateVideoPlayer()
{
    return ZVVideoPlayerPointer(s_film.HasPlayer ? new Player() : nullptr);
}

ZVImagePointer ZVImages::Create()
{
    return ZVImagePointer(new Picture());
}
