#include "siblings/tools/filetypes/CFileTypes.h"

#include "system/filename/ZVFilename.h"

bool CFileTypes::IsFileTypeInClass(const wchar_t* fileType, int32_t fileClass)
{
    const CFileType* const type = CFileTypeTable::Find(fileType);
    return type != nullptr && type->Class == fileClass && fileClass != 0;
}

const IZVFileTypeRecord* CFileTypes::GetFileInfo(const wchar_t* file, int32_t, int32_t, int32_t, int32_t)
{
    static const CFileTypeRecord s_unknown(nullptr);
    const CFileType* const type = CFileTypeTable::Find(ZVFilename(file).GetExtension(true));
    if (type == nullptr)
        return &s_unknown;
    const ZVCriticalSectionLock lock(m_criticalSection);
    return &m_records.try_emplace(type, type).first->second;
}
