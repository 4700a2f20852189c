#include "caller/plan/PlanLines.h"

#include "caller/files/Base64.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

namespace
{
using nlohmann::json;

constexpr char PathBytes[] = "path bytes";

std::string UnescapeBytes(const std::string& text)
{
    std::string bytes;
    for (size_t place = 0; place < text.size();)
    {
        if (text[place] != '\\')
        {
            bytes += text[place++];
            continue;
        }
        uint8_t code = 0;
        const char* const digits = text.data() + place + 2;
        if (place + 4 > text.size() || text[place + 1] != 'x' || std::from_chars(digits, digits + 2, code, 16).ptr != digits + 2)
            throw std::runtime_error("a name is escaped in an unknown way");
        bytes += static_cast<char>(code);
        place += 4;
    }
    return bytes;
}

void PutIdentity(json& object, const CFileIdentity& identity)
{
    object["size"] = identity.Size;
    object["mtime"] = identity.ModificationTime;
    object["inode"] = identity.Inode;
}

CFileIdentity TakeIdentity(const json& object)
{
    return {object.at("size").get<int64_t>(), object.at("mtime").get<int64_t>(), object.at("inode").get<int64_t>()};
}

std::string Dump(const json& object)
{
    return object.dump(-1, ' ', false, json::error_handler_t::replace);
}

std::string TakePicture(const json& object)
{
    const std::optional<std::string> picture = DecodeBase64(object.value("picture", ""));
    if (!picture)
        throw std::runtime_error("a picture is no base64");
    return *picture;
}

// Lines come from other machines and may be damaged, so whatever is wrong with one makes it nothing.
template <class Function>
auto TakeFromLine(const std::string& line, Function take) -> std::optional<decltype(take(json()))>
{
    try
    {
        return take(json::parse(line));
    }
    catch (const json::exception&)
    {
        return std::nullopt;
    }
    catch (const std::runtime_error&)
    {
        return std::nullopt;
    }
}
}

void PutPath(json& object, const std::string& path)
{
    object["path"] = ToUTF8(path);
    if (const std::string escaped = EscapeBytes(path); !escaped.empty())
        object[PathBytes] = escaped;
}

std::string TakePath(const json& object)
{
    const auto escaped = object.find(PathBytes);
    return escaped != object.end() ? UnescapeBytes(escaped->get<std::string>()) : object.at("path").get<std::string>();
}

json MakeTaskNames(CTaskSet tasks)
{
    json names = json::array();
    for (const Task& task : GetTasks())
        if (tasks.Has(task.Kind))
            names.push_back(task.Name);
    return names;
}

CTaskSet TakeTasks(const json& names)
{
    CTaskSet tasks;
    for (const std::string& name : names.get<std::vector<std::string>>())
    {
        const auto task = std::ranges::find(GetTasks(), name, &Task::Name);
        if (task == GetTasks().end())
            throw std::runtime_error("there is no task \"" + name + "\"");
        tasks = tasks | task->Kind;
    }
    return tasks;
}

std::string MakeLine(const CPlannedFilm& film)
{
    json line;
    PutPath(line, film.Path);
    PutIdentity(line, film.Identity);
    line["tasks"] = MakeTaskNames(film.Tasks);
    return Dump(line);
}

std::string MakeLine(const CFilmResult& result)
{
    json line = {
        {"film", result.Number}
    };
    PutPath(line, result.Findings.Film.Path);
    if (result.IsGone)
    {
        line["gone"] = true;
        return Dump(line);
    }
    PutIdentity(line, result.Identity);
    line["done"] = MakeTaskNames(result.Findings.Done);
    line["facts"] = result.Findings.Film.Values;
    if (!result.Findings.Errors.empty())
        line["errors"] = result.Findings.Errors;
    if (!result.Findings.Picture.empty())
        line["picture"] = EncodeBase64(result.Findings.Picture);
    return Dump(line);
}

std::optional<CPlannedFilm> ReadPlannedFilm(const std::string& line)
{
    const auto take = [](const json& object) -> CPlannedFilm {
        return {TakePath(object), TakeIdentity(object), TakeTasks(object.at("tasks"))};
    };
    return TakeFromLine(line, take);
}

std::optional<CFilmResult> ReadFilmResult(const std::string& line)
{
    const auto take = [](const json& object)
    {
        CFilmResult result;
        result.Number = object.at("film").get<int64_t>();
        result.Findings.Film.Path = TakePath(object);
        result.IsGone = object.value("gone", false);
        if (result.IsGone)
            return result;
        result.Identity = TakeIdentity(object);
        result.Findings.Done = TakeTasks(object.at("done"));
        result.Findings.Film.Values = object.at("facts").get<json::object_t>();
        result.Findings.Errors = object.value("errors", std::map<std::string, std::string>());
        result.Findings.Picture = TakePicture(object);
        return result;
    };
    return TakeFromLine(line, take);
}
