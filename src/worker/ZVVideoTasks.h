#pragma once

class ZVPropertyMap;
struct ZVWorkerRequest;

// The task of /AnalyzeZVVid: parameter 0 is the film or sound file. The result is what the library files of it.
bool RunAnalyzeZVVidTask(const ZVWorkerRequest& request, ZVPropertyMap& result);

// The task of /AnalyzeVideoExtended: parameter 0 is the film. The result is what the film is.
bool RunAnalyzeVideoExtendedTask(const ZVWorkerRequest& request, ZVPropertyMap& result);

// The task of /AnalyzeVideoBlackBars: parameter 0 is the film. The result is where its picture is, with a report for the user when
// something was found.
bool RunAnalyzeVideoBlackBarsTask(const ZVWorkerRequest& request, ZVPropertyMap& result);
