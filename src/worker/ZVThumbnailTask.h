#pragma once

#include <cstdint>

class ZVPropertyMap;
class ZVString;
struct ZVWorkerRequest;

// The task of /Thumbnail: parameter 0 is the film, 1 the file of the picture, 2 the file of the metadata and 3 the time of the picture
// in milliseconds. The task writes its files itself and leaves the result empty.
bool RunThumbnailTask(const ZVWorkerRequest& request, ZVPropertyMap& result);

// The time that a parameter asks for, in milliseconds: five seconds when it is empty or no number.
int32_t GetThumbnailTime(const ZVString& parameter);
