// The developers' commands on a source tree of their own: the folders of their machines, below the working folder.

#include "RunWorker.h"

#include <gtest/gtest.h>

namespace
{
namespace fs = std::filesystem;

const std::string SourceFolder = "E:/Source/Media/Development/";
const std::string ProjectFolder = "e:/Source/Media/Development/Projects/Apple/";

void WriteBelow(const std::string& folder, const std::string& name, const std::string& content)
{
    fs::create_directories(fs::path(folder + name).parent_path());
    WorkFolder::Write(folder + name, content);
}

void ExpectAlwaysFails(const std::string& command)
{
    const WorkerRun run = RunWorker({command});
    EXPECT_EQ(run.Status, 255) << run.Error;
    EXPECT_TRUE(run.Output.starts_with("Total time: ")) << run.Output;
    EXPECT_TRUE(run.Output.ends_with(" ms\nResult: -1\n")) << run.Output;
}

TEST(SourceTools, CleansHeaderFiles)
{
    struct Row
    {
        std::string Name;
        std::string Before;
        std::string After;
    };
    using namespace std::string_literals;
    // clang-format off
    const Row rows[] = {
        {"blanks.h",      "a\r\n \r\nb\r\n  \r\nc\r\n   \r\nd\r\n    \r\ne\r\n\t\r\nf", "a\r\n\r\nb\r\n\r\nc\r\n\r\nd\r\n\r\ne\r\n\r\nf"},
        {"five.h",        "a\r\n     \r\nb\r\n\t\t\r\nc\r\n\t \r\n",  "a\r\n     \r\nb\r\n\t\t\r\nc\r\n\t \r\n"},
        // One pass for each rule: every other line of a run is left for the next call.
        {"run.h",         "a\r\n \r\n \r\nb",                         "a\r\n\r\n \r\nb"},
        {"two.h",         "public:\r\n\r\n\r\n\tint a;\r\n",          "public:\r\n\tint a;\r\n"},
        {"white.h",       "private:\r\n  \r\n\tint a;\r\n",           "private:\r\n\tint a;\r\n"},
        {"case.h",        "Public:\r\n\r\nprotected:\r\n\r\n",        "Public:\r\n\r\nprotected:\r\n"},
        {"parent.h",      "typedef A Parent;\r\n\r\nprotected:\r\nint a;", "typedef A Parent;\r\nprotected:\r\nint a;"},
        {"plain.h",       "public:\n\n \n",                           "public:\n\n \n"},
        {"upper.H",       "public:\r\n\r\n",                          "public:\r\n"},
        {"deep/er/d.h",   "public:\r\n\r\n",                          "public:\r\n"},
        {"other.cpp",     "public:\r\n\r\n",                          "public:\r\n\r\n"},
        {"ThirdParty/t.h",                           "public:\r\n\r\n", "public:\r\n\r\n"},
        {"SharedFiles/QuickTime/q.h",                "public:\r\n\r\n", "public:\r\n\r\n"},
        {"SharedFiles/Other/o.h",                    "public:\r\n\r\n", "public:\r\n"},
        {"x/Plugins/Web Browser/Gecko SDK/inc/g.h",  "public:\r\n\r\n", "public:\r\n\r\n"},
        {"x/Plugins/Shared/s.h",                     "public:\r\n\r\n", "public:\r\n\r\n"},
        {"x/Plugins/Own/w.h",                        "public:\r\n\r\n", "public:\r\n"},
        // Encodings: Latin-1, UTF-8 with and without a mark, UTF-16; one that no byte can hold stays what it was while nothing changes.
        {"latin.h",       "// \xe4\r\npublic:\r\n\r\n",               "\xef\xbb\xbf// \xc3\xa4\r\npublic:\r\n"},
        {"utf8.h",        "// \xe2\x82\xac\r\npublic:\r\n\r\n",       "\xef\xbb\xbf// \xe2\x82\xac\r\npublic:\r\n"},
        {"mark.h",        "\xef\xbb\xbfpublic:\r\n\r\n",              "public:\r\n"},
        {"utf16.h",       "\xff\xfep\0u\0b\0l\0i\0c\0:\0\r\0\n\0\r\0\n\0"s, "public:\r\n"},
        {"latin-same.h",  "// \xe4\r\npublic:\r\n",                   "// \xe4\r\npublic:\r\n"},
        {"nul.h",         "public:\r\n\r\nint a;\0int b;"s,           "public:\r\n\r\nint a;\0int b;"s},
    };
    // clang-format on
    const WorkFolder work;
    for (const Row& row : rows)
        WriteBelow(SourceFolder, row.Name, row.Before);
    WriteBelow("elsewhere/", "e.h", "public:\r\n\r\n");
    const auto longAgo = fs::file_time_type::clock::now() - std::chrono::hours(1000);
    fs::last_write_time(SourceFolder + "plain.h", longAgo);

    ExpectAlwaysFails("/CleanCode");
    for (const Row& row : rows)
        EXPECT_EQ(WorkFolder::Read(SourceFolder + row.Name), row.After) << row.Name;
    EXPECT_EQ(WorkFolder::Read("elsewhere/e.h"), "public:\r\n\r\n");
    EXPECT_EQ(fs::last_write_time(SourceFolder + "plain.h"), longAgo) << "a file without changes was written";
}

// A character above U+FFFF does not ask for UTF-8, and one byte cannot hold it.
TEST(SourceTools, LosesCharactersOfOtherPlanes)
{
    const WorkFolder work;
    WriteBelow(SourceFolder, "a.h", "// \xf0\x9f\x8e\xac\r\npublic:\r\n\r\n");
    ExpectAlwaysFails("/CleanCode");
    const std::string cleaned = WorkFolder::Read(SourceFolder + "a.h");
    EXPECT_TRUE(cleaned.starts_with("// ")) << cleaned;
    EXPECT_TRUE(cleaned.ends_with("\r\npublic:\r\n")) << cleaned;
    EXPECT_EQ(cleaned.find('\xf0'), std::string::npos) << cleaned;
}

std::string MakeConfiguration(const std::string& settings, const std::string& name)
{
    return "\t\t1DEB928608733DD80010E9CD /* " + name + " */ = {\n\t\t\tisa = XCBuildConfiguration;\n\t\t\tbuildSettings = {\n" +
           settings + "\t\t\t};\n\t\t\tname = " + name + ";\n\t\t};\n";
}

std::string MakeProject(const std::string& configurations)
{
    return "// !$*UTF8*$!\n{\n/* \xc3\xa4 */\n/* Begin XCBuildConfiguration section */\n" + configurations +
           "/* End XCBuildConfiguration section */\n\t\t\tbuildSettings = {\n\t\t\t\tA = 1;\n\t\t\t};\n\t\t\tname = "
           "Release;\n}\n";
}

TEST(SourceTools, SetsBuildSettings)
{
    constexpr const char* AllSettings = "\t\t\t\tDEAD_CODE_STRIPPING = YES;\n\t\t\t\tCLANG_X86_VECTOR_INSTRUCTIONS = sse2;\n"
                                        "\t\t\t\tGCC_SYMBOLS_PRIVATE_EXTERN = YES;\n\t\t\t\tMACOSX_DEPLOYMENT_TARGET = 10.6;\n";
    struct Row
    {
        const char* What;
        std::string Before;
        std::string After;
    };
    // clang-format off
    const Row rows[] = {
        {"missing settings are added", MakeConfiguration("\t\t\t\tZ = 1;\n", "Debug") + MakeConfiguration("\t\t\t\tB = 2;\n", "Release"),
         MakeConfiguration(std::string("\t\t\t\tZ = 1;\n") + AllSettings, "Debug") +
             MakeConfiguration(std::string("\t\t\t\tB = 2;\n") + AllSettings, "Release")},
        {"a setting keeps its place",
         MakeConfiguration("\t\t\t\tmacosx_deployment_target = \"10.4\";\n\t\t\t\tGCC_SYMBOLS_PRIVATE_EXTERN = NO;\n"
                           "\t\t\t\tGCC_SYMBOLS_PRIVATE_EXTERN = TWICE;\n", "Release"),
         MakeConfiguration("\t\t\t\tMACOSX_DEPLOYMENT_TARGET = 10.6;\n\t\t\t\tGCC_SYMBOLS_PRIVATE_EXTERN = YES;\n"
                           "\t\t\t\tGCC_SYMBOLS_PRIVATE_EXTERN = TWICE;\n\t\t\t\tDEAD_CODE_STRIPPING = YES;\n"
                           "\t\t\t\tCLANG_X86_VECTOR_INSTRUCTIONS = sse2;\n", "Release")},
        {"others are left alone",
         MakeConfiguration("\t\t\t\tZ = 1;\n", "Profile") + MakeConfiguration("\t\t\t\tB = 2;\n", "Debug"),
         MakeConfiguration("\t\t\t\tZ = 1;\n", "Profile") + MakeConfiguration(std::string("\t\t\t\tB = 2;\n") + AllSettings, "Debug")},
        {"an empty list matches no marker", MakeConfiguration("", "Release"), MakeConfiguration("", "Release")},
    };
    // clang-format on
    const WorkFolder work;
    const auto pathOf = [&](const Row& row) { return std::string(row.What) + ".xcodeproj/project.pbxproj"; };
    for (const Row& row : rows)
        WriteBelow(ProjectFolder, pathOf(row), MakeProject(row.Before));
    const auto longAgo = fs::file_time_type::clock::now() - std::chrono::hours(1000);
    const std::string without = "// no section\n\t\t\tbuildSettings = {\n\t\t\t\tA = 1;\n\t\t\t};\n\t\t\tname = Release;\n";
    WriteBelow(ProjectFolder, "without.pbxproj", without);
    fs::last_write_time(ProjectFolder + "without.pbxproj", longAgo);
    fs::last_write_time(ProjectFolder + pathOf(rows[3]), longAgo);

    ExpectAlwaysFails("/UpdateAppleProjects");
    for (const Row& row : rows)
        EXPECT_EQ(WorkFolder::Read(ProjectFolder + pathOf(row)), MakeProject(row.After)) << row.What;
    EXPECT_EQ(WorkFolder::Read(ProjectFolder + "without.pbxproj"), without);
    EXPECT_EQ(fs::last_write_time(ProjectFolder + "without.pbxproj"), longAgo) << "a project without the section was written";
    EXPECT_GT(fs::last_write_time(ProjectFolder + pathOf(rows[3])), longAgo) << "a project was not written since nothing changed";
}
}
