#pragma once

#include "core/string/ZVString.h"

#include <functional>

// Gives a file new content in one step: at every moment, also if the process is killed or the disk is full, its name stands for
// all of the old content or all of the new one, and a new file is not there before it is whole.
//
// write gets the path that it is to write to, and returns whether it has. That path is beside the file and is renamed over it
// afterwards. The owner and the mode of an existing file stay, and a symbolic link keeps leading to it. A user's program that has
// the file open keeps the old content.
//
// Some files are written in place instead, and a failure may then leave a part of the new content. Each of them would lose
// something that its user has made on purpose if a new file took its place:
//
//   - what is no plain file, as a device, a pipe, and the links to open files in /dev and /proc
//   - a file with more names than one: the others would keep the old content
//   - a file with extended attributes, as an access control list; the labels of a security module do not count
//   - a file whose owner this process cannot give to another file
//   - a file in a folder that does not let this user make or replace files
//   - a file that this user may not write: write finds that out, and whether there is a way round it
//
// False with the reason in errno. write is called once, or a second time in place if the folder refused the rename.
namespace ZVWholeFile
{
bool Write(const ZVString& path, const std::function<bool(const ZVString& path)>& write);

// The same with content that is in memory. What was written in place and is not whole is deleted.
bool WriteBytes(const ZVString& path, const void* bytes, int64_t count);
}
