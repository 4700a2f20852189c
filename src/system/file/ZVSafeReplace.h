#pragma once

#include "core/string/ZVString.h"

#include <cstdint>

// Replaces a file by a new one without ever losing a good copy. At every moment the whole original stands under its own name or
// under one temporary name beside it, wherever the process ends; the next replacement of the same file finds it there and puts it
// back first. A new file from another device is first brought beside the original. The folder is locked meanwhile, so that two
// processes that replace one file come one after the other.
//
// The steps are virtual so that each can be made to fail.
class ZVSafeReplace
{
public:
    // Where the original stands while the new file takes its place, and where a new file from another device waits.
    static constexpr wchar_t OriginalEnd[] = L".zvoriginal";
    static constexpr wchar_t NewEnd[] = L".zvnew";
    // The copy that is kept when a backup is asked for; an older one is replaced.
    static constexpr wchar_t BackupEnd[] = L".bak";

    ZVSafeReplace(const ZVString& path, const ZVString& newPath);
    virtual ~ZVSafeReplace() = default;

    // Puts the new file, of at least minimumSize bytes, in the place of the old one, or under its name when there is none; a copy
    // of the old one is kept when that is asked for. When anything fails the old file is as it was, the new one is deleted, and
    // the result is false. Only where both are one file nothing is deleted.
    bool Run(int64_t minimumSize, bool keepBackup);

protected:
    virtual bool Move(const ZVString& from, const ZVString& to);
    virtual bool Copy(const ZVString& from, const ZVString& to);
    virtual bool Delete(const ZVString& path);

private:
    bool IsOneFile() const;
    bool RestoreOriginal();
    bool Replace(int64_t minimumSize, bool keepBackup);
    bool BringBeside();
    bool Exchange();

    ZVString m_path;
    ZVString m_original;
    ZVString m_newPath;
    // Where the new file is now.
    ZVString m_present;
};
