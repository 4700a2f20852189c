#pragma once

#include "core/containers/ZVStringArray.h"
#include "core/string/ZVString.h"
#include "system/loader/IZVWaitMessage.h"

#include <cstdint>

class IZVFileLoaderProgress;
class ZVBuffer;

// Looks at the first bytes of a load; false ends it. The context is the one in the options.
using ZVLoadValidator = bool(const ZVBuffer& bytes, int32_t context);

// The test of the first bytes of a load.
struct CFileLoaderValidation
{
    int32_t Bytes = 0;                     // how many bytes the test wants; 0 is no test
    ZVLoadValidator* Validator = nullptr;  // called once, or null
    int32_t Context = 0;
    bool AtEnd = true;   // also test a resource that ends before
    ZVString Marker {};  // must stand in these bytes, as UTF-8 or as wide characters; it is looked for after the validator
};

// What a load does, apart from where the bytes come from and go to.
struct CFileLoaderOptions
{
    IZVFileLoaderProgress* ProgressCallback = nullptr;  // not owned
    int64_t MaximumBytes = -1;                          // no limit if below 1
    bool FailIfLarger = false;                          // otherwise a larger resource is cut
    int64_t StartOffset = 0;                            // where reading begins
    CFileLoaderValidation Validation;
    bool ShowProgress = false;  // show a wait message
    ZVWaitMessageOptions WaitMessage;
    bool AllowInternet = true;
    bool Streaming = true;  // use a reader even without a sink
    ZVStringArray RequestHeaders;
    int64_t PostSize = 0;
    const void* PostData = nullptr;
    int32_t TimeoutMs = 20000;
};
