#include "mp4/quicktime/CKeyedMetadata.h"

#include "core/date/ZVDate.h"
#include "core/property/ZVPropertyMap.h"
#include "mp4/quicktime/FindISO6709Point.h"
#include "mp4/quicktime/MetadataItemAtom.h"
#include "mp4/quicktime/MetadataItemKeysAtom.h"
#include "mp4/tags/CILSTAtom.h"
#include "system/filename/ZVFilename.h"
#include "system/log/ZVLog.h"

#include <map>
#include <string>
#include <unordered_map>

namespace
{
constexpr ZVLogSource LogSource {ZVLogCategory::General, L"CKeyedMetadata"};

constexpr uint32_t MDTA = MetadataItemKeysAtom::MDTA;
constexpr uint32_t UDTA = MetadataItemKeysAtom::UDTA;

constexpr wchar_t CreationDateKey[] = L"com.apple.quicktime.creationdate";
constexpr wchar_t LocationKey[] = L"com.apple.quicktime.location.ISO6709";

constexpr wchar_t ImageTag[] = L"Image File";

// The first item of each key. The list has as many items as somebody wrote into it, and may have as many keys.
class ItemsByType
{
public:
    explicit ItemsByType(const CContainerAtom& list)
    {
        for (const CAtom* const child : list.GetChildren())
            m_items.try_emplace(child->GetType(), child);
    }

    // Null if there is none.
    const MetadataItemAtom* Find(int32_t keyIndex) const
    {
        const auto found = m_items.find(static_cast<uint32_t>(keyIndex) + 1);
        return found == m_items.end() ? nullptr : dynamic_cast<const MetadataItemAtom*>(found->second);
    }

private:
    std::unordered_map<uint32_t, const CAtom*> m_items;
};

// An item's key, with the tag that it stands for.
struct KnownKey
{
    ZVString Text;
    uint32_t Namespace;
    ZVString Tag;

    bool IsDate() const { return Text == CreationDateKey && Namespace == MDTA; }
    bool IsLocation() const { return Text == LocationKey && Namespace == MDTA; }
};

// Puts values into a map, and remembers what the camera is made of.
class TagStore
{
public:
    explicit TagStore(ZVPropertyMap& map) : m_map(map) {}

    void Store(const KnownKey& key, const MetadataItemAtom& item);
    void StoreCamera();
    void StorePictures();

private:
    ZVPropertyMap& m_map;
    ZVString m_make;
    ZVString m_model;
    // The last picture of each tag. There may be as many in the list as somebody wrote into it, and each is a file.
    std::map<std::wstring, const MetadataItemAtom*> m_pictures;
};

void TagStore::Store(const KnownKey& key, const MetadataItemAtom& item)
{
    if (item.IsPicture())
    {
        m_pictures[std::wstring(key.Tag.View())] = &item;
        return;
    }
    ZVString value;
    if (!item.GetValue(value))
        return;
    m_pictures.erase(std::wstring(key.Tag.View()));
    if (key.IsDate())
    {
        double date = 0.0;
        if (ZVDate::Parse(value, 0, date))
            m_map.SetDouble(key.Tag, date);
        return;
    }
    ISO6709Point point;
    if (key.IsLocation() && FindISO6709Point(value, point))
    {
        m_map.SetString(L"Latitude", point.Latitude);
        m_map.SetString(L"Longitude", point.Longitude);
        m_map.SetString(L"Altitude", point.Altitude);
    }
    if (key.Tag == L"Make")
        m_make = value;
    if (key.Tag == L"Model")
        m_model = value;
    m_map.SetString(key.Tag, value);
}

// Each in a temporary file of its own.
void TagStore::StorePictures()
{
    for (const auto& [tag, item] : m_pictures)
    {
        ZVString file;
        if (item->GetValue(file))
            m_map.SetString(tag.c_str(), file);
    }
}

void TagStore::StoreCamera()
{
    ZVString camera = m_make + L" " + m_model;
    camera.Trim(L' ');
    if (!camera.IsEmpty())
        m_map.SetString(L"Camera", camera);
}
}

CKeyedMetadata::CKeyedMetadata(const CContainerAtom& meta)
{
    if (meta.GetHandlerType() != MDTA)
        return;
    m_keys = static_cast<const MetadataItemKeysAtom*>(meta.GetFirstChild(FourCC("keys")));
    m_items = static_cast<const CILSTAtom*>(meta.GetFirstChild(FourCC("ilst")));
    LogSource.Log("Handler type is correct");
}

bool CKeyedMetadata::GetTags(ZVPropertyMap& map) const
{
    if (!HasItems())
        return false;
    const ItemsByType items(*m_items);
    TagStore tags(map);
    for (int32_t index = 0; index < m_keys->GetKeyCount(); ++index)
    {
        uint32_t dataType = 0;
        KnownKey key = {m_keys->GetKey(index), m_keys->GetNamespace(index), {}};
        key.Tag = MetadataItemKeysAtom::GetTagOfKey(key.Namespace, key.Text, dataType);
        // The item of a key that says nothing is not read: its picture would be left behind as a file that nobody knows of.
        const MetadataItemAtom* const item = key.Tag.IsEmpty() ? nullptr : items.Find(index);
        if (item != nullptr)
            tags.Store(key, *item);
    }
    tags.StorePictures();
    tags.StoreCamera();
    return true;
}

bool CKeyedMetadata::GetImageFile(ZVFilename& filename) const
{
    if (!HasItems())
        return false;
    uint32_t dataType = 0;
    const ZVString keys[] = {MetadataItemKeysAtom::GetKeyOfTag(MDTA, ImageTag, dataType),
                             MetadataItemKeysAtom::GetKeyOfTag(UDTA, ImageTag, dataType)};
    for (int32_t index = m_keys->GetKeyCount() - 1; index >= 0; --index)
    {
        const ZVString key = m_keys->GetKey(index);
        if (key != keys[0] && key != keys[1])
            continue;
        const auto* const item = dynamic_cast<const MetadataItemAtom*>(m_items->GetFirstChild(static_cast<uint32_t>(index) + 1));
        return item != nullptr && item->GetValue(filename);
    }
    return false;
}
