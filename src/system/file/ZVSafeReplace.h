#pragma once

#include "core/string/ZVString.h"
#include "system/file/ZVFileVersion.h"

#include <cstdint>
#include <memory>
#include <optional>

class ZVFileInfo;
class ZVTransferPlace;

// How a file is replaced.
struct ZVReplaceOptions
{
    enum class OldFile
    {
        Goes,
        StaysAsBackup,  // as a copy, see ZVSafeReplace::BackupEnd
    };

    enum class Attributes
    {
        OfNewFile,
        OfOldFile,  // owner, mode and extended attributes, see ZVCopyAttributes
    };

    // The new file must have that many bytes.
    int64_t MinimumSize = 0;
    OldFile Backup = OldFile::Goes;
    Attributes From = Attributes::OfNewFile;
    // The old file must still be this one.
    std::optional<ZVFileVersion> Expected = {};
};

// Replaces a file by a new one without ever losing a good copy. At every moment, wherever the process ends, the whole original or
// the whole new file stands under the file's name. Only on a file system where a file has one name there is a moment between two
// renames when the original stands under one temporary name beside it alone, where the next replacement of the same file finds it
// and puts it back first, as PutBack does. The new file keeps its old name until it has its new one, be it from another device.
//
// Processes that replace files of one folder do the renames one after the other; copies are made outside that lock.
//
// The steps are virtual so that tests can make each of them fail.
class ZVSafeReplace
{
public:
    // The second name of the original, for the moment in which the new file takes its place.
    static constexpr wchar_t OriginalEnd[] = L".zvoriginal";
    // The copy that is kept if a backup is asked for; an older one is replaced.
    static constexpr wchar_t BackupEnd[] = L".bak";

    ZVSafeReplace(const ZVString& path, const ZVString& newPath, const ZVReplaceOptions& options);
    virtual ~ZVSafeReplace();

    // Puts the new file in the place of the old one, or under its name if there is no old one. If anything fails the old file is as
    // it was, the new one is deleted, and the result is false. Nothing is deleted if both are the same file.
    bool Run();

    // Puts back the original of a replacement that was killed in the moment between two renames. For a path under which nothing is, or
    // a link that leads nowhere. False if there is no original to put back.
    static bool PutBack(const ZVString& path);

protected:
    virtual bool Bring(const ZVString& from, const ZVTransferPlace& place);
    virtual bool CopyAttributes(const ZVString& from, const ZVString& to);
    virtual bool Link(const ZVString& from, const ZVString& to);
    virtual bool Move(const ZVString& from, const ZVString& to);
    virtual bool Copy(const ZVString& from, const ZVString& to);
    virtual bool Delete(const ZVString& path);

private:
    bool SettleOriginal();
    bool PutBackOriginal();
    void ClearOriginal();
    bool CanReplace() const;
    bool BringBeside();
    bool Replace();
    bool PrepareNewFile();
    bool MayHaveChanged(const ZVFileInfo& before, const ZVFileInfo& now) const;
    bool Exchange();
    bool SetAside(bool& hasTwoNames);

    ZVString m_path;
    ZVString m_folder;
    ZVString m_original;
    ZVString m_newPath;
    ZVReplaceOptions m_options;
    // Where the new file is when the renames begin: its own path, or the place that it was brought to from another device.
    ZVString m_present;
    std::unique_ptr<ZVTransferPlace> m_place;
};
