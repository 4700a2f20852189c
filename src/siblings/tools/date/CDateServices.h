#pragma once

#include "contracts/IZVDateServices.h"

// The date services of the library. They hold nothing, so any thread may use them. The texts that are read are listed in
// CDateReader.
class CDateServices final : public IZVDateServices
{
public:
    // A year alone gives a year, every other date without a time a day. A result before the year 1 or after the year 9999 is no
    // date.
    double Parse(const wchar_t* text, int32_t flags) override;
};
