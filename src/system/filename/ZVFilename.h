#pragma once

#include "core/property/ZVPropertyMap.h"
#include "core/string/ZVString.h"
#include "system/filename/ZVPathStyle.h"

#include <cstdint>

// Anything that can be opened: a local path, a URL, or a text that only looks like a path, with properties that travel with it.
// With properties it is handed over as one string in its XMLFN form, and every text that enters is tested for that form first, so
// whoever passes strings can pass a full description. Nothing here looks at the file itself, except for GetFileSize, Exists, and
// GetHLSIndexName when asked to.
//
// Both "/" and "\" separate the steps of a path. Upper and lower case are different unless a comment says "folded".
class ZVFilename
{
public:
    // Names of properties that the system uses.
    static constexpr wchar_t PostExtensionDataProperty[] = L"PostExtensionData";
    static constexpr wchar_t FileTypeProperty[] = L"FileType";

    // The results of GetSchemeCode.
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

    // Takes a text and parses it. The properties that were set are dropped, or with clearProperties false kept.
    void SetFilename(const ZVString& text, bool clearProperties = true);
    // The path, without properties.
    const ZVString& GetFilename() const { return m_path; }
    const ZVString& GetPathOnly() const { return m_path; }
    bool IsEmpty() const { return m_path.IsEmpty(); }
    // The style in which the path came, Native unless told otherwise. It is carried along; no operation here depends on it.
    ZVPathStyle GetPathStyle() const { return m_style; }
    void SetPathStyle(ZVPathStyle style) { m_style = style; }

    // Reads the path as a text that came from outside. An XMLFN form gives its item "Filename" as the path and its other items as
    // properties; a form of another version than "1.0" leaves the path empty. A local path with a ";" after its last ".", and 1
    // to 5 characters between the two, is cut at the ";", and the rest becomes the property PostExtensionData.
    void Parse(bool clearProperties);
    // The one-string form: the path as it stands when there is no property, otherwise the XMLFN form, from which Parse reads the
    // same path and properties.
    ZVString GetSerialized() const;

    // --- Properties ------------------------------------------------------------------------------------------------------------

    ZVPropertyMap& GetProperties() { return m_properties; }
    const ZVPropertyMap& GetProperties() const { return m_properties; }
    ZVString GetProperty(const wchar_t* key, const ZVString& defaultValue = ZVString()) const;
    int32_t GetIntegerProperty(const wchar_t* key, int32_t defaultValue) const;
    void SetProperty(const wchar_t* key, const ZVString& value) { m_properties.SetString(key, value); }
    // What Parse cut off after the ";"; empty if it cut nothing.
    ZVString GetPostExtensionData() const { return GetProperty(PostExtensionDataProperty); }

    // --- Parts -----------------------------------------------------------------------------------------------------------------

    // Splits the path, in file system style, into its parts; each output may be null. Put together, with a "." before an
    // extension, they are the path again, except that a drive letter becomes upper case and a "." that ends a name is dropped.
    //
    //   drive      "C:", with any character for the letter; "//server" of a network name; "/dev/sr0" of a device path;
    //              "http://host" of a URL; otherwise empty
    //   directory  the rest up to the last separator, which stays
    //   name       without the extension; a "." with which a name begins belongs to it, and so do the steps "." and ".."
    //   extension  without the "."; the query and the fragment of a URL are in no part
    void SplitPath(ZVString* drive, ZVString* directory, ZVString* name, ZVString* extension) const;

    ZVString GetDrive() const;
    // The folder that the name is in: the drive and the directory, with its separator at the end.
    ZVString GetDirectory() const;
    ZVString GetNameOnly() const;
    // The extension; with lookAtFileType the property FileType if it is not empty.
    ZVString GetExtension(bool lookAtFileType = false) const;
    // The name, then "." and the extension if there is one. With the flag also ";" and the PostExtensionData if there is any.
    ZVString GetNameAndExtension(bool withPostExtensionData = false) const;
    // The name of the last folder of the directory, with its separator if keepSlash is set; empty in a root folder.
    ZVString GetParentFolderName(bool keepSlash = false) const;

