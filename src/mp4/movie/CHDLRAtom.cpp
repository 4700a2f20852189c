#include "mp4/movie/CHDLRAtom.h"

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

uint32_t CContainerAtom::GetHandlerType() const
{
    const auto* const handler = static_cast<const CHDLRAtom*>(GetFirstChild(FourCC("hdlr")));
    return handler == nullptr ? 0 : handler->GetHandlerType();
}
