#include "mp4/tags/WriteCoverFile.h"

#include "mp4/model/CAtomBytes.h"
#include "mp4/model/CAtomWriter.h"
#include "mp4/model/Exception.h"
#include "system/file/ZVWholeFile.h"
#include "system/loader/CFileSink.h"
#include "system/log/ZVLog.h"

#include <memory>

namespace
{
constexpr ZVLogSource WriteSource {ZVLogCategory::General, L"WriteCoverFile"};

constexpr wchar_t TemporaryName[] = L"cover art";

class FileOutput final : public IAtomSink
{
public:
    explicit FileOutput(CFileSink& file) : m_file(file) {}

    bool Write(const void* bytes, int64_t count) override { return m_file.Write(bytes, count) == count; }

private:
    CFileSink& m_file;
};

// The bytes may have to be read from the film, which can fail too.
bool WriteBytes(const CAtomBytes& picture, CFileSink& file)
{
    try
    {
        FileOutput output(file);
        CAtomWriter writer(output);
        picture.Write(writer);
        writer.Flush();
        return file.Close(ZVLoadEnd::Whole);
    }
    catch (Exception* exception)
    {
        const std::unique_ptr<Exception> owner(exception);
        WriteSource.Log("The picture was not written to %s: %s", file.GetPath(), owner->Message);
        return false;
    }
}

bool Write(const CAtomBytes& picture, CFileSink& file)
{
    if (!WriteBytes(picture, file))
    {
        file.Discard();
        return false;
    }
    file.Keep();
    return true;
}
}

bool WriteCoverFile(const CAtomBytes& picture, const wchar_t* extension, ZVFilename& filename)
{
    if (!filename.IsEmpty())
        return ZVWholeFile::Write(filename.GetFilename(),
                                  [&picture](const ZVString& path)
                                  {
                                      CFileSink file(path);
                                      return Write(picture, file);
                                  });
    CFileSink file(ZVString(), TemporaryName, extension);
    if (!Write(picture, file))
        return false;
    filename = ZVFilename::FromPath(file.GetPath());
    return true;
}
