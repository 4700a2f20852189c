#pragma once

#include "core/string/ZVString.h"

// Labels of volumes as the device manager lists them: a folder of links to devices, each named after the volume's label.
namespace ZVVolumeLabels
{
inline constexpr wchar_t LabelFolder[] = L"/dev/disk/by-label/";

// The label of the device of that path, which has no symbolic links; empty when it has none.
ZVString Find(const ZVString& device, const ZVString& labelFolder = LabelFolder);

// The name of a link as the label that it stands for: "\x20" is the byte 0x20.
ZVString Decode(const char* linkName);
}
