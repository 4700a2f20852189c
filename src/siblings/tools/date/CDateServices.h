#pragma once

#include "contracts/IZVDateServices.h"

// The date services of the library. They have no state, so any thread may use them. CDateReader lists the forms of dates that are
// read.
class CDateServices final : public IZVDateServices
{
public:
    // Returns a year for a year alone, and a day for any other date without a time. A result before the year 1 or after the year
    // 9999 is not a date.
    double Parse(const wchar_t* text, int32_t flags) override;
};
