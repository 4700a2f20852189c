#pragma once

struct ZVWorkerRequest;

// The task of /AnalyzeVideoExtended: parameter 0 is the film, 1 the result file, which gets the XMLPH form of what the film is.
bool RunAnalyzeVideoExtendedTask(const ZVWorkerRequest& request);
