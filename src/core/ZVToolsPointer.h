#pragma once

class IZVTools;

// The tools library, as this copy of the core library knows it: null before the library is bound and after it is unloaded. It is
// set on the main thread before other threads start; after that every thread may read it.
extern IZVTools* g_pZVTools;
