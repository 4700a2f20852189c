#include "mp4/movie/CCopyrightAtom.h"

#include "mp4/model/GetText.h"

ZVString CCopyrightAtom::GetValue() const
{
    return GetText(m_text.Text());
}
