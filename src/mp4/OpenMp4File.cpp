#include "mp4/OpenMp4File.h"

#include "mp4/CMp4File.h"
#include "mp4/model/Exception.h"

#include <memory>
#include <new>

namespace
{
// Compared as it stands: the type in upper case is that of an ordinary file.
constexpr wchar_t QuickTimeType[] = L"mov";
}

bool OpenMp4File(CMp4File& mp4, const ZVFilename& file, const ZVString& fileType)
{
    if (fileType == QuickTimeType)
        mp4.AllowMissingFTYP();
    // Of a file that is not open the reading says so.
    mp4.Open(file);
    try
    {
        return mp4.ReadAtoms() && mp4.Verify();
    }
    catch (Exception* exception)
    {
        const std::unique_ptr<Exception> owner(exception);
        return false;
    }
    catch (const std::bad_alloc&)
    {
        return false;
    }
}
