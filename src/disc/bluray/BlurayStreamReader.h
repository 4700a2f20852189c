#pragma once

#include "core/bytes/ZVByteCursor.h"
#include "core/string/ZVString.h"
#include "disc/bluray/BlurayStream.h"

#include <memory>

// Numbers on a disc are big-endian. One that is not there counts as 0, since discs are damaged more often than not.
using BlurayCursor = ZVByteCursor<std::endian::big, ZVZeroPastEnd>;

namespace BlurayStreamReader
{
// How much a record says of a video stream.
enum class VideoDetail
{
    Codes,    // the three codes as they stand
    Decoded,  // size and rate as well; the code of the video format is left out
};

// A text of that many bytes, each a character, up to the first zero.
ZVString ReadText(BlurayCursor& cursor, int64_t size);

// The record of a stream with its PID, from its attributes, at which the cursor stands. Null for a coding type that gives no
// stream. Where the cursor stands afterwards tells nothing.
std::unique_ptr<BlurayStream> ReadStream(BlurayCursor& cursor, uint16_t pid, uint8_t codingType, VideoDetail detail);
}
