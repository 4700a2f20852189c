#pragma once

#include "ResultKeys.h"
#include "RunWorker.h"
#include "WorkFolder.h"
#include "support/PropertyLines.h"

#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

// What came of the analysis of one film.
struct FilmAnalysis
{
    WorkerRun Run;
    bool HasResult = false;            // whether there is a result file
    std::set<std::string> Properties;  // its entries as "name=value"
    std::string Log;
};

// A folder in which films are made with the system's tools and analyzed by the real worker.
class FilmFolder : public WorkFolder
{
public:
    // Whether the programs that make films are there, and the libraries that read them.
    static bool IsUsable()
    {
        const std::filesystem::path program = GetWorkerProgram();
        return std::filesystem::exists(program.parent_path() / "Plugins/linux_avcodec64_v17/libavformat-zv.so.61") &&
               system("ffmpeg -version >/dev/null 2>&1 && mkvmerge --version >/dev/null 2>&1") == 0;
    }

    // Runs a program in the working folder and expects that it succeeds.
    static void RunProgram(const std::string& commandLine)
    {
        EXPECT_EQ(system((commandLine + " </dev/null >program.log 2>&1").c_str()), 0) << commandLine << "\n"
                                                                                      << Read("program.log");
    }
    // Runs ffmpeg with arguments; the last is the film.
    static void Make(const std::string& arguments) { RunProgram("ffmpeg -v error -y " + arguments); }

    // Has the worker tell what the library files of a film of the working folder.
    static FilmAnalysis AnalyzeForLibrary(
        const std::string& name, std::vector<std::string> environment = {}, const std::function<void()>& prepare = [] {})
    {
        return RunTask("/AnalyzeZVVid", name, std::move(environment), prepare);
    }
    // Has it analyze a film, with more settings of the environment and with what a function changes
    // in its process.
    static FilmAnalysis Analyze(
        const std::string& name, std::vector<std::string> environment = {}, const std::function<void()>& prepare = [] {})
    {
        return RunTask("/AnalyzeVideoExtended", name, std::move(environment), prepare);
    }
    // Has it look for black bars.
    static FilmAnalysis FindBlackBars(
        const std::string& name, std::vector<std::string> environment = {}, const std::function<void()>& prepare = [] {})
    {
        return RunTask("/AnalyzeVideoBlackBars", name, std::move(environment), prepare);
    }

private:
    static FilmAnalysis RunTask(const std::string& command, const std::string& name, std::vector<std::string> environment,
                                const std::function<void()>& prepare)
    {
        constexpr char ResultName[] = "result/film.xml";
        std::filesystem::remove(ResultName);
        std::filesystem::remove("worker.log");
        environment.push_back("ZV_DATA_DIR=" + std::filesystem::absolute("data").string());
        environment.push_back("ZV_LOG_FILE=" + std::filesystem::absolute("worker.log").string());

        FilmAnalysis analysis;
        analysis.Run = RunWorker({command, name, ResultName}, environment, prepare);
        analysis.HasResult = std::filesystem::exists(ResultName);
        analysis.Log = Read("worker.log");
        ZVPropertyMap properties;
        const ZVString text = ZVString::FromUTF8(Read(ResultName).c_str());
        EXPECT_EQ(properties.FromXML(text, L"XMLPH", 1.0), analysis.HasResult || text.IsEmpty());
        analysis.Properties = GetLines(properties);
        ResultKeys::ExpectDocumented(properties);
        return analysis;
    }
};

// ffmpeg's arguments for three seconds of moving picture and of sound.
inline const std::string FilmPicture = "-f lavfi -i testsrc2=s=320x180:r=25:d=3 ";
inline const std::string FilmSound = "-f lavfi -i sine=r=48000:d=3 ";
// And for its commonest form.
inline const std::string FilmH264 = "-c:v libx264 -preset veryfast -profile:v high -level 4.1 -pix_fmt yuv420p ";
