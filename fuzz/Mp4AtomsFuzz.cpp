// The bytes of an MP4, QuickTime or HEIF file: its atoms are read, shown, written, and read and written again; then it is verified and
// asked for all that the library tells of such a file. Its tags are set, and must be told when what was written is read again. It is merged
// with a copy of itself.

#include "BrokenTree.h"
#include "Require.h"
#include "core/property/ZVPropertyMap.h"
#include "mp4/CMp4File.h"
#include "mp4/model/CAtomWriter.h"
#include "mp4/model/CContainerAtom.h"
#include "system/file/ZVFileSystem.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <memory>
#include <ostream>
#include <span>
#include <vector>

namespace
{
// A file in memory.
class MemoryFile final : public CGeneralReader
{
public:
    explicit MemoryFile(std::span<const uint8_t> bytes) : m_bytes(bytes) {}

    int64_t Read(void* bytes, int64_t count) override
    {
        const auto part = std::min(static_cast<size_t>(count), m_bytes.size() - m_position);
        if (part > 0)
            memcpy(bytes, m_bytes.data() + m_position, part);
        m_position += part;
        return static_cast<int64_t>(part);
    }
    int64_t Seek(int64_t position) override
    {
        m_position = std::min(static_cast<size_t>(position), m_bytes.size());
        return static_cast<int64_t>(m_position);
    }
    int64_t GetLength() override { return static_cast<int64_t>(m_bytes.size()); }
    bool IsOpen() override { return true; }

private:
    std::span<const uint8_t> m_bytes;
    size_t m_position = 0;
};

class MemorySink final : public IAtomSink
{
public:
    bool Write(const void* bytes, int64_t count) override
    {
        const auto* const first = static_cast<const uint8_t*>(bytes);
        Bytes.insert(Bytes.end(), first, first + count);
        return true;
    }

    std::vector<uint8_t> Bytes;
};

template <class Atoms>
std::vector<uint8_t> WriteAll(const Atoms& atoms)
{
    MemorySink sink;
    CAtomWriter writer(sink);
    for (const auto& atom : atoms)
    {
        atom->ComputeSize();
        const int64_t start = writer.GetCount();
        atom->Write(writer);
        Require(static_cast<uint64_t>(writer.GetCount() - start) == atom->GetSize());
    }
    writer.Flush();
    return std::move(sink.Bytes);
}

int64_t CountAtoms(const CAtom& atom, int32_t depth)
{
    Require(depth <= CAtomLimits::MaximumDepth);
    int64_t count = 1;
    if (const auto* const container = dynamic_cast<const CContainerAtom*>(&atom))
        for (const CAtom* const child : container->GetChildren())
        {
            Require(child->GetParent() == &atom);
            count += CountAtoms(*child, depth + 1);
        }
    return count;
}

// The atoms of a file up to what ended the reading.
class Tree
{
public:
    explicit Tree(std::span<const uint8_t> bytes) : m_file(bytes), m_reader(&m_file), m_size(static_cast<int64_t>(bytes.size()))
    {
        try
        {
            while (std::unique_ptr<CAtom> atom = CAtom::Read(m_reader, nullptr, UINT64_MAX))
                m_roots.push_back(std::move(atom));
        }
        catch (Exception* exception)
        {
            delete exception;
            IsWhole = false;
        }
        uint64_t end = 0;
        for (const std::unique_ptr<CAtom>& root : m_roots)
            end += root->GetSize();
        m_end = m_reader.GetPosition();
        m_isUncut = end == static_cast<uint64_t>(m_end);
        CheckCost();
    }

    // Whether all that the atoms say they have is there.
    bool IsUncut() const { return m_isUncut; }
    // How far the file was read.
    int64_t GetEnd() const { return m_end; }

    // Writes what was read.
    std::vector<uint8_t> Write() const { return WriteAll(m_roots); }

    void Dump() const
    {
        std::ostream nowhere(nullptr);
        for (const std::unique_ptr<CAtom>& root : m_roots)
            root->Dump(1, 0, nowhere);
    }

    bool IsWhole = true;

private:
    void CheckCost() const
    {
        const CAtomLimits& limits = m_reader.Limits;
        int64_t count = 0;
        for (const std::unique_ptr<CAtom>& root : m_roots)
            count += CountAtoms(*root, 1);
        Require(count <= limits.Atoms);
        Require(limits.Depth == 0);
        Require(limits.Atoms <= CAtomLimits::MaximumAtoms);
        Require(limits.RereadBytes <= 2 * m_size + CAtomLimits::RereadAllowance);
        // Each atom that was read has a header.
        Require(limits.Atoms * int64_t {CAtom::HeaderSize} <= m_size + limits.RereadBytes);
    }

