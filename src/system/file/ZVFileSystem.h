#pragma once

#include "core/containers/ZVStringArray.h"
#include "core/string/ZVString.h"

#include <cstdint>

// The files and folders of the machine. Paths come in any style and reach the system with forward slashes, in UTF-8. Folders are
// returned with a "/" at the end. Sizes are in bytes. A failure gives false, an empty text or -1, and a log line under the
// function's own name. To ask about a file that does not exist is no failure and logs nothing.
namespace ZVFileSystem
{
// --- Status --------------------------------------------------------------------------------------------------------------------

// For SetFileAttributes: an ordinary file that everyone can read and its owner can write.
inline constexpr uint32_t AttributesNormal = 0x2000;
// From GetFileAttributes: there is no such file.
inline constexpr uint32_t NoAttributes = UINT32_MAX;

// How much the file system of a path holds in all, has free, and lets this user take. Each output may be null.
bool ZVStatFS(const ZVString& path, int64_t* totalSize, int64_t* freeSize, int64_t* availableSize);
bool Exists(const ZVString& path);
bool IsDirectory(const ZVString& path);
// -1 for a folder and for a file that does not exist.
int64_t GetFileSize(const ZVString& path);
// Type and permission bits as the system has them.
uint32_t GetFileAttributes(const ZVString& path);
// Gives a file the permission bits; for AttributesNormal those of a new file.
bool SetFileAttributes(const ZVString& path, uint32_t attributes);

// --- Folders -------------------------------------------------------------------------------------------------------------------

enum class UserFolder
{
    Documents,
    Music,
    Pictures,
    Videos,
};

// The user's home folder according to the environment.
ZVString GetDirectoryHome();
// The folder of the product's data: the one that the tools library knows, otherwise one below the home folder.
ZVString GetDirectoryAppData();
// Where the product's package installs it.
ZVString GetDirectoryInstall();
// A folder for temporary files, which exists unless it cannot be made. With useSetting it is the one in the settings, if there is
// such a folder, and with addProductFolder the product's own folder within that. A setting with which this fails is removed. In
// all other cases it is the folder Temp of the product's data.
ZVString GetDirectoryTemp(bool useSetting = true, bool addProductFolder = true);
ZVString GetDirectoryWorking();
// The folder that the user's desktop has set, otherwise one below the home folder.
ZVString GetDirectoryUserFolder(UserFolder folder);

// --- Change --------------------------------------------------------------------------------------------------------------------

// Makes a folder and all folders that it is in. True if files can be written in it in the end. An empty path fails.
bool MakeDirectoryTree(const ZVString& path, bool silent = false);
// Whether a file can be made in the folder. It makes one to find out, since access bits tell nothing about network mounts.
bool IsDirectoryWritable(const ZVString& path);
// What the name of that file begins with. A process that is killed leaves it; nobody misses one that is deleted.
inline constexpr wchar_t WriteTestStart[] = L"Directory Write Test (";
// True if there was a file and it is gone.
bool DeleteFile(const ZVString& path);
// Deletes what is in a folder, and without keepRoot then the folder itself with everything that is left in it. A filter is an
// extension without its ".": only files with it are deleted, and the folders below stay. A symbolic link is deleted and never
// followed; if the path itself is one, it is deleted, or with keepRoot refused. With keepRoot, names that begin with "." stay,
// except in folders that are deleted.
//
// Nothing is deleted for the root folder under any name, an empty path, and a path with ".." anywhere in it, which may also be
// one below the given path. These are noted in the file /var/tmp/lddebug. False if anything is left that should be gone.
bool DeleteDirectoryTree(const ZVString& path, bool keepRoot, const ZVString& filter = ZVString());
// Moves a file or folder; an existing file of the new name is replaced, but not a folder by a file. Between devices too, whatever
// stands under the new name is whole, and wherever the process ends there is a whole file or folder under one of the two names.
bool MoveFile(const ZVString& from, const ZVString& to);
// Copies a file; an existing file of the new name is replaced once the copy is whole, as ZVWholeFile describes it.
bool CopyFile(const ZVString& from, const ZVString& to);
// Replaces a file by another without ever losing a good copy, as ZVSafeReplace describes it.
bool SafeReplaceFile(const ZVString& path, const ZVString& newPath, int64_t minimumSize, bool keepBackup = false);
// Keeps the newest files of a folder, by modification time, and deletes the others: at most keepCount files stay, and at most as
// many as have keepBytes together. A negative limit is no limit. False if a file could not be deleted.
bool PruneOldFilesFromDirectory(const ZVString& directory, int32_t keepCount, int64_t keepBytes);

// --- Volumes -------------------------------------------------------------------------------------------------------------------

enum class DriveType
{
    Unknown,  // no such path, or a kind of file system that is not known
    Removable,
    Fixed,
    Network,
    Optical,
    Memory,
};

// The label and the size of the volume that a path is on, or of a device. The label is empty if the volume has none, and the size
// is 0 if it has no block device. False if the path is on no device. Each output may be null.
bool GetVolumeInformation(const ZVString& path, ZVString* label, int64_t* size);
// The folder that a device is mounted on, as the system prints it; empty if it is not mounted.
ZVString GetMountpointFromDevice(const ZVString& device);
DriveType GetDriveType(const ZVString& path);
// The folders that devices are mounted on.
void GetAvailableDrives(ZVStringArray& drives);

// --- Text and names ------------------------------------------------------------------------------------------------------------

// A size for people: "1023 bytes", "1.0 KB", "37 GB", by powers of 1024 with one decimal below 10.
ZVString FormatFileSize(int64_t size);
// Reads a number that is followed by "kb", "gb", "tb" or "pb" in any case. Every other number counts bytes; callers expect that
// of "mb" too.
int64_t ParseFileSize(const ZVString& text);
// A path in the folder that no file has: the name as it stands, or with " - 1", " - 2" and so on. Characters that a name may not
// have become "_", in the extension too, which may be empty. Without a folder it is in the folder for temporary files.
ZVString GetUniqueFilename(const ZVString& directory, const ZVString& base, const ZVString& extension);
// Changes the characters that a path may not have, control characters, to "_".
void ReplaceForbiddenCharacters(ZVString& path);
// The path that ZVString::SaveToFile writes to when it is given this one.
ZVString GetSavePath(const ZVString& path);
// The path of the running program.
ZVString GetProgramFilename();
ZVString GetComputerName();

// Fills the array with the paths of a folder's files that have one of the extensions, or of all files if there are no extensions,
// and returns their count.
int32_t FindFiles(const ZVString& folder, ZVStringArray& out, bool recursive, const ZVStringArray& extensions);
}
