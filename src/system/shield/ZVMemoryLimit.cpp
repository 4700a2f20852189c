#include "system/shield/ZVMemoryLimit.h"

#include <algorithm>
#include <sys/resource.h>

namespace
{
struct Unit
{
    wchar_t Suffix;
    int Power;
};

constexpr Unit Units[] = {
    {L'k', 10},
    {L'm', 20},
    {L'g', 30},
    {L't', 40},
};

int PowerOf(wchar_t suffix)
{
    for (const Unit& unit : Units)
        if (unit.Suffix == (suffix | 0x20))
            return unit.Power;
    return -1;
}

#if defined(__SANITIZE_ADDRESS__)
// The shadow memory of the sanitizer counts as memory of the process.
constexpr bool CanBeLimited = false;
#else
constexpr bool CanBeLimited = true;
#endif
}

int64_t ZVMemoryLimit::Parse(const ZVString& text)
{
    int64_t number = 0;
    int32_t position = 0;
    for (; position < text.GetLength() && text[position] >= L'0' && text[position] <= L'9'; ++position)
        if (__builtin_mul_overflow(number, 10, &number) || __builtin_add_overflow(number, text[position] - L'0', &number))
            return 0;
    if (position == 0 || text.GetLength() - position > 1)
        return 0;
    const int power = position == text.GetLength() ? 0 : PowerOf(text[position]);
    return power < 0 || __builtin_mul_overflow(number, int64_t {1} << power, &number) ? 0 : number;
}

bool ZVMemoryLimit::Set(int64_t bytes)
{
    if (!CanBeLimited)
        return true;
    rlimit limit;
    if (getrlimit(RLIMIT_DATA, &limit) != 0)
        return false;
    limit.rlim_max = std::min(limit.rlim_max, static_cast<rlim_t>(bytes));
    limit.rlim_cur = std::min(limit.rlim_cur, limit.rlim_max);
    return setrlimit(RLIMIT_DATA, &limit) == 0;
}
