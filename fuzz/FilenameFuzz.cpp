// Texts that become file names: the XMLFN form and its way back, the parts of a path, and names as bytes of the file system.

#include "Require.h"
#include "system/filename/ZVFilename.h"
#include "system/filename/ZVNativePath.h"
#include "system/filename/ZVPathLayout.h"

#include <cstdint>
#include <string>

namespace
{
// The parts are the path again, but for the case of a drive letter, a "." at the end of a name and what follows the path of
// a URL.
void CheckParts(const ZVFilename& name)
{
    ZVString text = name.GetPathOnly();
    ZVFilename::MakeFileSystemPath(text);
    ZVString drive, directory, nameOnly, extension;
    name.SplitPath(&drive, &directory, &nameOnly, &extension);
    const ZVString path = drive + directory + nameOnly + (extension.IsEmpty() ? ZVString() : L"." + extension);
    Require(text.StartsWith(path, false) || path.IsEmpty());
    Require(ZVFilename::IsRemote(text) || text.GetLength() - path.GetLength() <= 1);
    Require((directory.IsEmpty() || directory.EndsWith(L'/')) && name.GetDirectory() == drive + directory);
}

}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    // A name on a disk comes back from its text.
    ZVString text = ZVNativePath::ToText(bytes.c_str());
    Require(text.StartsWith(L"(Install Drive):", false) || ZVNativePath(text).GetBytes() == bytes.c_str());

    text.SetFromUTF8(bytes.c_str());
    ZVFilename name(text);
    // The one-string form gives back the same name. Without properties it is the path, which may look like something else.
    const ZVFilename copy(name.GetSerialized());
    Require(name.GetProperties().GetCount() == 0 ||
            (copy.GetPathOnly() == name.GetPathOnly() && copy.GetProperties().IsEqual(name.GetProperties())));
    CheckParts(name);
    // Whatever is done to the name, it stays one that can be taken apart.
    name.MapProtocolAliases();
    name.AddCopyNumber(true);
    name.AddPathPart(name.GetParentFolderName(true));
    CheckParts(name);
    text = name.GetPathOnly();
    ZVFilename::ConvertPathStyle(text, ZVPathStyle::FileURL, ZVPathStyle::URLPath);
    ZVFilename(text).GetSidecarName();
    return 0;
}