    // The path of the sidecar file, which stands beside this one and keeps what the product knows about it.
    ZVString GetSidecarName() const;
    // The path of its HLS index. With checkExists it is empty if there is no such local file.
    ZVString GetHLSIndexName(bool checkExists) const;

    // --- The file behind the name ----------------------------------------------------------------------------------------------

    // Its size in bytes; -1 for a folder, for a file that does not exist, and for a remote one whose server does not tell.
    int64_t GetFileSize() const;
    // Whether there is such a file or folder, or for a remote name such a resource on the server.
    bool Exists() const;

    // --- Change ----------------------------------------------------------------------------------------------------------------

    // Appends a step with exactly one "/" in between. An empty path becomes the text as it stands.
    void AddPathPart(const ZVString& text);
    // Raises the number in parentheses at the end of the name, or adds the number 1: "film.mkv", "film (1).mkv", "film (2).mkv".
    // Only 1 to 4 digits without a leading zero are such a number. For a folder the whole last step is the name, and a number of
    // 2 or more goes back to 1.
    void AddCopyNumber(bool forFolder);
    // Drops a leading "file://", folded, and then a leading "localhost/", folded. True if the first was there.
    bool ClearFileScheme() { return ClearFileScheme(m_path); }
    static bool ClearFileScheme(ZVString& path);
    // In a path that begins with "(Install Drive):", folded, replaces all occurrences of that marker by the drive of the install
    // folder. True if it did.
    bool MapInstallDrive() { return MapInstallDrive(m_path); }
    static bool MapInstallDrive(ZVString& path);
    // Replaces the product's private scheme names, "m01p://" and "m01ps://", by "http://" and "https://". True if it did.
    bool MapProtocolAliases();

    // Changes the way in which a path is written. The style Unknown is taken from the text; from a style to itself nothing
    // changes. To ForwardSlashes and to Backslashes the separators are replaced. From FileURL to Backslashes or URLPath the
    // scheme is dropped and percent-escapes are decoded as UTF-8, but a text without the scheme stays as it is; to Backslashes
    // the leading "/" are dropped too.
    static void ConvertPathStyle(ZVString& path, ZVPathStyle from, ZVPathStyle to);
    // Brings a path into the style of the file system: forward slashes, and the install drive in the place of its marker.
    static void MakeFileSystemPath(ZVString& path);

    // --- Kind ------------------------------------------------------------------------------------------------------------------

    // True for every text with "://", so for "file://" too until ClearFileScheme has run.
    bool GetIsFileRemote() const { return IsRemote(m_path); }
    static bool IsRemote(const ZVString& text);
    bool IsRTMP() const;
    // True for a URL with "LDWS", folded, in it.
    bool IsWebServiceURL() const;
    // By the scheme's name at the start of the text, folded, whatever follows it.
    int32_t GetSchemeCode() const;
    // True for an entry of the library that is no file: a television or tuner entry, a serialised text, a property map, a radio
    // station.
    bool IsSpecial() const { return IsSpecial(m_path); }
    static bool IsSpecial(const ZVString& text);
    // What IsSpecialFileName lets pass besides plain file names.
    struct Allowed
    {
        bool Empty = false;
        bool HandleForm = false;
        bool URL = false;
        bool Special = false;
    };
    // Whether a text may stand for a file name. An empty text, a URL and a special entry pass only if they are allowed. A handle,
    // which is "(0x", eight characters, "):" and at least one more, passes if it is allowed and is otherwise judged like any
    // text.
    static bool IsSpecialFileName(const ZVString& text, const Allowed& allowed);

private:
    void ParseSerialized();
    void CutPostExtensionData();

    ZVString m_path;
    ZVPropertyMap m_properties;
    ZVPathStyle m_style = ZVPathStyle::Native;
};
