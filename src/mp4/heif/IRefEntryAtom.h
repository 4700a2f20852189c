#pragma once

#include "mp4/model/CAtom.h"
#include "mp4/model/CAtomBytes.h"
#include "mp4/model/CAtomTable.h"
#include "mp4/model/CFieldVisitor.h"

#include <cstdint>
#include <memory>

// An item that refers to others, such as cdsc, dimg or thmb: the type says what they are to it. One that ends too early has as many
// as are there.
class IRefEntryAtom : public CAtom
{
public:
    static const CAtomClass Class;

    // The parent is the iref, whose version must be read already.
    IRefEntryAtom(const CAtomClass& atomClass, uint32_t type, const CAtom* parent);

    // A new reference, for an iref that it is not in yet.
    static std::unique_ptr<IRefEntryAtom> MakeNew(uint32_t type, const CAtom& parent, uint32_t fromItemID);

    void Fields(CFieldVisitor& visitor);

    uint32_t GetFromItemID() const { return m_fromItemID; }
    // What the file says of the number of items that are referred to.
    uint16_t GetReferenceCount() const { return m_count; }
    uint32_t GetToItemCount() const { return m_toItemIDs.GetCount(); }
    uint32_t GetToItemID(uint32_t index) const;
    // Whether it holds as many numbers as it says, and nothing else.
    bool IsWhole() const;
    // Adds an item that is referred to, unless it is one already. False if there is no room for more, or if the number is too
    // large for the width of numbers.
    bool AddToItem(uint32_t itemID);
    // Gives the numbers 32 bits. Only of one that is whole.
    void WidenIDs();

private:
    int32_t GetIDWidth() const { return m_toItemIDs.GetRowWidth(); }
    void SetToItemID(uint32_t index, uint32_t itemID);

    bool m_hasFromItem = true;
    uint32_t m_fromItemID = 0;
    bool m_hasCount = true;
    uint16_t m_count = 0;
    CAtomTable m_toItemIDs;
    bool m_isLonger = false;
    CAtomBytes m_end;  // fewer bytes than a number of an item has
};

inline constexpr CAtomClass IRefEntryAtom::Class = MakeAtomClass<IRefEntryAtom>("IRefEntryAtom");
