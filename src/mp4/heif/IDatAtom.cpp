#include "mp4/heif/IDatAtom.h"

#include "mp4/model/CAtomWriter.h"
#include "mp4/model/Exception.h"

void IDatAtom::Write(CAtomWriter& writer)
{
    const int64_t start = writer.GetCount();
    CAtom::Write(writer);
    if (static_cast<uint64_t>(writer.GetCount() - start) != GetSize())
        ThrowException(L"IDatAtom writing error");
}

bool IDatAtom::ReadData(CAtomReader& reader, uint64_t offset, uint64_t size, std::vector<uint8_t>& bytes) const
{
    bytes.clear();
    const uint64_t count = GetDataSize();
    if (offset > count || size > count - offset)
        return false;
    if (const auto present = m_data.View(); !present.empty())
    {
        const auto part = present.subspan(offset, size);
        bytes.assign(part.begin(), part.end());
        return true;
    }
    bytes.resize(size);
    reader.Seek(m_data.GetStart() + static_cast<int64_t>(offset));
    reader.ReadBytes(bytes.data(), static_cast<int64_t>(size));
    return true;
}
