#pragma once

#include "contracts/IZVDllString.h"
#include "core/string/ZVString.h"

// Lets another library read and set a ZVString. It refers to the string, which must live longer. No exception leaves it: when
// memory runs out, the text stays as it was and a buffer is null.
class ZVDllString final : public IZVDllString
{
public:
    explicit ZVDllString(ZVString& string) : m_string(&string) {}

    const wchar_t* GetString() override { return m_string->GetText(); }
    // The text may be a part of the string itself. Null is no text.
    void SetString(const wchar_t* text, int32_t length) override;
    void Empty() override { m_string->Empty(); }
    wchar_t* GetBuffer(int32_t length, bool keepContents) override;
    void ReleaseBuffer(int32_t length) override { m_string->ReleaseBuffer(length); }

private:
    ZVString* m_string;
};
