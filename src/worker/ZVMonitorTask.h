#pragma once

class ZVPropertyMap;
struct ZVWorkerRequest;

// The task of /GetMonitorRect, which counts in the whole argument list: argument 1 is the number of the monitor, 0 when it is no
// number, and argument 2 the file that gets its rectangle, such as "1920,0,3840,1080". A number that no monitor has stands for
// the first one. The task writes its file itself and leaves the result empty. False, with the reason in the log, when no X server
// answers or the file cannot be written; a file that was there is then what it was.
bool RunMonitorTask(const ZVWorkerRequest& request, ZVPropertyMap& result);
