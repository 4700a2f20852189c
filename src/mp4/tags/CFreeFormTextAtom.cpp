#include "mp4/tags/CFreeFormTextAtom.h"

#include "mp4/model/GetText.h"

ZVString CFreeFormTextAtom::GetText() const
{
    const std::string_view body = m_body.Text();
    return body.size() > TextStart ? ::GetText(body.substr(TextStart)) : ZVString();
}
