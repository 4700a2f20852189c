#pragma once

#include "core/string/ZVString.h"

// Labels of volumes as the device manager lists them: a folder of links to devices, each with the label of its volume as its
// name.
namespace ZVVolumeLabels
{
inline constexpr wchar_t LabelFolder[] = L"/dev/disk/by-label/";

// The label of a device, whose path has no symbolic links; empty if it has no label.
ZVString Find(const ZVString& device, const ZVString& labelFolder = LabelFolder);

// The label that the name of a link stands for: "\x20" is the byte 0x20.
ZVString Decode(const char* linkName);
}
