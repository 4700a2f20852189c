#pragma once

#include <cstdint>

// The date services number 1 of the tools library: reading dates as people and programs write them. May be called from any
// thread.
class IZVDateServices
{
public:
    // With this flag a time with a zone is returned as local time, otherwise as UTC. A time without a zone is never converted.
    static constexpr int32_t LocalTime = 1;

    // The date in a text, as a number of days in which 25569.0 is 1970-01-01; 0.0 if the text is not a date. The fraction of the
    // day says how much of the date was in the text: only a year, a day, or a time. A month is its first day.
    virtual double Parse(const wchar_t* text, int32_t flags) = 0;

protected:
    ~IZVDateServices() = default;
};
