#pragma once

#include "contracts/IZVFileTypes.h"
#include "siblings/tools/filetypes/CFileTypeTable.h"

// A row of the table as other libraries read it. With a null type it is the record of an unknown type.
class CFileTypeRecord final : public IZVFileTypeRecord
{
public:
    explicit CFileTypeRecord(const CFileType* type) : m_type(type) {}

    int32_t GetInt(const wchar_t* name, int32_t defaultValue) const override;
    void GetString(const wchar_t* name, IZVDllString& value) const override;

private:
    const CFileType* m_type;
};
