#pragma once

#include "mp4/model/CGeneralReader.h"
#include "system/file/ZVFile.h"

// A file on the disk whose atoms are shown.
class CDumpedFile final : public CGeneralReader
{
public:
    explicit CDumpedFile(const ZVFilename& name) { m_file.Open(name, ZVFileAccess::Read); }

    int64_t Read(void* bytes, int64_t count) override
    {
        int64_t read = 0;
        m_file.Read(bytes, count, read);
        return read;
    }
    int64_t Seek(int64_t position) override { return m_file.Seek(position, ZVSeekOrigin::Start); }
    int64_t GetLength() override { return m_file.GetLength(); }
    bool IsOpen() override { return m_file.IsOpen(); }

private:
    ZVFile m_file;
};
