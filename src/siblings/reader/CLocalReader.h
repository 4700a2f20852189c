#pragma once

#include "core/string/ZVString.h"
#include "siblings/reader/CReader.h"
#include "system/library/ZVDescriptor.h"

#include <string>

struct ZVLogSource;

// Reads a file or a block device. Nothing is buffered: the bytes that the caller asks for go from the system straight into its
// memory. A folder is refused, and so is a pipe, a terminal or the like: it can neither tell its size nor go back, and waiting for
// its other side might never end.
class CLocalReader final : public CReader
{
public:
    // A path as the system takes it, or an address that begins with "file://". The path in an address is taken as it stands and,
    // when there is no such file, with its percent-escapes decoded.
    explicit CLocalReader(const ZVString& name);

    bool Open() override;
    int64_t Read(void* bytes, int64_t count) override;
    // Asks the system each time, because a recording grows while it is read. The size of a file that claims to be empty and yet
    // has bytes, as those in /proc do, is not known.
    int64_t GetSize() override;

private:
    bool Fail(const ZVLogSource& source, int error);
    bool OpenFile();
    bool OpenDescriptor();
    void Close();

    std::string m_path;
    bool m_isAddress = false;
    ZVDescriptor m_descriptor;
    bool m_hidesSize = false;
};
