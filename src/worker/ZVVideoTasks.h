#pragma once

class ZVPropertyMap;
struct ZVWorkerRequest;

// The task of /AnalyzeVideoExtended: parameter 0 is the film. The result is what the film is.
bool RunAnalyzeVideoExtendedTask(const ZVWorkerRequest& request, ZVPropertyMap& result);
