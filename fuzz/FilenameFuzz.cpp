// Texts that become file names: the XMLFN form and its way back, the parts of a path, and names as bytes of the file system.

#include "Require.h"
#include "system/filename/ZVFilename.h"
#include "system/filename/ZVNativePath.h"
#include "system/filename/ZVPathLayout.h"

#include <cstdint>
#include <string>

namespace
{
// The parts are the path again, except for the case of a drive letter, a "." at the end of a name, and what follows the path of a
// URL.
void CheckParts(const ZVFilename& name)
{
    ZVString text = name.GetPathOnly();
    ZVFilename::MakeFileSystemPath(text);
    ZVString drive, directory, nameOnly, extension;
    name.SplitPath(&drive, &directory, &nameOnly, &extension);
    ZVString expectedDrive = text.Left(drive.GetLength());
    if (!ZVFilename::IsRemote(text) && text.GetAt(1) == L':')
        expectedDrive.MakeUpper();
    Require(drive == expectedDrive);
    const ZVString afterDrive = text.Mid(drive.GetLength());
    const ZVString rest = directory + nameOnly + (extension.IsEmpty() ? ZVString() : L"." + extension);
    Require(rest.IsEmpty() || afterDrive.StartsWith(rest));
    Require(ZVFilename::IsRemote(text) || afterDrive.GetLength() - rest.GetLength() <= 1);
    Require(directory.IsEmpty() || directory.EndsWith(L'/'));
    Require(name.GetDirectory() == drive + directory);
}

}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    // A name on a disk comes back from its text as the same bytes.
    ZVString text = ZVNativePath::ToText(bytes.c_str());
    Require(text.StartsWith(L"(Install Drive):", false) || ZVNativePath(text).GetBytes() == bytes.c_str());

    text.SetFromUTF8(bytes.c_str());
    ZVFilename name(text);
    // The one-string form gives back the same name. Without properties it is the path, which may look like something else.
    if (name.GetProperties().GetCount() > 0)
    {
        const ZVFilename copy(name.GetSerialized());
        Require(copy.GetPathOnly() == name.GetPathOnly());
        Require(copy.GetProperties().IsEqual(name.GetProperties()));
    }
    CheckParts(name);
    // Whatever is done to the name, it can still be taken apart.
    name.MapProtocolAliases();
    name.AddCopyNumber(true);
    name.AddPathPart(name.GetParentFolderName(true));
    CheckParts(name);
    text = name.GetPathOnly();
    ZVFilename::ConvertPathStyle(text, ZVPathStyle::FileURL, ZVPathStyle::URLPath);
    ZVFilename(text).GetSidecarName();
    return 0;
}
