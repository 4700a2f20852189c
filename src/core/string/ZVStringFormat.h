#pragma once

#include "contracts/ZVFormatRecord.h"

#include <cstdint>

class ZVString;

// The format engine: appends a format to out and fills its conversions from typed arguments, one after the other.
//
//   %[blank][width][.precision][l|I64]conversion
//
//   %s %S        text; the width is the largest number of characters, there is no padding
//   %d %i %u     decimal number; the width, or else the precision, is the smallest number of digits, padded with zeros or, after
//                a blank, with blanks
//   %x %X        hexadecimal number; %h the same with "0x" and at least 8 digits, %p with at least 16
//   %c           one character from 1 to 0xffff
//   %f           decimal number; the precision is the fixed number of decimals, the width the smallest number of digits before
//                the point
//   %%           a percent sign; any other character stands for itself
//
// An argument that is missing or of the wrong kind counts as 0 or as no text; one of the wrong kind is still used up. No argument
// may refer to out.
void ZVAppendFormat(ZVString& out, const wchar_t* format, const ZVFormatRecord* const* arguments, int32_t count);
