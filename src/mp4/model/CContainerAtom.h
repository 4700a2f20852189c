#pragma once

#include "core/containers/ZVOwnedPtrArray.h"
#include "mp4/model/CAtom.h"
#include "mp4/model/CAtomBytes.h"
#include "mp4/model/CFieldVisitor.h"

#include <cstdint>
#include <unordered_map>
#include <utility>

// An atom with a list of further atoms, in the order of the file.
class CContainerAtom : public CAtom
{
public:
    using CAtom::CAtom;

    // Of a container that has nothing but its children.
    void Fields(CFieldVisitor& visitor) { visitor.Children(*this); }

    void ConvertToRelative() override;
    void ConvertToAbsolute() override;
    // Appends each child of the other container to the own one of its type. The own side of what only one program keeps to itself,
    // such as tags, stays as it is. Throws when there is a child that nobody knows how to append; the atoms may be changed then.
    void Append(CAtom& other) override;
    // What Append does with a child of a type that does not stand once on both sides, and with one that the own side lacks.
    // They throw in classes that do not know it.
    virtual void AppendMultiple(CAtom& child);
    virtual void AppendRoot(CAtom& child);
    virtual void AppendMissing(CAtom& child);

    // Reads children into the list while at least 8 of the remaining bytes are left, or as many as are required. Where no atom
    // begins, the rest is passed over, but kept to be written back. Returns how many bytes that took, by which the remaining ones
    // are fewer then. Throws when the required ones are not there.
    int64_t ReadChildren(CAtomReader& reader, int64_t& remaining, uint32_t required);

    const ZVOwnedPtrArray<CAtom>& GetChildren() const { return m_children; }
    // Takes an atom, which becomes the last child.
    void AddChild(std::unique_ptr<CAtom> child);
    // The same before the child that has the index now.
    void InsertChild(int32_t index, std::unique_ptr<CAtom> child);
    // Puts an atom in the place of a child, which is deleted.
    void ReplaceChild(CAtom& child, std::unique_ptr<CAtom> replacement);
    // Frees children of a type, or those of which a function says so, which is asked in their order. Takes n steps for n children.
    void RemoveChildren(uint32_t type);
    template <class Function>
    void RemoveChildrenIf(Function isGone)
    {
        int32_t kept = 0;
        for (int32_t index = 0; index < m_children.GetCount(); ++index)
            if (!isGone(*m_children[index]))
                std::swap(m_children[kept++], m_children[index]);
        while (m_children.GetCount() > kept)
            m_children.RemoveAt(m_children.GetCount() - 1);
    }
    // Those of all types, and what stood behind them.
    void RemoveAllChildren();

    // A child of a type; the index counts down through those before it. Null, with what is left of the index, if there is none.
    CAtom* GetChild(uint32_t type, int32_t& index) const;
    CAtom* GetFirstChild(uint32_t type) const;
    // The only child of a type; throws when there is none or more than one.
    CAtom& GetRequiredChild(uint32_t type) const;
    // What the first hdlr child says that the atoms beside it are about, or 0.
    uint32_t GetHandlerType() const;

    // What stood behind the children without being one.
    const CAtomBytes& GetPassedOver() const { return m_passedOver; }

protected:
    CContainerAtom(const CContainerAtom& other);

    // Whether the own atom of a type stays as it is when films are merged, and that of the other film is left out.
    static bool StaysOwn(uint32_t type);

private:
    std::unordered_map<uint32_t, int32_t> CountTypes() const;

    ZVOwnedPtrArray<CAtom> m_children;
    CAtomBytes m_passedOver;
};
