#include "caller/plan/PlanLines.h"
#include "caller/files/Base64.h"
#include "caller/plan/CPlanMerge.h"

#include <gtest/gtest.h>
#include <numeric>

namespace
{
std::string MakeAllBytes()
{
    std::string bytes(256, '\0');
    std::iota(bytes.begin(), bytes.end(), '\0');
    return bytes;
}

CFilmResult MakeResult(const std::string& path)
{
    CFilmResult result;
    result.Number = 7;
    result.Identity = {1, -2, int64_t {1} << 62};
    result.Findings.Film = {
        .Path = path, .Values = {{"Duration", 3.003}, {"Audio Language", {"English", nullptr}}}
    };
    result.Findings.Done = CTaskSet(TaskKind::Basic) | TaskKind::Picture;
    result.Findings.Errors = {
        {"thumbs", "why \"not\"\n"}
    };
    result.Findings.Picture = MakeAllBytes();
    return result;
}

// Names that other formats of lists trip over.
const std::string Paths[] = {"/films/plain.mkv", "/films/\"quoted\" \\x41\n.mkv", "/films/schön.mkv",
                             "/films/\xff\\x41\"\n\x7f.mkv"};

TEST(PlanLinesTest, PathsComeBackByteForByte)
{
    for (const std::string& path : Paths)
    {
        SCOPED_TRACE(path);
        const std::string line = MakeLine(CPlannedFilm {
            path, {1, 2, 3},
             TaskKind::Bars
        });
        EXPECT_EQ(line.find('\n'), std::string::npos);
        const std::optional<CPlannedFilm> film = ReadPlannedFilm(line);
        ASSERT_TRUE(film.has_value());
        EXPECT_EQ(film->Path, path);
        EXPECT_EQ(film->Identity, (CFileIdentity {1, 2, 3}));
        EXPECT_EQ(film->Tasks.GetBits(), CTaskSet(TaskKind::Bars).GetBits());
    }
}

TEST(PlanLinesTest, ResultsComeBack)
{
    for (const std::string& path : Paths)
    {
        SCOPED_TRACE(path);
        const CFilmResult wanted = MakeResult(path);
        const std::optional<CFilmResult> result = ReadFilmResult(MakeLine(wanted));
        ASSERT_TRUE(result.has_value());
        EXPECT_EQ(result->Number, 7);
        EXPECT_EQ(result->Identity, wanted.Identity);
        EXPECT_EQ(result->Findings.Film.Path, path);
        EXPECT_EQ(result->Findings.Film.Values, wanted.Findings.Film.Values);
        EXPECT_EQ(result->Findings.Done.GetBits(), wanted.Findings.Done.GetBits());
        EXPECT_EQ(result->Findings.Errors, wanted.Findings.Errors);
        EXPECT_EQ(result->Findings.Picture, wanted.Findings.Picture);
    }
}

// Bytes that are missing, and values of other kinds, in a line of a machine that we do not know.
TEST(PlanLinesTest, DamagedLinesAreNothing)
{
    const std::string line = MakeLine(MakeResult(Paths[3]));
    for (size_t length = 0; length < line.size(); ++length)
        EXPECT_FALSE(ReadFilmResult(line.substr(0, length)).has_value()) << "cut after " << length << " bytes";
    const nlohmann::json whole = nlohmann::json::parse(line);
    for (const auto& [key, value] : whole.items())
    {
        // A path stands there twice, and the readable one is not looked at.
        if (key == "path")
            continue;
        for (const nlohmann::json& other : {nlohmann::json(), nlohmann::json("\\xq"), nlohmann::json({nullptr})})
        {
            nlohmann::json changed = whole;
            changed[key] = other;
            EXPECT_FALSE(ReadFilmResult(changed.dump()).has_value()) << changed.dump();
        }
    }
}

// The test vectors of RFC 4648.
TEST(PlanLinesTest, Base64)
{
    const std::pair<const char*, const char*> Rows[] = {
        {"",      ""        },
        {"f",     "Zg=="    },
        {"fo",    "Zm8="    },
        {"foo",   "Zm9v"    },
        {"foob",  "Zm9vYg=="},
        {"fooba", "Zm9vYmE="},
    };
    for (const auto& [bytes, text] : Rows)
    {
        EXPECT_EQ(EncodeBase64(bytes), text);
        EXPECT_EQ(DecodeBase64(text), bytes);
    }
    for (const char* const text : {"Zg", "Zg=", "====", "Z===", "Zm9v Zg=", "Zm9\n"})
        EXPECT_EQ(DecodeBase64(text), std::nullopt) << text;
}

struct IdentityRow
{
    const char* What;
    int64_t Size;
    int64_t Time;
    bool IsTheSame;
};

TEST(CPlanMergeTest, FileThatChangedHasNoInode)
{
    constexpr CFileIdentity Planned {100, 1'700'000'001'123'456'789, 42};
    constexpr IdentityRow Rows[] = {
        {"the same",            100, 1'700'000'001'123'456'789, true },
        {"100 nanoseconds",     100, 1'700'000'001'123'456'700, true },
        {"whole seconds",       100, 1'700'000'001'000'000'000, true },
        {"even seconds",        100, 1'700'000'000'000'000'000, true },
        {"a nanosecond later",  100, 1'700'000'001'123'456'790, false},
        {"a second later",      100, 1'700'000'002'000'000'000, false},
        {"a hundredth earlier", 100, 1'700'000'001'113'456'789, false},
        {"longer",              101, 1'700'000'001'123'456'789, false},
    };
    for (const IdentityRow& row : Rows)
    {
        SCOPED_TRACE(row.What);
        const CFileIdentity seen {row.Size, row.Time, 43};
        EXPECT_EQ(GetCatalogIdentity(Planned, seen), row.IsTheSame ? Planned : (CFileIdentity {row.Size, row.Time, 0}));
        EXPECT_EQ(GetCatalogIdentity({row.Size, row.Time, 42}, Planned).Inode, row.IsTheSame ? 42 : 0);
    }
}
}
