#pragma once

#include "core/string/ZVString.h"
#include "siblings/reader/CReader.h"

#include <string>

// Reads a file or a block device. Nothing is buffered: what the caller asks for goes from the system into its memory. A folder is
// refused, and so is what has no bytes of its own, such as a pipe or a terminal: it could neither tell its size nor go back, and
// waiting for its other side might never end.
class CLocalReader final : public CReader
{
public:
    // A path as the system takes it, or an address that begins with "file://". Behind that stands the path as it is or, where
    // there is no such file, with percent-escapes.
    explicit CLocalReader(const ZVString& name);
    ~CLocalReader() override { Close(); }

    bool Open() override;
    int64_t Read(void* bytes, int64_t count) override;
    // Asks the system each time, as a recording grows while it is read. A file that tells 0 and yet has bytes, as the system's
    // own in /proc do, has no known size.
    int64_t GetSize() override;

private:
    bool Fail(const char* scope, int error);
    bool OpenFile();
    bool OpenDescriptor();
    void Close();

    std::string m_path;
    bool m_isAddress = false;
    int m_descriptor = -1;
    bool m_hidesSize = false;
};
