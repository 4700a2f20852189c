#pragma once

#include "core/string/ZVString.h"
#include "video/codec/CZVAVLibraries.h"

#include <cstdint>

class ZVPropertyMap;

// What a container says of its streams. The libraries must be loaded.
namespace ZVStreamFacts
{
// A tag of a stream. If it is missing, the tag with "-" and a language after its name, as Matroska's statistics have it:
// "BPS-eng". Empty if there is neither.
ZVString GetStreamTag(const CZVAVLibraries& codec, const AVStream& stream, const char* key);

// The bit rate in kilobits per second, or 0. Some containers tell the truth about it in a tag, some in the stream's parameters,
// and most of them only for audio.
int32_t BitrateKbps(const CZVAVLibraries& codec, const AVFormatContext& context, const AVStream& stream);

// The name of the language that the container tells of a stream; empty when it tells none that is known.
ZVString GetLanguage(const CZVAVLibraries& codec, const AVStream& stream);

// A stream of a container, with the name of its language.
struct ListedStream
{
    const AVFormatContext& Container;
    const AVStream& Stream;
    ZVString Language;
};

// Add one more stream to the lists of its kind, in which every entry is followed by ";", an empty one too.
void AddAudioStream(ZVPropertyMap& properties, const CZVAVLibraries& codec, const ListedStream& listed);
void AddSubtitleStream(ZVPropertyMap& properties, const CZVAVLibraries& codec, const ListedStream& listed);

// The first side data of a kind with at least that many bytes, or null.
const void* FindSideData(const AVCodecParameters& parameters, AVPacketSideDataType type, size_t minimumSize);
}
