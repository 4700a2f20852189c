#pragma once

#include "core/containers/ZVPointerArray.h"
#include "mp4/model/CAtomClass.h"
#include "mp4/model/CAtomReader.h"
#include "mp4/model/FourCC.h"

#include <cstdint>
#include <iosfwd>
#include <memory>

class CAtomWriter;
class CMDATAtom;

using CMDATList = ZVPointerArray<CMDATAtom>;

// A box of an MP4, QuickTime or HEIF file (ISO/IEC 14496-12): a header with size and type, and a body, which may be a list of
// further atoms. Whoever gets a tree owns its root; each container owns its children.
//
// The bytes of an atom are stated once, by the function Fields of its class: what was read is written as it was. A failure while
// reading is thrown as a pointer to an Exception.
class CAtom
{
public:
    CAtom(const CAtomClass& atomClass, uint32_t type, const CAtom* parent = nullptr);
    virtual ~CAtom() = default;
    CAtom& operator=(const CAtom&) = delete;

    // Reads the next atom with all that is in it. Null at the end of the file, and where no atom begins that fits into as many
    // bytes as are available; the reader then stays where it is. The parent is null at the top level.
    static std::unique_ptr<CAtom> Read(CAtomReader& reader, CAtom* parent, uint64_t available);

    // A copy of the whole tree below the atom, for another parent.
    virtual CAtom* Clone(CAtom* parent) const;
    // Works out the size anew, as it will be when the atom is written.
    virtual void ComputeSize();
    // Writes header and body; the size must be right.
    virtual void Write(CAtomWriter& writer);
    // Shows the tree as text, indented by a count of blanks. The fields are shown too unless verbosity is 0.
    virtual void Dump(int32_t verbosity, int32_t indent, std::ostream& stream);
    // Checks what the atoms of a movie say of each other, and finds in which of the file's mdat atoms the chunks lie.
    virtual void Verify(const CMDATList& mdatList, bool checkOverlap);
    // Counts places in the file from the start of their mdat, and the reverse.
    virtual void ConvertToRelative() {}
    virtual void ConvertToAbsolute() {}
    // Adds what a like atom of a second file holds.
    virtual void Append(CAtom& other);

    const CAtomClass& GetClass() const { return *m_class; }
    // True for an atom whose body is not understood, whatever its type.
    bool IsOpaque() const { return m_isOpaque; }
    uint32_t GetType() const { return m_type; }
    ZVString GetTypeName() const { return GetTypeText(m_type); }
    // Where the header begins in the file.
    uint64_t GetPosition() const { return m_position; }
    // Bytes of header and body.
    uint64_t GetSize() const { return m_size; }
    void SetSize(uint64_t size) { m_size = size; }
    // Whether the header has the long form when it is written.
    bool IsLarge() const { return m_forceLarge || m_size > MaximumShortSize; }
    void SetForceLarge(bool force) { m_forceLarge = force; }
    // Bytes of the header when it is written.
    int32_t GetWrittenHeaderSize() const { return IsLarge() ? LargeHeaderSize : HeaderSize; }

    CAtom* GetParent() const { return m_parent; }
    void SetParent(CAtom* parent) { m_parent = parent; }
    // The parent, which must have a type; throws otherwise.
    CAtom& GetParent(uint32_t type) const;
    // The nearest of the atoms around this one that has a type, or null.
    CAtom* FindParent(uint32_t type) const;

    static constexpr int32_t HeaderSize = 8;
    static constexpr int32_t LargeHeaderSize = 16;
    // From the next size on the header has the long form.
    static constexpr uint64_t MaximumShortSize = 0x7ffffffe;

protected:
    CAtom(const CAtom&) = default;
    void SetOpaque() { m_isOpaque = true; }

private:
    friend class CAtomFactory;

    bool m_isOpaque = false;
    uint32_t m_type;
    uint64_t m_position = 0;
    uint64_t m_size = HeaderSize;
    CAtom* m_parent = nullptr;
    bool m_forceLarge = false;
    const CAtomClass* m_class;
};
