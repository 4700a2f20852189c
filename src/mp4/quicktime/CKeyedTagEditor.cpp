#include "mp4/quicktime/CKeyedTagEditor.h"

#include "mp4/quicktime/MetadataItemAtom.h"
#include "mp4/quicktime/MetadataItemKeysAtom.h"
#include "mp4/tags/CILSTAtom.h"
#include "mp4/tags/CTagDataAtom.h"

#include <utility>

namespace
{
std::unique_ptr<CAtom> MakeText(uint32_t type, const ZVString& value)
{
    auto item = std::make_unique<MetadataItemAtom>(MetadataItemAtom::Class, type);
    item->SetValue(value);
    return item;
}

std::unique_ptr<CAtom> MakePicture(uint32_t type, const ZVString& path)
{
    auto item = std::make_unique<MetadataItemAtom>(MetadataItemAtom::Class, type);
    item->SetPicture(path);
    return item;
}

// A number in the place of another keeps its type of data.
std::unique_ptr<CAtom> MakeNumber(const CAtom& old, const ZVString& value)
{
    const auto* const known = dynamic_cast<const MetadataItemAtom*>(&old);
    if (known == nullptr || known->IsPicture())
        return MakeText(old.GetType(), value);
    std::unique_ptr<MetadataItemAtom> item(static_cast<MetadataItemAtom*>(known->Clone(nullptr)));
    item->SetValue(value);
    return item;
}

// The new item of a key whose data is known to have a type.
std::unique_ptr<CAtom> MakeItem(const CAtom& old, uint32_t dataType, const ZVString& value)
{
    switch (dataType)
    {
    case CTagDataAtom::UTF8:
        return MakeText(old.GetType(), value);
    case CTagDataAtom::JPEG:
        return MakePicture(old.GetType(), value);
    default:
        return MakeNumber(old, value);
    }
}
}

CKeyedTagEditor::CKeyedTagEditor(CContainerAtom* meta)
{
    if (meta == nullptr || meta->GetHandlerType() != MetadataItemKeysAtom::MDTA)
        return;
    m_keys = static_cast<const MetadataItemKeysAtom*>(meta->GetFirstChild(FourCC("keys")));
    m_items = static_cast<CILSTAtom*>(meta->GetFirstChild(FourCC("ilst")));
}

CKeyedTagEditor::~CKeyedTagEditor() = default;

std::vector<CKeyedTagEditor::FoundItem> CKeyedTagEditor::FindItems(const ZVString& tag) const
{
    std::vector<FoundItem> items;
    if (m_keys == nullptr || m_items == nullptr)
        return items;
    for (int32_t index = 0; index < m_keys->GetKeyCount(); ++index)
    {
        uint32_t dataType = 0;
        if (!MetadataItemKeysAtom::GetTagOfKey(m_keys->GetNamespace(index), m_keys->GetKey(index), dataType).IsEqual(tag, false))
            continue;
        if (const CAtom* const item = m_items->GetFirstChild(static_cast<uint32_t>(index) + 1))
            items.push_back({item, dataType});
    }
    return items;
}

void CKeyedTagEditor::Prepare(const ZVString& tag, const ZVString& value)
{
    for (const auto& [item, dataType] : FindItems(tag))
        m_changes.push_back({item->GetType(), value.IsEmpty() ? nullptr : MakeItem(*item, dataType, value)});
}

void CKeyedTagEditor::Commit()
{
    for (Change& change : m_changes)
    {
        const int32_t index = m_items->GetChildren().Find(m_items->GetFirstChild(change.Type));
        m_items->RemoveChildren(change.Type);
        if (change.Item != nullptr)
            m_items->InsertChild(index, std::move(change.Item));
    }
    m_changes.clear();
}
