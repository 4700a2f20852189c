// Shows developers and support the tags of an MP4 or QuickTime file, changes them, and puts a second film behind the first.
//
// Usage: zvmp4tag FILE [--set NAME=VALUE | --remove NAME | --append SECOND]...
//
// Without a change it lists the tags, a line NAME=VALUE for each; further lines of a value begin with a tab. Changes are made in the
// order in which they are given, and the film is written once after the last: with all of them, or not at all. An empty value
// removes the tag, too. The value of "Image File" is the path of a picture.
//
// Exit status 0 when all was done, 1 when the film could not be read or is left as it was, 2 for wrong use.

#include "core/property/ZVPropertyMap.h"
#include "core/string/ZVStringUTF8.h"
#include "mp4/CMp4File.h"
#include "mp4/OpenMp4File.h"
#include "system/file/ZVFileSystem.h"
#include "system/filename/ZVNativePath.h"
#include "system/library/ZVModuleMessage.h"
#include "system/library/ZVSiblingLibraries.h"

#include <cstring>
#include <deque>
#include <getopt.h>
#include <iostream>
#include <map>
#include <string>
#include <vector>

namespace
{
enum ExitStatus
{
    Done = 0,
    Failed = 1,
    WrongUse = 2,
};

constexpr char Usage[] = "usage: zvmp4tag FILE [--set NAME=VALUE | --remove NAME | --append SECOND]...\n";

constexpr wchar_t PictureTag[] = L"Image File";

// A film, the second ones that were put behind it, and why the last step failed.
class CEditedFilm
{
public:
    bool Open(const char* path) { return Open(m_film, path); }
    bool Save() { return Check(m_film.Save(), m_film); }

    // The changes, each with the argument of its option.
    bool Set(const char* assignment)
    {
        const char* const end = strchr(assignment, '=');
        if (end == nullptr)
            return Fail(L"there is no = between the name and the value");
        return SetTag(std::string(assignment, end).c_str(), end + 1);
    }
    bool Remove(const char* name) { return SetTag(name, ""); }
    bool Append(const char* path)
    {
        CMp4File& second = m_appended.emplace_back();
        return Open(second, path) && Check(m_film.Append(second), m_film);
    }

    // The tags in the order of their names.
    std::map<std::string, std::string> GetTags()
    {
        ZVPropertyMap map;
        m_film.GetTags(map);
        // A picture among the tags was written to a temporary file, which nobody would delete.
        if (map.IsSet(PictureTag))
            ZVFileSystem::DeleteFile(map.GetString(PictureTag));
        map.Remove(PictureTag);
        std::map<std::string, std::string> tags;
        map.ForEach([&](const ZVString& name, const ZVString& value)
                    { tags.emplace(ZVStringUTF8(name).Get(), ZVStringUTF8(value).Get()); });
        return tags;
    }

    const ZVString& GetReason() const { return m_reason; }

private:
    bool Open(CMp4File& film, const char* path)
    {
        const ZVFilename filename = ZVFilename::FromPath(ZVNativePath::ToText(path));
        return Check(OpenMp4File(film, filename, filename.GetExtension()), film);
    }
    bool SetTag(const char* name, const char* value)
    {
        if (*name == '\0')
            return Fail(L"a tag without a name cannot be set");
        return Check(m_film.SetTag(ZVString::FromUTF8(name), ZVString::FromUTF8(value)), m_film);
    }
    bool Check(bool isDone, const CMp4File& film)
    {
        if (!isDone)
            m_reason = film.GetLastError();
        return isDone;
    }
    bool Fail(const wchar_t* reason)
    {
        m_reason = reason;
        return false;
    }

    CMp4File m_film;
    std::deque<CMp4File> m_appended;  // which keep their places, and outlive the saving
    ZVString m_reason;
};

// A change of the command line.
struct Change
{
    bool (CEditedFilm::*Make)(const char* argument);
    const char* Argument;
};

struct ChangeOption
{
    const char* Name;
    bool (CEditedFilm::*Make)(const char* argument);
};

constexpr ChangeOption ChangeOptions[] = {
    {"set",    &CEditedFilm::Set   },
    {"remove", &CEditedFilm::Remove},
    {"append", &CEditedFilm::Append},
};

struct Request
{
    const char* Film = nullptr;
    std::vector<Change> Changes;
};

// False for wrong use, which getopt has told where it found it.
bool ReadArguments(int count, char** arguments, Request& request)
{
    std::vector<option> options;
    for (const ChangeOption& change : ChangeOptions)
        options.push_back({change.Name, required_argument, nullptr, 0});
    options.push_back({});
    for (int index = 0, found; (found = getopt_long(count, arguments, "", options.data(), &index)) != -1;)
    {
        if (found != 0)
            return false;
        request.Changes.push_back({ChangeOptions[index].Make, optarg});
    }
    if (optind + 1 != count)
        return false;
    request.Film = arguments[optind];
    return true;
}

int Fail(const char* what, const ZVString& reason)
{
    std::cerr << "zvmp4tag: " << what << ": " << ZVStringUTF8(reason).Get() << '\n';
    return Failed;
}

// So that no line of a value is taken for a tag.
std::string IndentLines(const std::string& value)
{
    std::string indented;
    for (const char letter : value)
    {
        indented += letter;
        if (letter == '\n')
            indented += '\t';
    }
    return indented;
}

int ListTags(CEditedFilm& film, const char* path)
{
    for (const auto& [name, value] : film.GetTags())
        std::cout << name << '=' << IndentLines(value) << '\n';
    return std::cout.flush() ? Done : Fail(path, L"the list could not be written");
}

int Run(const Request& request)
{
    CEditedFilm film;
    if (!film.Open(request.Film))
        return Fail(request.Film, film.GetReason());
    if (request.Changes.empty())
        return ListTags(film, request.Film);
    for (const Change& change : request.Changes)
        if (!(film.*change.Make)(change.Argument))
            return Fail(change.Argument, film.GetReason());
    return film.Save() ? Done : Fail(request.Film, film.GetReason());
}
}

int main(int count, char** arguments)
{
    Request request;
    if (!ReadArguments(count, arguments, request))
    {
        std::cerr << Usage;
        return WrongUse;
    }
    ZVSiblingLibraries& libraries = ZVSiblingLibraries::Get();
    if (!libraries.LoadTools())
    {
        ZVModuleMessage::Print(GetSiblingLibrary(ZVSibling::Tools).File, libraries.GetToolsError());
        return Failed;
    }
    const int status = Run(request);
    libraries.UnloadAll();
    return status;
}
