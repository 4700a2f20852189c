#pragma once

#include "mp4/model/CAtom.h"
#include "mp4/model/CAtomWriter.h"
#include "mp4/model/CContainerAtom.h"
#include "mp4/model/CGeneralReader.h"
#include "mp4/model/Exception.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

// Atoms as bytes, for tests that build the files they read.
namespace AtomBytes
{
using Bytes = std::string;

inline Bytes Number(uint64_t value, int width)
{
    Bytes bytes;
    for (int shift = 8 * (width - 1); shift >= 0; shift -= 8)
        bytes += static_cast<char>(value >> shift);
    return bytes;
}

inline Bytes Zeros(size_t count)
{
    return Bytes(count, '\0');
}

// A type has four bytes; the copyright sign is "\xa9".
inline Bytes Atom(const Bytes& type, const Bytes& body = {})
{
    return Number(body.size() + 8, 4) + type + body;
}

inline Bytes LargeAtom(const Bytes& type, const Bytes& body = {})
{
    return Number(1, 4) + type + Number(body.size() + 16, 8) + body;
}

inline Bytes FullAtom(const Bytes& type, const Bytes& body = {}, int version = 0, uint32_t flags = 0)
{
    return Atom(type, Number(static_cast<uint64_t>(version), 1) + Number(flags, 3) + body);
}

// A file in memory.
class MemoryFile : public CGeneralReader
{
public:
    explicit MemoryFile(const Bytes& bytes) : m_bytes(bytes) {}

    int64_t Read(void* bytes, int64_t count) override
    {
        const size_t part = std::min(static_cast<size_t>(count), m_bytes.size() - m_position);
        memcpy(bytes, m_bytes.data() + m_position, part);
        m_position += part;
        return static_cast<int64_t>(part);
    }
    int64_t Seek(int64_t position) override
    {
        if (position >= 0 && position <= GetLength())
            m_position = static_cast<size_t>(position);
        return static_cast<int64_t>(m_position);
    }
    int64_t GetLength() override { return static_cast<int64_t>(m_bytes.size()); }
    bool IsOpen() override { return true; }

private:
    const Bytes m_bytes;
    size_t m_position = 0;
};

// Atoms as they are written, given as a list of pointers.
template <class Atoms>
Bytes WriteAll(const Atoms& atoms)
{
    struct Sink : IAtomSink
    {
        bool Write(const void* bytes, int64_t count) override
        {
            Text.append(static_cast<const char*>(bytes), static_cast<size_t>(count));
            return true;
        }

        Bytes Text;
    };
    Sink sink;
    CAtomWriter writer(sink);
    for (const auto& atom : atoms)
    {
        atom->ComputeSize();
        atom->Write(writer);
    }
    writer.Flush();
    return sink.Text;
}

// What a step throws, or nothing.
template <class Step>
ZVString GetMessage(const Step& step)
{
    try
    {
        step();
    }
    catch (Exception* exception)
    {
        const std::unique_ptr<Exception> owner(exception);
        return owner->Message;
    }
    return {};
}

// The atoms of a file, and what ended the reading.
struct Tree
{
    explicit Tree(const Bytes& bytes) : File(bytes), Reader(&File)
    {
        const auto read = [this]
        {
            while (std::unique_ptr<CAtom> atom = CAtom::Read(Reader, nullptr, UINT64_MAX))
                Roots.push_back(std::move(atom));
        };
        Message = GetMessage(read);
    }

    // An atom below the first root by the types on the way to it, such as {"mdia", "mdhd"}; null if it is not there or has
    // another class.
    template <class Atom = CAtom>
    Atom* Find(const std::vector<const char*>& path = {}) const
    {
        CAtom* atom = Roots.empty() ? nullptr : Roots.front().get();
        for (const char* const type : path)
        {
            const auto* const container = dynamic_cast<CContainerAtom*>(atom);
            char text[5] = {};
            memcpy(text, type, 4);
            atom = container == nullptr ? nullptr : container->GetFirstChild(FourCC(text));
        }
        return dynamic_cast<Atom*>(atom);
    }

    Bytes Write() const { return WriteAll(Roots); }

    MemoryFile File;
    CAtomReader Reader;
    std::vector<std::unique_ptr<CAtom>> Roots;
    ZVString Message;
};
}
