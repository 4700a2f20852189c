#pragma once

#include "core/string/ZVString.h"
#include "system/file/ZVFile.h"
#include "system/loader/IZVFileLoaderSink.h"

#include <cstdint>

// Writes a load into a file. The file is touched when the first byte comes, or when a whole load without a byte ends, so that a
// resource that does not open changes nothing.
class CFileSink final : public IZVFileLoaderSink
{
public:
    // The file of a path, which a symbolic link may lead to.
    explicit CFileSink(const ZVString& path);
    // A new file with a name from GetUniqueFilename, in which long parts are cut. If somebody else has made a file of that name
    // before the first byte comes, it gets another name.
    CFileSink(const ZVString& directory, const ZVString& base, const ZVString& extension);

    // Where the symbolic links of a path lead to, whether or not there is a file; the path itself if it is no link.
    static ZVString FollowLinks(const ZVString& path);

    // Gives the file these permission bits before its first byte.
    void SetMode(uint32_t mode) { m_mode = mode; }
    // The path of the file, which is settled when the sink is closed.
    const ZVString& GetPath() const { return m_path; }
    // The bytes that the file held at first; -1 when there was none.
    int64_t GetExistingSize() const { return m_existingSize; }
    // True when the file already held as many bytes as the resource has.
    bool IsComplete() const { return m_isComplete; }

    // The three ways to end, of which one is taken: Keep leaves what was written. Discard deletes the file if it was made here.
    // Erase does the same, and leaves a file that was there before without content, so that nobody takes it for a whole one.
    void Keep();
    void Discard();
    void Erase();

    // The bytes must come from the end of the file on, or from the start of the resource; then the file begins anew.
    bool CanResume(int64_t resourceSize, int64_t start) override;
    int64_t Write(const void* bytes, int64_t count) override;
    bool Close(ZVLoadEnd end) override;
    void OnFailure() override {}

private:
    // How many characters of a new name and of its extension stay. Addresses have long ones, and a file system takes 255 bytes for
    // both, of which one character needs up to four.
    static constexpr int32_t MaximumNamePart = 30;
    // How many names are tried for a new file before the load fails.
    static constexpr int32_t MaximumTries = 100;
    // The permission bits that a file has anyway.
    static constexpr uint32_t OwnMode = UINT32_MAX;

    bool OpenOnce();
    bool Open();

    ZVString m_path;
    int64_t m_existingSize;
    ZVFileCreation m_creation = ZVFileCreation::CreateAndTruncate;
    uint32_t m_mode = OwnMode;
    bool m_isComplete = false;
    bool m_wasOpened = false;
    ZVFile m_file;
};
