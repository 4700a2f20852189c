#pragma once

#include "contracts/ZVFormatRecord.h"

#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <type_traits>

class ZVString;

// One argument of a format text. The constructors are the complete list of what can be formatted. Integers are extended to 64
// bits by the sign of their own type. A text is not copied, so it must outlive the argument.
struct ZVFormatArgument : ZVFormatRecord
{
    explicit ZVFormatArgument(const char* text) : ZVFormatRecord {ZVFormatCode::UTF8Text, std::bit_cast<int64_t>(text)} {}
    explicit ZVFormatArgument(const wchar_t* text) : ZVFormatRecord {ZVFormatCode::WideText, std::bit_cast<int64_t>(text)} {}
    explicit ZVFormatArgument(const ZVString& text) : ZVFormatRecord {ZVFormatCode::String, std::bit_cast<int64_t>(&text)} {}
    explicit ZVFormatArgument(double value) : ZVFormatRecord {ZVFormatCode::Double, std::bit_cast<int64_t>(value)} {}

    template <std::integral Integer>
    explicit ZVFormatArgument(Integer value) : ZVFormatRecord {ZVFormatCode::Integer, static_cast<int64_t>(value)}
    {
    }

    // clang-format off
    // The address itself, for %p.
    template <class Pointer>
        requires(std::same_as<std::remove_cv_t<Pointer>, void>)
    explicit ZVFormatArgument(Pointer* pointer) : ZVFormatRecord {ZVFormatCode::Integer, std::bit_cast<int64_t>(pointer)}
    {
    }

    template <class Enumeration>
        requires(std::is_enum_v<Enumeration>)
    ZVFormatArgument(Enumeration) = delete;
    // clang-format on
    ZVFormatArgument(std::nullptr_t) = delete;
};

// The arguments of one call, in the form that the format engine and the log manager take.
template <size_t ArgumentCount>
class ZVFormatArguments
{
public:
    static constexpr size_t MaximumCount = 20;
    static_assert(ArgumentCount <= MaximumCount, "a format takes at most 20 arguments");

    template <class... Arguments>
    explicit ZVFormatArguments(const Arguments&... arguments) : m_arguments {ZVFormatArgument(arguments)...}
    {
        for (size_t index = 0; index < ArgumentCount; ++index)
            m_records[index] = &m_arguments[index];
    }

    ZVFormatArguments(const ZVFormatArguments&) = delete;
    ZVFormatArguments& operator=(const ZVFormatArguments&) = delete;

    const ZVFormatRecord* const* Records() const { return m_records; }
    int32_t Count() const { return static_cast<int32_t>(ArgumentCount); }

private:
    ZVFormatArgument m_arguments[ArgumentCount];
    const ZVFormatRecord* m_records[ArgumentCount];
};

template <>
class ZVFormatArguments<0>
{
public:
    const ZVFormatRecord* const* Records() const { return nullptr; }
    int32_t Count() const { return 0; }
};
