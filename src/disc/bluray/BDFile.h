#pragma once

#include "core/string/ZVString.h"

// A file of a disc.
class BDFile
{
public:
    explicit BDFile(const ZVString& path) : Name(path) {}
    virtual ~BDFile() = default;
    BDFile(const BDFile&) = delete;
    BDFile& operator=(const BDFile&) = delete;

    // The full path, as the listing of its folder gave it.
    ZVString Name;
};

// A transport stream with both views of a 3D title: an .ssif file.
class BlurayInterleavedFile : public BDFile
{
public:
    using BDFile::BDFile;
};

// A transport stream: an .m2ts file. It is never read, only named.
class BlurayStreamFile : public BDFile
{
public:
    using BDFile::BDFile;

    // The interleaved file of the same title, or null. Not owned.
    BlurayInterleavedFile* InterleavedFile = nullptr;
};
