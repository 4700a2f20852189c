#pragma once

#include "core/containers/ZVStringArray.h"
#include "core/string/ZVString.h"

#include <cstdint>

class IZVFileLoaderProgress;
class ZVBuffer;

// Looks at the first bytes of a load; false ends it. The context is what the options say.
using ZVLoadValidator = bool(const ZVBuffer& bytes, int32_t context);

// What a load does, apart from where the bytes come from and go to.
struct CFileLoaderOptions
{
    IZVFileLoaderProgress* ProgressCallback = nullptr;  // not owned
    int64_t MaximumBytes = -1;                          // no limit if below 1
    bool FailIfLarger = false;                          // otherwise a larger resource is cut
    int64_t StartOffset = 0;                            // where reading begins
    ZVLoadValidator* Validator = nullptr;
    int32_t ValidatorContext = 0;
    int32_t ValidateBytes = 0;     // what the validator and the marker want to see; 0 is no validation
    bool ValidateAtEnd = true;     // validate also a resource that ends before
    ZVString RequiredMarker;       // must stand in these bytes, as UTF-8 or as wide characters
    bool ShowProgress = false;     // show a wait message
    int32_t ProgressDelay = 4000;  // milliseconds before it shows
    bool ProgressFlag = true;
    bool ProgressOption = false;
    ZVString ProgressCaption;  // the load fills an empty one
    ZVString ProgressText;
    bool AllowInternet = true;
    bool Streaming = true;  // read through a reader also without a sink
    ZVStringArray RequestHeaders;
    int64_t PostSize = 0;
    const void* PostData = nullptr;
    int32_t TimeoutMs = 20000;
};
