#pragma once

#include "contracts/IZVApplicationInformation.h"
#include "core/string/ZVString.h"

// What the process told of itself, with the environment on top: the variable ZV_DATA_DIR, when set and not empty, is the data
// directory.
class CApplicationInformation final : public IZVApplicationInformation
{
public:
    // Copies what is given. Null, and a null text, count as empty.
    explicit CApplicationInformation(IZVApplicationInformation* given);

    const wchar_t* GetProductName() override { return m_productName; }
    const wchar_t* GetInstallDirectory() override { return m_installDirectory; }
    const wchar_t* GetDataDirectory() override { return m_dataDirectory; }

private:
    ZVString m_productName;
    ZVString m_installDirectory;
    ZVString m_dataDirectory;
};
