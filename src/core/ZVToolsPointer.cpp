#include "core/ZVToolsPointer.h"

IZVTools* g_pZVTools = nullptr;
