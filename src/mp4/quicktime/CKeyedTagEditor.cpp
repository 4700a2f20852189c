#include "mp4/quicktime/CKeyedTagEditor.h"

#include "mp4/quicktime/MetadataItemAtom.h"
#include "mp4/quicktime/MetadataItemKeysAtom.h"
#include "mp4/tags/CILSTAtom.h"
#include "mp4/tags/CTagDataAtom.h"

#include <set>
#include <unordered_map>
#include <utility>

namespace
{
// The new item of a key that is known to have data of a type. A number in the place of another has the type of that.
std::unique_ptr<CAtom> MakeItem(uint32_t type, uint32_t dataType, const MetadataItemAtom* old, const ZVString& value)
{
    auto item = std::make_unique<MetadataItemAtom>(MetadataItemAtom::Class, type);
    if (dataType == CTagDataAtom::JPEG)
        item->SetPicture(value);
    else if (dataType == CTagDataAtom::UTF8 || old == nullptr)
        item->SetValue(value, dataType);
    else
        item->SetValue(value, old->GetDataType());
    return item;
}
}

CKeyedTagEditor::CKeyedTagEditor(CContainerAtom* meta)
{
    if (meta == nullptr || meta->GetHandlerType() != MetadataItemKeysAtom::MDTA)
        return;
    m_keys = static_cast<MetadataItemKeysAtom*>(meta->GetFirstChild(FourCC("keys")));
    m_items = static_cast<CILSTAtom*>(meta->GetFirstChild(FourCC("ilst")));
}

CKeyedTagEditor::~CKeyedTagEditor() = default;

bool CKeyedTagEditor::Prepare(const ZVString& tag, const ZVString& value)
{
    if (m_keys == nullptr || m_items == nullptr)
        return false;
    std::unordered_map<uint32_t, const CAtom*> items;
    for (const CAtom* const child : m_items->GetChildren())
        items.try_emplace(child->GetType(), child);
    // Each of them has one key for a tag. Of a key that stands several times reading shows the last item.
    std::set<uint32_t> namespacesWithValue;
    bool isFound = false;
    for (int32_t index = m_keys->GetKeyCount() - 1; index >= 0; --index)
    {
        const auto item = items.find(static_cast<uint32_t>(index) + 1);
        if (item == items.end())
            continue;
        uint32_t dataType = 0;
        const uint32_t keyNamespace = m_keys->GetNamespace(index);
        if (!MetadataItemKeysAtom::GetTagOfKey(keyNamespace, m_keys->GetKey(index), dataType).IsEqual(tag, false))
            continue;
        const bool isLast = namespacesWithValue.insert(keyNamespace).second;
        const auto* const old = dynamic_cast<const MetadataItemAtom*>(item->second);
        m_changes[item->first] = value.IsEmpty() || !isLast ? nullptr : MakeItem(item->first, dataType, old, value);
        isFound = true;
    }
    return isFound;
}

void CKeyedTagEditor::Commit()
{
    std::set<const CAtom*> added;
    for (auto& [type, item] : m_changes)
        if (item != nullptr)
        {
            added.insert(item.get());
            m_items->ReplaceChild(*m_items->GetFirstChild(type), std::move(item));
        }
    if (!m_changes.empty())
        m_items->RemoveChildrenIf([&](const CAtom& child)
                                  { return m_changes.contains(child.GetType()) && !added.contains(&child); });
    m_changes.clear();
}

bool CKeyedTagEditor::Add(const ZVString& tag, const ZVString& value)
{
    uint32_t dataType = 0;
    const ZVString key = MetadataItemKeysAtom::GetKeyOfTag(MetadataItemKeysAtom::MDTA, tag, dataType);
    if (m_keys == nullptr || m_items == nullptr || key.IsEmpty() || value.IsEmpty())
        return false;
    const int32_t found = m_keys->FindKey(MetadataItemKeysAtom::MDTA, key, MissingKey::Leave);
    const uint32_t type = static_cast<uint32_t>(found < 0 ? m_keys->GetKeyCount() : found) + 1;
    // It may throw, and no key is added then.
    std::unique_ptr<CAtom> item = MakeItem(type, dataType, nullptr, value);
    if (m_keys->FindKey(MetadataItemKeysAtom::MDTA, key, MissingKey::Add) < 0)
        return false;
    // An item without a key means nothing until there is one.
    m_items->RemoveChildren(type);
    m_items->AddChild(std::move(item));
    return true;
}
