#pragma once

class IZVTools;

// The tools library of the process as this copy of the core library sees it: null until the library is bound, and again after it
// is gone. Set and read on the main thread before other threads start, and read by all threads after that.
extern IZVTools* g_pZVTools;
