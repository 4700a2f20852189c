#include "mp4/heif/IDatAtom.h"

bool IDatAtom::ReadData(CAtomReader& reader, uint64_t offset, uint64_t size, std::vector<uint8_t>& bytes) const
{
    bytes.clear();
    const auto count = static_cast<uint64_t>(m_data.GetCount());
    if (offset > count || size > count - offset)
        return false;
    bytes.resize(size);
    reader.Seek(m_data.GetStart() + static_cast<int64_t>(offset));
    reader.ReadBytes(bytes.data(), static_cast<int64_t>(size));
    return true;
}
