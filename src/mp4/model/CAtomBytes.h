#pragma once

#include <cstdint>
#include <memory>
#include <new>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

class CAtomReader;
class CAtomWriter;
enum class CRangeEnd;

// Leaves memory as it is that is filled afterwards.
template <class T>
struct CUninitialized : std::allocator<T>
{
    template <class U>
    struct rebind
    {
        using other = CUninitialized<U>;
    };

    template <class U>
    void construct(U* place)
    {
        new (static_cast<void*>(place)) U;
    }
    template <class U, class... Arguments>
    void construct(U* place, Arguments&&... arguments)
    {
        new (static_cast<void*>(place)) U(std::forward<Arguments>(arguments)...);
    }
};

// Bytes of an atom as they stand in the file. Few are in memory; of many there is only the place in the file, which must stay
// open for as long as they are needed.
class CAtomBytes
{
public:
    // No more are kept in memory.
    static constexpr int64_t MaximumInMemory = int64_t {16} << 20;

    CAtomBytes() = default;
    explicit CAtomBytes(std::span<const uint8_t> bytes) : m_bytes(bytes.begin(), bytes.end()) {}

    int64_t GetCount() const { return m_reader == nullptr ? static_cast<int64_t>(m_bytes.size()) : m_count; }
    // The bytes, or none if they are too many for memory.
    std::span<const uint8_t> View() const { return m_bytes; }
    // To change those in memory.
    uint8_t* GetData() { return m_bytes.data(); }
    // Drops those behind a count, or adds zeros up to it. Of bytes in memory.
    void Resize(int64_t count) { m_bytes.resize(static_cast<size_t>(count), uint8_t {0}); }
    std::string_view Text() const { return {reinterpret_cast<const char*>(m_bytes.data()), m_bytes.size()}; }

    // Takes the next bytes of a file, which ends the reading if they are not all there: into memory if they are few, or however
    // many they are, or as their place in the file.
    void Read(CAtomReader& reader, int64_t count);
    void ReadIntoMemory(CAtomReader& reader, int64_t count);
    void ReadRange(CAtomReader& reader, int64_t count, CRangeEnd end);
    void Write(CAtomWriter& writer) const;
    // A copy of some of the bytes, which must all be there, wherever they are.
    std::vector<uint8_t> GetPart(int64_t start, int64_t count) const;

    // The place in the file, of bytes that are not in memory.
    int64_t GetStart() const { return m_start; }
    // How many bytes there should be of a range that may be cut.
    int64_t GetDeclaredCount() const { return m_declaredCount; }

private:
    std::vector<uint8_t, CUninitialized<uint8_t>> m_bytes;
    CAtomReader* m_reader = nullptr;  // set when the bytes are in the file
    int64_t m_start = 0;
    int64_t m_count = 0;
    int64_t m_declaredCount = 0;
};
