// Shows developers what the worker reads of an MP4, QuickTime or HEIF file: the tree of its atoms with their fields, as text.
//
// Usage: zvmp4dump FILE    Exit status 0 when the whole file was read, 1 in every other case.

#include "mp4/model/CAtom.h"
#include "mp4/model/Exception.h"
#include "mp4/programs/CDumpedFile.h"
#include "system/filename/ZVNativePath.h"

#include <cerrno>
#include <cstring>
#include <iostream>

namespace
{
constexpr int32_t WithFields = 1;

// Each atom is shown once it is read, so that those before a fault are seen.
void ShowAtoms(CAtomReader& reader)
{
    while (const std::unique_ptr<CAtom> atom = CAtom::Read(reader, nullptr, UINT64_MAX))
        atom->Dump(WithFields, 0, std::cout);
    if (reader.GetAvailable() > 0)
        std::cout << "No atom: " << reader.GetAvailable() << " bytes at " << reader.GetPosition() << '\n';
}

int Fail(const char* path, const ZVString& message)
{
    const std::unique_ptr<char[]> text(message.GetUTF8());
    std::cout.flush();
    std::cerr << "zvmp4dump: " << path << ": " << text.get() << '\n';
    return 1;
}
}

int main(int argc, char** argv)
{
    if (argc != 2)
    {
        std::cerr << "usage: zvmp4dump FILE\n";
        return 1;
    }
    CDumpedFile file(ZVFilename::FromPath(ZVNativePath::ToText(argv[1])));
    if (!file.IsOpen())
        return Fail(argv[1], ZVString::FromUTF8(strerror(errno)));
    CAtomReader reader(&file);
    try
    {
        ShowAtoms(reader);
    }
    catch (Exception* exception)
    {
        const std::unique_ptr<Exception> owner(exception);
        return Fail(argv[1], owner->Message);
    }
    return std::cout.flush() ? 0 : Fail(argv[1], L"the text could not be written");
}
