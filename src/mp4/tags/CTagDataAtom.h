#pragma once

#include "mp4/model/CAtom.h"
#include "mp4/model/CAtomBytes.h"
#include "mp4/model/CFieldVisitor.h"

#include <memory>
#include <span>

// data: one value of a tag, with the type of its bytes (QuickTime File Format, "Well-known types").
class CTagDataAtom : public CAtom
{
public:
    static const CAtomClass Class;

    // Types of data. Implicit is what the type of the tag alone decides.
    static constexpr uint32_t Implicit = 0;
    static constexpr uint32_t UTF8 = 1;
    static constexpr uint32_t JPEG = 13;
    static constexpr uint32_t PNG = 14;
    static constexpr uint32_t SignedNumber = 21;
    static constexpr uint32_t BMP = 27;

    using CAtom::CAtom;

    static std::unique_ptr<CTagDataAtom> MakeNew(uint32_t dataType, std::span<const uint8_t> value)
    {
        auto data = std::make_unique<CTagDataAtom>(Class, FourCC("data"));
        data->m_dataType = dataType;
        data->m_value = CAtomBytes(value);
        return data;
    }

    void Fields(CFieldVisitor& visitor)
    {
        if (!visitor.If(m_hasHeader, HeaderOfValue))
        {
            visitor.Rest("too short for a value", m_short);
            return;
        }
        visitor.Field("version", m_version);
        visitor.Field("data type", m_dataType, 3);
        visitor.Field("country", m_country);
        visitor.Field("language", m_language);
        visitor.Rest("value", m_value);
    }

    // What the bytes are: 1 UTF-8, 13 JPEG, 14 PNG, 21 a signed number and so on; 0 in one that is too short for it.
    uint32_t GetDataType() const { return m_dataType; }
    // The bytes, of which there may be none.
    const CAtomBytes& GetValue() const { return m_value; }

private:
    // Bytes before the value.
    static constexpr int64_t HeaderOfValue = 8;

    bool m_hasHeader = true;
    uint8_t m_version = 0;
    uint32_t m_dataType = 0;  // 24 bits
    uint16_t m_country = 0;
    uint16_t m_language = 0;
    CAtomBytes m_value;
    CAtomBytes m_short;
};

inline constexpr CAtomClass CTagDataAtom::Class = MakeAtomClass<CTagDataAtom>("CTagDataAtom");
