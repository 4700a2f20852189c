#pragma once

#include <bit>
#include <cstdint>
#include <string>
#include <string_view>

// The bytes of a recording's stub.
namespace StubBytes
{
template <class Integer>
std::string Number(Integer value)
{
    return {reinterpret_cast<const char*>(&value), sizeof value};
}

inline std::string Path(std::string_view bytes)
{
    return Number(static_cast<uint16_t>(bytes.size())) + std::string(bytes);
}

inline std::string Path(std::u32string_view text)
{
    return Path(std::string_view(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char32_t)));
}

template <class... Texts>
std::string Stub(int32_t version, const Texts&... paths)
{
    std::string bytes = "ZTVS" + Number(version);
    for (const int64_t number : {int64_t {1}, int64_t {-2}, int64_t {3}, int64_t {4'000'000'000}})
        bytes += Number(number);
    return (bytes + ... + Path(std::u32string_view(paths)));
}
}
