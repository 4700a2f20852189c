#include "mp4/quicktime/CKeyedTagEditor.h"

#include "mp4/quicktime/MetadataItemAtom.h"
#include "mp4/quicktime/MetadataItemKeysAtom.h"
#include "mp4/tags/CILSTAtom.h"

#include <utility>

namespace
{
constexpr wchar_t ImageTag[] = L"Image File";

std::unique_ptr<CAtom> MakeItem(const CAtom& old, const ZVString& tag, const ZVString& value)
{
    // One that is no item of metadata is shown as nothing, and gives way like one whose data is of no known type.
    const auto* const known = dynamic_cast<const MetadataItemAtom*>(&old);
    const bool isPicture = tag.IsEqual(ImageTag, false);
    std::unique_ptr<MetadataItemAtom> item(known == nullptr || isPicture
                                               ? new MetadataItemAtom(MetadataItemAtom::Class, old.GetType())
                                               : static_cast<MetadataItemAtom*>(known->Clone(nullptr)));
    if (isPicture)
        item->SetPicture(value);
    else
        item->SetValue(value);
    return item;
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

std::vector<CAtom*> CKeyedTagEditor::FindItems(const ZVString& tag) const
{
    std::vector<CAtom*> items;
    if (m_keys == nullptr || m_items == nullptr)
        return items;
    for (int32_t index = 0; index < m_keys->GetKeyCount(); ++index)
    {
        uint32_t dataType = 0;
        if (!MetadataItemKeysAtom::GetTagOfKey(m_keys->GetNamespace(index), m_keys->GetKey(index), dataType).IsEqual(tag, false))
            continue;
        if (CAtom* const item = m_items->GetFirstChild(static_cast<uint32_t>(index) + 1))
            items.push_back(item);
    }
    return items;
}

void CKeyedTagEditor::Prepare(const ZVString& tag, const ZVString& value)
{
    for (const CAtom* const item : FindItems(tag))
        m_changes.push_back({item->GetType(), value.IsEmpty() ? nullptr : MakeItem(*item, tag, value)});
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
