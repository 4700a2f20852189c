#pragma once

#include "contracts/ZVFormatRecord.h"

#include <cstdint>

class ZVString;

// The format engine: appends a format to out with its conversions filled from typed arguments, taken one by one from left to
// right.
//
//   %[blank][width][.precision][l|I64]conversion
//
//   %s %S        text; the width is the most characters that are taken, nothing pads
//   %d %i %u     decimal number; width or else precision is the least count of digits, padded with zeros, or, after a blank, with
//                blanks
//   %x %X        hexadecimal number; %h the same with "0x" and at least 8 digits, %p with at least 16
//   %c           one character from 1 to 0xffff
//   %f           decimal number; precision is the fixed count of decimals, width the least count of digits before the point
//   %%           a percent sign; any other character stands for itself
//
// A missing argument or one of the wrong kind counts as 0 or as no text and is used up. No argument may refer to out.
void ZVAppendFormat(ZVString& out, const wchar_t* format, const ZVFormatRecord* const* arguments, int32_t count);
