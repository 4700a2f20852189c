#include "mp4/movie/CHDLRAtom.h"

#include "mp4/model/Exception.h"

std::unique_ptr<CHDLRAtom> CHDLRAtom::MakeNew()
{
    auto handler = std::make_unique<CHDLRAtom>(Class, FourCC("hdlr"));
    handler->m_handlerType = FourCC("mdir");
    handler->m_manufacturer = CAtomBytes(std::vector<uint8_t>(ManufacturerSize));
    // Read either way, with a length in front of it or with a NUL behind it, the name is empty.
    handler->m_name = CAtomBytes(std::vector<uint8_t>(2));
    return handler;
}

void CHDLRAtom::Fields(CFieldVisitor& visitor)
{
    CFullAtom::Fields(visitor);
    if (!visitor.If(m_hasFixedFields, FixedSize))
    {
        visitor.Rest("too short for a handler", m_short);
        return;
    }
    visitor.Field("component type", m_componentType);
    visitor.Field("handler type", m_handlerType);
    visitor.Bytes("manufacturer, flags, mask", ManufacturerSize, m_manufacturer);
    visitor.Rest("name", m_name);
}

void CHDLRAtom::Append(CAtom& other)
{
    if (m_handlerType != static_cast<const CHDLRAtom&>(other).m_handlerType)
        ThrowException(L"HDLR: Handler types are different");
}

uint32_t CContainerAtom::GetHandlerType() const
{
    const auto* const handler = static_cast<const CHDLRAtom*>(GetFirstChild(FourCC("hdlr")));
    return handler == nullptr ? 0 : handler->GetHandlerType();
}
