#pragma once

class ZVStringArray;

// The order of a DVD's files, which is that in which they lie on the disc.
namespace CDvdFileOrder
{
// Appends the paths of a DVD's files in their order. Those that have no place in it follow as they come.
void Append(const ZVStringArray& files, ZVStringArray& out);
}
