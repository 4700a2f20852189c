#include "siblings/tools/CApplicationInformation.h"

#include "siblings/tools/CDataFolder.h"
#include "system/library/ZVNativeBytes.h"

#include <cstdlib>

CApplicationInformation::CApplicationInformation(IZVApplicationInformation* given)
{
    if (given != nullptr)
    {
        m_productName = given->GetProductName();
        m_installDirectory = CDataFolder::WithClosingSlash(given->GetInstallDirectory());
        m_dataDirectory = CDataFolder::WithClosingSlash(given->GetDataDirectory());
    }
    const ZVString fromEnvironment = ZVNativeBytes::ToText(getenv("ZV_DATA_DIR"));
    if (!fromEnvironment.IsEmpty())
        m_dataDirectory = CDataFolder::WithClosingSlash(fromEnvironment);
}
