#include "FilmFolder.h"

#include "support/PropertyLines.h"

#include <gtest/gtest.h>

namespace
{
namespace fs = std::filesystem;

constexpr char ResultName[] = "result/film.xml";
constexpr char LogName[] = "worker.log";
}

bool FilmFolder::IsUsable()
{
    const fs::path component = fs::path(GetWorkerProgram()).parent_path() / "Plugins/linux_avcodec64_v17/libavformat-zv.so.61";
    return fs::exists(component) && system("ffmpeg -version >/dev/null 2>&1 && mkvmerge --version >/dev/null 2>&1") == 0;
}

void FilmFolder::RunProgram(const std::string& commandLine)
{
    EXPECT_EQ(system((commandLine + " </dev/null >program.log 2>&1").c_str()), 0) << commandLine << "\n" << Read("program.log");
}

void FilmFolder::Make(const std::string& arguments)
{
    RunProgram("ffmpeg -v error -y " + arguments);
}

FilmAnalysis FilmFolder::Analyze(const std::string& name, std::vector<std::string> environment)
{
    fs::remove(ResultName);
    fs::remove(LogName);
    environment.push_back("ZV_DATA_DIR=" + fs::absolute("data").string());
    environment.push_back("ZV_LOG_FILE=" + fs::absolute(LogName).string());

    FilmAnalysis analysis;
    analysis.Run = RunWorker({"/AnalyzeVideoExtended", name, ResultName}, environment);
    analysis.HasResult = fs::exists(ResultName);
    analysis.Log = Read(LogName);
    ZVPropertyMap properties;
    const ZVString text = ZVString::FromUTF8(Read(ResultName).c_str());
    EXPECT_EQ(properties.FromXML(text, L"XMLPH", 1.0), analysis.HasResult || text.IsEmpty());
    analysis.Properties = GetLines(properties);
    return analysis;
}
