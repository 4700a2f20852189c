#pragma once

#include "contracts/IZVFileTypes.h"
#include "siblings/tools/filetypes/CFileTypeRecord.h"
#include "system/thread/ZVCriticalSection.h"

#include <map>

class CFileTypes final : public IZVFileTypes
{
public:
    bool IsFileTypeInClass(const wchar_t* fileType, int32_t fileClass) override;
    const IZVFileTypeRecord* GetFileInfo(const wchar_t* file, int32_t reserved1, int32_t reserved2, int32_t reserved3,
                                         int32_t reserved4) override;

private:
    ZVCriticalSection m_criticalSection;
    // The records handed out so far, which are never freed.
    std::map<const CFileType*, CFileTypeRecord> m_records;
};