    MemoryFile m_file;
    CAtomReader m_reader;
    int64_t m_size;
    int64_t m_end = 0;
    bool m_isUncut = false;
    std::vector<std::unique_ptr<CAtom>> m_roots;
};

bool IsOpened(CMp4File& file, std::span<const uint8_t> bytes)
{
    file.AllowMissingFTYP();
    Require(file.OpenStream(std::make_unique<MemoryFile>(bytes), ZVFilename::FromPath(L"film.mp4")));
    try
    {
        return file.ReadAtoms() && file.Verify();
    }
    catch (Exception* exception)
    {
        delete exception;
        return false;
    }
}

// As those do who show what a file is. Pictures go nowhere, but for that of a key, which is deleted.
void AskEverything(std::span<const uint8_t> bytes)
{
    CMp4File file;
    if (!IsOpened(file, bytes))
        return;
    ZVPropertyMap tags;
    file.GetTags(tags);
    if (tags.IsSet(L"Image File"))
        ZVFileSystem::DeleteFile(tags.GetString(L"Image File"));
    ZVPropertyMap information;
    Require(file.GetFileInfo(information) == information.IsSet(L"Media Type"));
    ZVFilename picture = ZVFilename::FromPath(L"/dev/null");
    file.GetImageFile(picture);
}

// A file fits behind itself if any does. One that does not stays as it was.
void MergeTwice(std::span<const uint8_t> bytes)
{
    CMp4File first, second;
    if (!IsOpened(first, bytes) || !IsOpened(second, bytes))
        return;
    const std::vector<uint8_t> before = WriteAll(first.GetRootAtoms());
    const bool isMerged = first.Append(second);
    Require(isMerged || !first.GetLastError().IsEmpty());
    const std::vector<uint8_t> after = WriteAll(first.GetRootAtoms());
    Require(isMerged ? after.size() >= before.size() : after == before);
    Require(isMerged == (second.GetRootAtoms().GetCount() == 0));
}

// Tags of all kinds, in the form in which they are told.
constexpr const wchar_t* SetTags[][2] = {
    {L"Name",        L"a"   },
    {L"Track #",     L"5/12"},
    {L"Genre",       L"Ska" },
    {L"BPM",         L"120" },
    {L"Compilation", L"1"   },
    {L"Copyright",   L"me"  },
    {L"Rating",      L"4"   },
    {L"My own",      L"x"   },
};

void SetSomeTags(std::span<const uint8_t> bytes)
{
    CMp4File file;
    if (!IsOpened(file, bytes))
        return;
    bool isSet[std::size(SetTags)];
    for (size_t index = 0; index < std::size(SetTags); ++index)
        isSet[index] = file.SetTag(SetTags[index][0], SetTags[index][1]);
    const std::vector<uint8_t> written = WriteAll(file.GetRootAtoms());
    CMp4File again;
    if (!IsOpened(again, written))
        return;
    ZVPropertyMap tags;
    again.GetTags(tags);
    if (tags.IsSet(L"Image File"))
        ZVFileSystem::DeleteFile(tags.GetString(L"Image File"));
    for (size_t index = 0; index < std::size(SetTags); ++index)
        Require(!isSet[index] || tags.GetString(SetTags[index][0]) == SetTags[index][1]);
}
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const Tree first({data, size});
    first.Dump();
    const std::vector<uint8_t> written = first.Write();
    Require(written.size() <= size);
    // An atom whose size has 64 bits without need is written shorter, and one that is cut says so.
    if (first.IsWhole && first.IsUncut() && static_cast<int64_t>(written.size()) == first.GetEnd())
        Require(std::equal(written.begin(), written.end(), data));
    // Followed by bytes that are no atom, since a short meta looks at more than it has.
    std::vector<uint8_t> file = written;
    file.resize(written.size() + CAtom::HeaderSize);
    const Tree second(file);
    Require(second.IsWhole);
    Require(second.Write() == written);
    AskEverything({data, size});
    MergeTwice({data, size});
    SetSomeTags({data, size});
    return 0;
}
