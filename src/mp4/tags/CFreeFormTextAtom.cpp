#include "mp4/tags/CFreeFormTextAtom.h"

#include "mp4/model/EncodeText.h"
#include "mp4/model/GetText.h"

#include <string>

std::unique_ptr<CFreeFormTextAtom> CFreeFormTextAtom::MakeNew(const CAtomClass& atomClass, std::string_view text)
{
    const uint32_t type = &atomClass == &MeanClass ? FourCC("mean") : FourCC("name");
    auto atom = std::make_unique<CFreeFormTextAtom>(atomClass, type);
    const std::string body = std::string(TextStart, '\0').append(text);
    atom->m_body = CAtomBytes(AsBytes(body));
    return atom;
}

ZVString CFreeFormTextAtom::GetText() const
{
    const std::string_view body = m_body.Text();
    return body.size() > TextStart ? ::GetText(body.substr(TextStart)) : ZVString();
}
