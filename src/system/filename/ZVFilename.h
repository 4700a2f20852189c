#pragma once

#include "core/property/ZVPropertyMap.h"
#include "core/string/ZVString.h"
#include "system/filename/ZVPathStyle.h"

#include <cstdint>

// Anything that can be opened: a local path, a URL, or a text that only looks like a path, with properties that travel with it.
// With properties it is handed over as one string in its XMLFN form, and every text that enters is tested for that form first, so
// whoever passes strings can pass a full description. Nothing here looks at the file itself but GetHLSIndexName when it is asked
// to.
//
// Both "/" and "\" separate the steps of a path. Texts are compared with case folded where that is said.
class ZVFilename
{
public:
    // Names of properties that are met in the system.
    static constexpr wchar_t PostExtensionDataProperty[] = L"PostExtensionData";
    static constexpr wchar_t FileTypeProperty[] = L"FileType";

    // What GetSchemeCode gives.
    static constexpr int32_t NoScheme = 0;
    static constexpr int32_t FTPScheme = 1;
    static constexpr int32_t HTTPScheme = 3;
    static constexpr int32_t HTTPSScheme = 4;

    ZVFilename() = default;
    // Takes a text and parses it. A path that the system gave is no such text: it is made with FromPath.
    explicit ZVFilename(const ZVString& text) { SetFilename(text); }
    // The name of a path as it stands, for what the system listed or our own code put together: its file may be called
    // "film.mkv;1" or begin like an XMLFN form, and is found under that name.
    static ZVFilename FromPath(const ZVString& path);

    // --- The path as a whole ---------------------------------------------------------------------------------------------------

    // Takes a text and parses it; the properties that were set are dropped unless clearProperties is false.
    void SetFilename(const ZVString& text, bool clearProperties = true);
    // The path, without properties.
    const ZVString& GetFilename() const { return m_path; }
    const ZVString& GetPathOnly() const { return m_path; }
    bool IsEmpty() const { return m_path.IsEmpty(); }
    // The style in which the path came, Native unless told otherwise. It is carried along; no operation here depends on it.
    ZVPathStyle GetPathStyle() const { return m_style; }
    void SetPathStyle(ZVPathStyle style) { m_style = style; }

    // Reads the path as the text that entered. An XMLFN form gives its item "Filename" as the path and its other items as
    // properties; a form of another version than "1.0" leaves the path empty. The name of a local file with an extension of 1 to
    // 5 characters and a ";" behind it is cut there, and what stood behind the ";" becomes the property PostExtensionData.
    void Parse(bool clearProperties);
    // The one-string form: the path as it stands when there is no property, otherwise XMLFN, from which the same path and
    // properties are read.
    ZVString GetSerialized() const;

    // --- Properties ------------------------------------------------------------------------------------------------------------

    ZVPropertyMap& GetProperties() { return m_properties; }
    const ZVPropertyMap& GetProperties() const { return m_properties; }
    ZVString GetProperty(const wchar_t* key, const ZVString& defaultValue = ZVString()) const;
    int32_t GetIntegerProperty(const wchar_t* key, int32_t defaultValue) const;
    void SetProperty(const wchar_t* key, const ZVString& value) { m_properties.SetString(key, value); }
    // What stood behind the ";" of the name, empty without one.
    ZVString GetPostExtensionData() const { return GetProperty(PostExtensionDataProperty); }

    // --- Parts -----------------------------------------------------------------------------------------------------------------

    // Splits the path, in file system style, into its parts; each output may be null. Put together, with a "." before an
    // extension, they are the path again, except that a drive letter becomes upper case and a "." that ends a name is dropped.
    //
    //   drive      "C:"; "//server" of a network name; "/dev/sr0" of a device path; "http://host" of a URL; otherwise empty
    //   directory  the rest up to the last separator, which stays
    //   name       without the extension; a "." with which a name begins belongs to it, and so do the steps "." and ".."
    //   extension  without the "."; of a URL without query and fragment, which are in no part
    void SplitPath(ZVString* drive, ZVString* directory, ZVString* name, ZVString* extension) const;
    static void SplitPath(const ZVString& path, ZVString* drive, ZVString* directory, ZVString* name, ZVString* extension);

