#include "caller/plan/CPlan.h"

#include "caller/plan/PlanLines.h"

#include <array>
#include <cstdio>
#include <fstream>
#include <random>
#include <stdexcept>

namespace
{
namespace fs = std::filesystem;
using nlohmann::json;

constexpr char Format[] = "zivora plan";
constexpr int Version = 1;

CPlanFacts ReadFacts(const json& object)
{
    CPlanFacts facts {
        .ID = object.at("id").get<std::string>(),
        .Shards = object.at("shards").get<int64_t>(),
        .Films = object.at("films").get<int64_t>(),
        .Created = object.at("created").get<int64_t>(),
        .Tasks = TakeTasks(object.at("tasks")),
    };
    for (const json& folder : object.at("folders"))
        facts.Folders.emplace_back(TakePath(folder));
    if (facts.ID.empty() || facts.Shards < 1 || facts.Films < 0)
        throw std::runtime_error("it has no shards");
    return facts;
}

json ReadObject(const fs::path& folder)
{
    std::ifstream file(CPlan::GetFactsFile(folder), std::ios::binary);
    if (!file)
        throw std::runtime_error("there is no plan in the folder " + folder.string());
    json object = json::parse(file, nullptr, false);
    if (!object.is_object() || object.value("format", json()) != Format)
        throw std::runtime_error("the file " + CPlan::GetFactsFile(folder).string() + " is damaged, or no plan");
    if (object.value("version", json()) != Version)
        throw std::runtime_error("the plan in " + folder.string() + " has the version " + object.value("version", json()).dump() +
                                 ", and this program reads version " + std::to_string(Version));
    return object;
}
}

CPlan::CPlan(const fs::path& folder) : m_folder(folder)
{
    const json object = ReadObject(folder);
    try
    {
        m_facts = ReadFacts(object);
    }
    catch (const std::exception& error)
    {
        throw std::runtime_error("the file " + GetFactsFile(folder).string() + " is damaged: " + error.what());
    }
}

fs::path CPlan::GetShardFile(const fs::path& folder, int64_t shard)
{
    return folder / "shards" / (std::to_string(shard) + ".jsonl");
}

fs::path CPlan::GetResultFolder(int64_t shard) const
{
    return m_folder / "results" / std::to_string(shard);
}

int64_t CPlan::GetCount(int64_t shard) const
{
    return (m_facts.Films + m_facts.Shards - shard) / m_facts.Shards;
}

std::string CPlan::MakeFacts(const CPlanFacts& facts)
{
    json folders = json::array();
    for (const fs::path& folder : facts.Folders)
        PutPath(folders.emplace_back(), folder);
    return json {
               {"format",  Format                    },
               {"version", Version                   },
               {"id",      facts.ID                  },
               {"shards",  facts.Shards              },
               {"films",   facts.Films               },
               {"created", facts.Created             },
               {"tasks",   MakeTaskNames(facts.Tasks)},
               {"folders", folders                   }
    }
               .dump(1) +
           "\n";
}

std::string MakeUniqueName()
{
    std::random_device random;
    std::string name;
    for (int part = 0; part < 4; ++part)
    {
        std::array<char, 9> digits;
        snprintf(digits.data(), digits.size(), "%08x", random());
        name += digits.data();
    }
    return name;
}
