#pragma once

#include "RunWorker.h"
#include "WorkFolder.h"

#include <set>
#include <string>
#include <vector>

// What the analysis of one film left behind.
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
    static bool IsUsable();

    // Runs a program in the working folder and expects that it succeeds.
    static void RunProgram(const std::string& commandLine);
    // Runs ffmpeg with arguments; the last is the film.
    static void Make(const std::string& arguments);

    // Has the worker analyze a film of the working folder, with more settings of the environment.
    static FilmAnalysis Analyze(const std::string& name, std::vector<std::string> environment = {});
};

// ffmpeg's arguments for three seconds of moving picture and of sound.
inline const std::string FilmPicture = "-f lavfi -i testsrc2=s=320x180:r=25:d=3 ";
inline const std::string FilmSound = "-f lavfi -i sine=r=48000:d=3 ";
// And for its commonest form.
inline const std::string FilmH264 = "-c:v libx264 -preset veryfast -profile:v high -level 4.1 -pix_fmt yuv420p ";
