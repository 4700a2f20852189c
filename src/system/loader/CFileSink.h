#pragma once

#include "core/string/ZVString.h"
#include "system/file/ZVFile.h"
#include "system/loader/IZVFileLoaderSink.h"

#include <cstdint>

// Writes a load into a file. The file is touched when the first byte comes, or when a whole load without one ends, so that a
// resource that does not open changes nothing.
class CFileSink final : public IZVFileLoaderSink
{
public:
    explicit CFileSink(const ZVString& path);
    // A new file, for which GetUniqueFilename gives the name; what is long of it is cut. When somebody else has made one of that
    // name before the first byte comes, it gets another.
    CFileSink(const ZVString& directory, const ZVString& base, const ZVString& extension);

    // The file's path, which is settled when the sink is closed.
    const ZVString& GetPath() const { return m_path; }
    // The bytes that the file held at first, -1 when there was none.
    int64_t GetExistingSize() const { return m_existingSize; }
    // True when the file already held as many bytes as the resource has.
    bool IsComplete() const { return m_isComplete; }
    // Closes the file, and deletes it if it was made here.
    void Discard();
    // Closes what was written as far as it came.
    void Keep() { m_file.Close(); }

    // The bytes must come from the end of the file on, or from the start of the resource: then the file begins anew.
    bool CanResume(int64_t resourceSize, int64_t start) override;
    int64_t Write(const void* bytes, int64_t count) override;
    bool Close(bool isWhole) override;
    void OnFailure() override {}

private:
    // Characters of a new name and of its extension: addresses have long ones, and a file system takes 255 bytes for both, of
    // which a character needs up to four.
    static constexpr int32_t MaximumNamePart = 30;
    // Names that are tried for a new file before the load fails.
    static constexpr int32_t MaximumTries = 100;

    bool OpenOnce();
    bool Open();

    ZVString m_path;
    int64_t m_existingSize;
    ZVFileCreation m_creation = ZVFileCreation::CreateAndTruncate;
    bool m_isComplete = false;
    bool m_wasOpened = false;
    ZVFile m_file;
};
