#include "mp4/movie/CCopyrightAtom.h"

#include "mp4/model/EncodeText.h"
#include "mp4/model/GetText.h"

std::unique_ptr<CCopyrightAtom> CCopyrightAtom::MakeNew(uint16_t language, const ZVString& text)
{
    auto copyright = std::make_unique<CCopyrightAtom>(Class, FourCC("cprt"));
    copyright->m_language = language;
    const std::string bytes = EncodeText(text.View()) + '\0';
    copyright->m_text = CAtomBytes(AsBytes(bytes));
    return copyright;
}

ZVString CCopyrightAtom::GetValue() const
{
    return GetText(m_text.Text());
}