    ZVString GetDrive() const;
    // The folder that the name is in, with its separator at the end: the drive and the directory, or without the drive the
    // directory alone.
    ZVString GetDirectory(bool includeDrive = true) const;
    ZVString GetNameOnly() const;
    // The extension; with lookAtFileType first the property FileType, when it is not empty.
    ZVString GetExtension(bool lookAtFileType = false) const;
    // The name, with "." and the extension when there is one, and when asked for ";" and the PostExtensionData when there is any.
    ZVString GetNameAndExtension(bool withPostExtensionData = false) const;
    // The name of the last folder of the directory, with its separator when that is asked for; empty in a root folder.
    ZVString GetParentFolderName(bool keepSlash = false) const;

    // The path of the file beside it that keeps what the product knows about it.
    ZVString GetSidecarName() const;
    // The path of its HLS index. With checkExists empty when there is no such local file.
    ZVString GetHLSIndexName(bool checkExists) const;

    // --- The file behind the name ----------------------------------------------------------------------------------------------

    // Its size in bytes, -1 for a folder and for what is not there. A server is asked about a remote name, and may not know.
    int64_t GetFileSize() const;
    // Whether there is such a file or folder, or a server has such a resource.
    bool Exists() const;

    // --- Change ----------------------------------------------------------------------------------------------------------------

    // Appends a step with exactly one "/" between; an empty path becomes the text as it stands.
    void AddPathPart(const ZVString& text);
    // Raises the number in parentheses at the end of the name, or gives it the number 1: "film.mkv", "film (1).mkv", "film
    // (2).mkv". The number has 1 to 4 digits and no leading zero. For a folder the whole last step is the name, and a number of 2
    // or more goes back to 1.
    void AddCopyNumber(bool forFolder);
    // Drops a leading "file://", and then a "localhost/", both folded. True when the first was there.
    bool ClearFileScheme() { return ClearFileScheme(m_path); }
    static bool ClearFileScheme(ZVString& path);
    // Of a path that begins with "(Install Drive):", folded, replaces all occurrences of that marker by the drive of the install
    // folder. True when it did.
    bool MapInstallDrive() { return MapInstallDrive(m_path); }
    static bool MapInstallDrive(ZVString& path);
    // Changes the product's private names of two schemes, "m01p://" and "m01ps://", to "http://" and "https://". True when it
    // did.
    bool MapProtocolAliases();

    // Changes the way in which a path is written. The style Unknown is taken from the text; from a style to itself nothing
    // changes. To ForwardSlashes and to Backslashes the separators change. From FileURL to Backslashes or URLPath the scheme
    // goes, which must be there, and percent-escapes are decoded as UTF-8; to Backslashes the leading "/" go too.
    static void ConvertPathStyle(ZVString& path, ZVPathStyle from, ZVPathStyle to);
    // Brings a path into the style of the file system: forward slashes, with the install drive put in.
    static void MakeFileSystemPath(ZVString& path);

    // --- Kind ------------------------------------------------------------------------------------------------------------------

    // True for every text with "://", "file://" too until ClearFileScheme has run.
    bool GetIsFileRemote() const { return IsRemote(m_path); }
    static bool IsRemote(const ZVString& text);
    bool IsRTMP() const;
    // True for a URL with "LDWS", folded, in it.
    bool IsWebServiceURL() const;
    int32_t GetSchemeCode() const;
    // True for an entry of the library that is no file: a television or tuner entry, a serialised text, a property map, a radio
    // station.
    bool IsSpecial() const { return IsSpecial(m_path); }
    static bool IsSpecial(const ZVString& text);
    // Whether a text may stand for a file name. An empty text, a URL and a special entry each need their flag; a handle, "(0x",
    // eight characters and "):" with something behind, passes with allowHandleForm and is otherwise judged like any text.
    static bool IsSpecialFileName(const ZVString& text, bool allowEmpty, bool allowHandleForm, bool allowURL, bool allowSpecial);

private:
    void ParseSerialized();
    void CutPostExtensionData();

    ZVString m_path;
    ZVPropertyMap m_properties;
    ZVPathStyle m_style = ZVPathStyle::Native;
};
