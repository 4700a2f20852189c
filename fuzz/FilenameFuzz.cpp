// Texts that become file names: the XMLFN form and its way back, the parts of a path, and names as bytes of the file system.

#include "system/filename/ZVFilename.h"
#include "system/filename/ZVNativePath.h"
#include "system/filename/ZVPathLayout.h"

#include <cstdint>
#include <cstdlib>
#include <string>

namespace
{
void Require(bool isTrue)
{
    if (!isTrue)
        abort();
}

// The one-string form gives back the same name. Without properties it is the path, which may look like something else.
void CheckSerialForm(const ZVFilename& name)
{
    if (name.GetProperties().GetCount() == 0)
        return;
    const ZVFilename copy(name.GetSerialized());
    Require(copy.GetPathOnly() == name.GetPathOnly());
    Require(copy.GetProperties().IsEqual(name.GetProperties()));
}

// The parts are the path again, but for the case of a drive letter, a "." at the end of a name and what stands behind the path of
// a URL.
void CheckParts(const ZVFilename& name)
{
    ZVString text = name.GetPathOnly();
    ZVFilename::MakeFileSystemPath(text);
    ZVString drive;
    ZVString directory;
    ZVString nameOnly;
    ZVString extension;
    name.SplitPath(&drive, &directory, &nameOnly, &extension);
    const ZVString path = drive + directory + nameOnly + (extension.IsEmpty() ? ZVString() : L"." + extension);
    Require(text.StartsWith(path, false) || path.IsEmpty());
    Require(ZVFilename::IsRemote(text) || text.GetLength() - path.GetLength() <= 1);
    Require(directory.IsEmpty() || directory.EndsWith(L'/'));
    Require(nameOnly.Find(L'/') == -1 && extension.Find(L'/') == -1 && extension.Find(L'.') == -1);
    Require(name.GetDirectory() == drive + directory);
}

// A name on a disk comes back from its text.
void CheckBytes(const std::string& bytes)
{
    const ZVString text = ZVNativePath::ToText(bytes.c_str());
    if (!text.StartsWith(L"(Install Drive):", false))
        Require(ZVNativePath(text).GetBytes() == bytes.c_str());
}

// Whatever is done to the name, it stays one that can be taken apart.
void CheckChanges(ZVFilename name)
{
    name.MapProtocolAliases();
    name.AddCopyNumber(false);
    name.AddCopyNumber(true);
    name.AddPathPart(name.GetParentFolderName(true));
    CheckParts(name);
    ZVString text = name.GetPathOnly();
    ZVFilename::ConvertPathStyle(text, ZVPathStyle::FileURL, ZVPathStyle::URLPath);
    ZVFilename::IsSpecialFileName(text, false, false, true, false);
    ZVFilename(text).GetSidecarName();
}
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size > INT32_MAX)
        return 0;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    CheckBytes(bytes);
    ZVString text;
    text.SetFromUTF8(bytes.c_str());
    const ZVFilename name(text);
    CheckSerialForm(name);
    CheckParts(name);
    CheckChanges(name);
    return 0;
}
