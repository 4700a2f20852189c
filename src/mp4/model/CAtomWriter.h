#pragma once

#include <cstdint>

// What takes the bytes of a file that is written.
class IAtomSink
{
public:
    virtual ~IAtomSink() = default;
    // False when they could not be written.
    virtual bool Write(const void* bytes, int64_t count) = 0;
};

// Writes big-endian numbers and bytes, and counts them. A sink that fails ends the writing with a message.
class CAtomWriter
{
public:
    explicit CAtomWriter(IAtomSink& sink) : m_sink(sink) {}
    CAtomWriter(const CAtomWriter&) = delete;
    CAtomWriter& operator=(const CAtomWriter&) = delete;
    ~CAtomWriter() = default;

    int64_t GetCount() const { return m_count; }
    void WriteNumber(uint64_t value, int32_t width);
    void WriteBytes(const void* bytes, int64_t count);
    // Hands on what is still kept together. To be called at the end.
    void Flush();

private:
    static constexpr int32_t BufferSize = 0x10000;

    void Hand(const void* bytes, int64_t count);

    IAtomSink& m_sink;
    uint8_t m_buffer[BufferSize];
    int32_t m_used = 0;
    int64_t m_count = 0;
};
