#pragma once

#include "core/string/ZVString.h"

#include <cstdint>
#include <memory>

class ZVTransferPlace;

// Replaces a file by a new one without ever losing a good copy. At every moment, wherever the process ends, the whole original or
// the whole new file stands under the file's name, or the original stands under one temporary name beside it, where the next
// replacement of the same file finds it and puts it back first. The new file keeps its old name until it has its new one, be it
// from another device.
//
// Processes that replace files of one folder do the renames one after the other; copies are made outside that lock.
//
// The steps are virtual so that tests can make each of them fail.
class ZVSafeReplace
{
public:
    // Where the original stands while the new file takes its place.
    static constexpr wchar_t OriginalEnd[] = L".zvoriginal";
    // The copy that is kept if a backup is asked for; an older one is replaced.
    static constexpr wchar_t BackupEnd[] = L".bak";

    ZVSafeReplace(const ZVString& path, const ZVString& newPath);
    virtual ~ZVSafeReplace();

    // Puts the new file, of at least minimumSize bytes, in the place of the old one, or under its name if there is no old one.
    // With keepBackup a copy of the old one is kept. If anything fails the old file is as it was, the new one is deleted, and the
    // result is false. Nothing is deleted if both are the same file.
    bool Run(int64_t minimumSize, bool keepBackup);

protected:
    virtual bool Bring(const ZVString& from, const ZVTransferPlace& place);
    virtual bool Move(const ZVString& from, const ZVString& to);
    virtual bool Copy(const ZVString& from, const ZVString& to);
    virtual bool Delete(const ZVString& path);

private:
    bool RestoreOriginal();
    bool CanReplace(int64_t minimumSize) const;
    bool BringBeside();
    bool Replace(bool keepBackup);
    bool Exchange();

    ZVString m_path;
    ZVString m_folder;
    ZVString m_original;
    ZVString m_newPath;
    // Where the new file is when the renames begin: its own path, or the place that it was brought to from another device.
    ZVString m_present;
    std::unique_ptr<ZVTransferPlace> m_place;
};
