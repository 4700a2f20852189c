#pragma once

#include <cstdint>

// The date services number 1 of the tools library: reading dates as people and programs write them. May be called from any thread.
class IZVDateServices
{
public:
    // The flag with which a time that has a zone is given as local time. Without it, it is given as UTC. A time without a zone is given as it
    // stands in both.
    static constexpr int32_t LocalTime = 1;

    // The date of a text as a count of days in which 25569.0 is 1970-01-01; 0.0 when the text is no date. The fraction of the day tells
    // how much of the date the text named: a year alone, a day, or a time.
    virtual double Parse(const wchar_t* text, int32_t flags) = 0;

protected:
    ~IZVDateServices() = default;
};
