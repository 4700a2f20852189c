#pragma once

#include "contracts/IZVDllString.h"

#include <cstdint>

// What is known about one type of file. It belongs to the library and is never freed.
class IZVFileTypeRecord
{
public:
    // The value of a number field: "Playback Type". The default if there is no such field.
    virtual int32_t GetInt(const wchar_t* name, int32_t defaultValue) const = 0;
    // The value of a text field: "File Type", "Media Type" ("Video", "Audio", "Image", "Playlist", "Data"), "Content Type". Empty
    // if there is no such field.
    virtual void GetString(const wchar_t* name, IZVDllString& value) const = 0;

protected:
    ~IZVFileTypeRecord() = default;
};

// The file type registry of the tools library: what the extension says about a file. Extensions are compared ignoring case. May
// be called from any thread.
class IZVFileTypes
{
public:
    // The playback type of files that the player shows as video.
    static constexpr int32_t PlaybackVideo = 18;
    // The class of media files for whose tags the product has no reader.
    static constexpr int32_t ClassPlainMedia = 12;
    // The class of the MP4 family.
    static constexpr int32_t ClassMp4 = 13;

    // True if files of a type, given by the extension without the dot, belong to a class.
    virtual bool IsFileTypeInClass(const wchar_t* fileType, int32_t fileClass) = 0;
    // The record for the type of a file, found by the extension of its name; the file itself is not opened. Never null: an
    // unknown type has a record without fields. The reserved arguments are 1, 1, 0 and 0.
    virtual const IZVFileTypeRecord* GetFileInfo(const wchar_t* file, int32_t reserved1, int32_t reserved2, int32_t reserved3,
                                                 int32_t reserved4) = 0;

protected:
    ~IZVFileTypes() = default;
};
