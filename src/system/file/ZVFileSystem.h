#pragma once

#include "core/containers/ZVStringArray.h"
#include "core/string/ZVString.h"

#include <cstdint>

// The files and folders of the machine. Paths are given in any style and reach the system with forward slashes, in UTF-8. Folders
// are given back with a "/" at the end. Sizes are in bytes. A failure is a false result, an empty text or -1, and a log line
// under the function's own name; questions about what is not there are no failure and log nothing.
namespace ZVFileSystem
{
// --- Status --------------------------------------------------------------------------------------------------------------------

// SetFileAttributes: an ordinary file that can be read by all and written by its owner.
inline constexpr uint32_t AttributesNormal = 0x2000;
// GetFileAttributes: there is no such file.
inline constexpr uint32_t NoAttributes = UINT32_MAX;

// What the file system of a path holds in all, has free, and lets this user take. Each output may be null.
bool ZVStatFS(const ZVString& path, int64_t* totalSize, int64_t* freeSize, int64_t* availableSize);
bool Exists(const ZVString& path);
bool IsDirectory(const ZVString& path);
// -1 for a folder and for what is not there.
int64_t GetFileSize(const ZVString& path);
// Type and permission bits as the system has them.
uint32_t GetFileAttributes(const ZVString& path);
// Gives a file the permission bits, or with AttributesNormal those of a new file.
bool SetFileAttributes(const ZVString& path, uint32_t attributes);

// --- Folders -------------------------------------------------------------------------------------------------------------------

enum class UserFolder
{
    Documents,
    Music,
    Pictures,
    Videos,
};

// The user's home folder by the environment.
ZVString GetDirectoryHome();
// The folder of the product's data: what the tools library says, otherwise one below the home folder.
ZVString GetDirectoryAppData();
// Where the product's package installs it.
ZVString GetDirectoryInstall();
// A folder for temporary files, which exists unless it cannot be made. With useSetting the one in the settings, when there is
// such a folder; with addProductFolder a folder of the product in that one. A setting of which nothing can be made is removed.
// Otherwise the folder Temp of the product's data.
ZVString GetDirectoryTemp(bool useSetting = true, bool addProductFolder = true);
ZVString GetDirectoryWorking();
// What the user's desktop has set, otherwise a folder below the home folder.
ZVString GetDirectoryUserFolder(UserFolder folder);

// --- Change --------------------------------------------------------------------------------------------------------------------

// Makes a folder and all that it stands in. True when files can be written in it in the end. An empty path fails.
bool MakeDirectoryTree(const ZVString& path, bool silent = false);
// Whether a file can be made in the folder, tried out with one: access bits tell nothing about network mounts.
bool IsDirectoryWritable(const ZVString& path);
// True when there was a file and it is gone.
bool DeleteFile(const ZVString& path);
// Deletes what is in a folder, and without keepRoot the folder itself with all that is left in it. With a filter, the extension
// without its ".", only such files go and the folders below stay. A symbolic link is deleted and never followed; where the path
// itself is one, it is deleted, or with keepRoot refused. Names that begin with "." stay when the root is kept, but for those in
// folders that go.
//
// The root folder under any name, an empty path and a path with ".." anywhere in it delete nothing, also below the path, and are
// noted in the file /var/tmp/lddebug. False when anything that should go is still there.
bool DeleteDirectoryTree(const ZVString& path, bool keepRoot, const ZVString& filter = ZVString());
// Moves a file or folder; an existing file of the new name is replaced. Across devices the file stands under its new name only
// when it is whole. A folder is not replaced by a file.
bool MoveFile(const ZVString& from, const ZVString& to);
// Copies a file; an existing file of the new name is replaced when the copy is whole.
bool CopyFile(const ZVString& from, const ZVString& to);
// Replaces a file by another without ever losing a good copy; see ZVSafeReplace.
bool SafeReplaceFile(const ZVString& path, const ZVString& newPath, int64_t minimumSize, bool keepBackup = false);
// Deletes the oldest files of a folder, by modification time, and keeps the newest: at most keepCount, and as many as have at
// most keepBytes together. A negative limit is none. False when a file could not be deleted.
bool PruneOldFilesFromDirectory(const ZVString& directory, int32_t keepCount, int64_t keepBytes);

// --- Volumes -------------------------------------------------------------------------------------------------------------------

enum class DriveType
{
    Unknown,  // no such path, or a file system of which nothing is known
    Removable,
    Fixed,
    Network,
    Optical,
    Memory,
};

// The label and the size of the volume that a path is on, or that a device has. A volume without a label has an empty one, and
// one without a block device the size 0. False when the path is on no device. Each output may be null.
bool GetVolumeInformation(const ZVString& path, ZVString* label, int64_t* size);
// The folder that a device is mounted on, as the system prints it; empty when it is not mounted.
ZVString GetMountpointFromDevice(const ZVString& device);
DriveType GetDriveType(const ZVString& path);
// The folders that devices are mounted on.
void GetAvailableDrives(ZVStringArray& drives);

// --- Text and names ------------------------------------------------------------------------------------------------------------

// A size for people: "1023 bytes", "1.0 KB", "37 GB", by powers of 1024 with one decimal below 10.
ZVString FormatFileSize(int64_t size);
// A number with "kb", "gb", "tb" or "pb" behind it, in any case. Every other number counts bytes, one with "mb" too, as callers
// expect.
int64_t ParseFileSize(const ZVString& text);
// A path in the folder that no file has: the name as it stands, or with " - 1", " - 2" and so on. The name and the extension,
// which may be empty, get "_" for what a name may not hold. Without a folder it is in the folder for temporary files.
ZVString GetUniqueFilename(const ZVString& directory, const ZVString& base, const ZVString& extension);
// Changes what a path may not hold, control characters, to "_".
void ReplaceForbiddenCharacters(ZVString& path);
// The path that ZVString::SaveToFile writes to when it is given this one.
ZVString GetSavePath(const ZVString& path);
// The path of the running program.
ZVString GetProgramFilename();
ZVString GetComputerName();

// Replaces the array by the paths of a folder's files that have one of the extensions, or of all files without any, and gives
// their count.
int32_t FindFiles(const ZVString& folder, ZVStringArray& out, bool recursive, const ZVStringArray& extensions);
}
