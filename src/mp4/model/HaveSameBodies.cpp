#include "mp4/model/HaveSameBodies.h"

#include "mp4/model/CAtom.h"
#include "mp4/model/CAtomBytes.h"
#include "mp4/model/CFieldSize.h"
#include "mp4/model/CFieldWriter.h"

#include <string>

namespace
{
class MemorySink final : public IAtomSink
{
public:
    bool Write(const void* bytes, int64_t count) override
    {
        m_text.append(static_cast<const char*>(bytes), static_cast<size_t>(count));
        return true;
    }

    const std::string& GetText() const { return m_text; }

private:
    std::string m_text;
};

uint64_t GetBodySize(CAtom& atom)
{
    CFieldSize size;
    atom.GetClass().Fields(atom, size);
    return size.GetSize();
}

std::string GetBody(CAtom& atom)
{
    MemorySink sink;
    CAtomWriter writer(sink);
    CFieldWriter fields(writer);
    atom.GetClass().Fields(atom, fields);
    writer.Flush();
    return sink.GetText();
}
}

bool HaveSameBodies(CAtom& one, CAtom& other)
{
    const uint64_t size = GetBodySize(one);
    return one.GetType() == other.GetType() && size == GetBodySize(other) && size <= CAtomBytes::MaximumInMemory &&
           GetBody(one) == GetBody(other);
}
