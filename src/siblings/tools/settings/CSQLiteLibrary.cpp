#include "siblings/tools/settings/CSQLiteLibrary.h"

#include "system/library/ZVRunTimeLibrary.h"

bool CSQLiteLibrary::Load(const char* fileName)
{
    if (m_isLoaded)
        return true;
    ZVRunTimeLibrary library(fileName);
    m_isLoaded = library.BindAll<CSQLiteFunctions>(*this);
    return m_isLoaded;
}
