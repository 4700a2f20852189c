#include "system/shield/ZVCallFilter.h"

#include "system/shield/ZVRefusedCalls.h"

#include <cstddef>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <unistd.h>
#include <vector>

namespace
{
using ZVRefusedCalls::Row;
using ZVRefusedCalls::Test;
using ZVRefusedCalls::Unless;

#if defined(__x86_64__)
constexpr uint32_t Machine = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr uint32_t Machine = AUDIT_ARCH_AARCH64;
#else
constexpr uint32_t Machine = 0;
#endif

// On x86-64 the calls of programs with short addresses have this bit; elsewhere there are none with it.
constexpr uint32_t ShortAddresses = 0x40000000;

#if defined(__SANITIZE_ADDRESS__)
constexpr bool IsSanitized = true;
#else
constexpr bool IsSanitized = false;
#endif

// When a filter is installed, the kernel walks through it once for every call there is, to learn which of them are always let through,
// as far as it finds only steps of the simplest kinds. That would be half of what the lock costs each start, and decoders make few calls
// that could gain by it: a step of another kind at the start ends each walk at once.
constexpr sock_filter EndWalk = BPF_STMT(BPF_MISC | BPF_TAX, 0);

// The calls that are refused whatever their arguments are stand in words of bits, a bit for each call, since the kernel makes machine
// code of a filter, and a long one costs each start its time.
constexpr uint32_t BitsOfWord = 32;
constexpr uint32_t BitShift = 5;

using Program = std::vector<sock_filter>;
using RowSpan = std::span<const Row>;

constexpr sock_filter Allow = BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW);

constexpr sock_filter Refuse(uint32_t error)
{
    return BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | error);
}

constexpr sock_filter Load(size_t offset)
{
    return BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<uint32_t>(offset));
}

// Where one half of an argument stands. All machines of the filter have the lower one first.
constexpr sock_filter LoadArgument(uint8_t argument, bool upperHalf)
{
    return Load(offsetof(seccomp_data, args) + argument * sizeof(uint64_t) + (upperHalf ? sizeof(uint32_t) : 0));
}

// Passes over so many instructions when the loaded number compares with a value, and so many others when not.
constexpr sock_filter Jump(uint16_t comparison, uint32_t value, size_t ifTrue, size_t ifFalse)
{
    return BPF_JUMP(static_cast<uint16_t>(BPF_JMP | comparison | BPF_K), value, static_cast<uint8_t>(ifTrue),
                    static_cast<uint8_t>(ifFalse));
}

bool IsLifted(Unless lifted, const ZVShieldRules& rules)
{
    switch (lifted)
    {
    case Unless::HasSockets:
        return rules.Sockets != ZVShieldRules::Network::None;
    case Unless::HasInternet:
        return rules.Sockets == ZVShieldRules::Network::Internet;
    case Unless::RunsPrograms:
        return rules.RunsPrograms;
    case Unless::IsSanitized:
        return IsSanitized;
    case Unless::SanitizedOrPrograms:
        return IsSanitized || rules.RunsPrograms;
    case Unless::Never:
        break;
    }
    return false;
}

// Writes the program of the filter.
class Writer
{
public:
    explicit Writer(const ZVShieldRules& rules) : m_rules(rules) {}

    Program Write()
    {
        Append({EndWalk, Load(offsetof(seccomp_data, arch)), Jump(BPF_JEQ, Machine, 1, 0), Refuse(EPERM),
                Load(offsetof(seccomp_data, nr)), Jump(BPF_JGE, ShortAddresses, 0, 1), Refuse(EPERM)});
        WriteTests(ZVRefusedCalls::Rows);
        WriteWords();
        return std::move(m_program);
    }

private:
    void Append(std::initializer_list<sock_filter> instructions) { m_program.insert(m_program.end(), instructions); }

    // The calls of which some are let through. Falls through for all others, with the number of the call still loaded.
    void WriteTests(RowSpan rows)
    {
        while (!rows.empty())
        {
            const int call = rows.front().Call;
            const auto end = std::ranges::find_if(rows, [call](const Row& row) { return row.Call != call; });
            const RowSpan rowsOfCall = rows.first(static_cast<size_t>(end - rows.begin()));
            if (!IsRefusedAnyway(rowsOfCall))
                WriteTestsOf(rowsOfCall);
            rows = rows.subspan(rowsOfCall.size());
        }
    }

    void WriteTestsOf(RowSpan rows)
    {
        Append({Jump(BPF_JEQ, static_cast<uint32_t>(rows.front().Call), 0, 0)});
        const size_t start = m_program.size();
        for (const Row& row : rows)
            if (row.Kind != Test::None && !IsLifted(row.Lifted, m_rules))
                WriteTest(row);
        if (m_program.size() == start)
            return m_program.pop_back();
        Append({Allow});
        m_program[start - 1].jf = static_cast<uint8_t>(m_program.size() - start);
    }

    bool IsRefusedAnyway(RowSpan rows) const
    {
        return std::ranges::any_of(rows,
                                   [this](const Row& row) { return row.Kind == Test::None && !IsLifted(row.Lifted, m_rules); });
    }

    // The rest are refused when their bits are set.
    void WriteWords()
    {
        std::vector<uint32_t> words(static_cast<size_t>(ZVRefusedCalls::Rows.back().Call) / BitsOfWord + 1);
        for (const Row& row : ZVRefusedCalls::Rows)
            if (IsRefusedAnyway({&row, 1}))
                words[static_cast<size_t>(row.Call) / BitsOfWord] |= 1U << (static_cast<uint32_t>(row.Call) % BitsOfWord);
        // The number of the bit to one register, and that of the word to the other.
        Append({BPF_STMT(BPF_ALU | BPF_AND | BPF_K, BitsOfWord - 1), BPF_STMT(BPF_MISC | BPF_TAX, 0),
                Load(offsetof(seccomp_data, nr)), BPF_STMT(BPF_ALU | BPF_RSH | BPF_K, BitShift)});
        const size_t start = m_program.size();
        for (size_t word = 0; word < words.size(); ++word)
            if (words[word] != 0)
                Append({Jump(BPF_JEQ, static_cast<uint32_t>(word), 0, 2), BPF_STMT(BPF_LD | BPF_IMM, words[word]),
                        BPF_STMT(BPF_JMP | BPF_JA, 0)});
        Append({Allow});
        for (size_t place = start + 2; place < m_program.size(); place += 3)
            m_program[place].k = static_cast<uint32_t>(m_program.size() - place - 1);
        Append({BPF_STMT(BPF_ALU | BPF_RSH | BPF_X, 0), BPF_STMT(BPF_ALU | BPF_AND | BPF_K, 1), Jump(BPF_JEQ, 0, 0, 1), Allow,
                Refuse(EPERM)});
    }

    void WriteTest(const Row& row)
    {
        const sock_filter lower = LoadArgument(row.Argument, false);
        const sock_filter upper = LoadArgument(row.Argument, true);
        const sock_filter mask = BPF_STMT(BPF_ALU | BPF_AND | BPF_K, row.Value);
        switch (row.Kind)
        {
        case Test::None:
            break;
        case Test::Has:
            Append({lower, mask, Jump(BPF_JEQ, row.Value, 0, 1)});
            break;
        case Test::Lacks:
            Append({lower, mask, Jump(BPF_JEQ, row.Value, 1, 0)});
            break;
        case Test::Equals:
            Append({lower, Jump(BPF_JEQ, row.Value, 0, 1)});
            break;
        case Test::Differs:
            Append({lower, Jump(BPF_JEQ, row.Value, 1, 0)});
            break;
        case Test::IsOtherProcess:
            Append({lower, Jump(BPF_JEQ, m_process, 1, 0)});
            break;
        case Test::IsAddress:
            Append({lower, Jump(BPF_JEQ, 0, 0, 2), upper, Jump(BPF_JEQ, 0, 1, 0)});
            break;
        case Test::IsOtherFamily:
            Append({lower});
            for (size_t rest = std::size(ZVRefusedCalls::InternetFamilies); rest > 0; --rest)
                Append({Jump(BPF_JEQ, ZVRefusedCalls::InternetFamilies[rest - 1], rest, 0)});
            break;
        }
        Append({Refuse(EPERM)});
    }

    const ZVShieldRules& m_rules;
    const uint32_t m_process = static_cast<uint32_t>(getpid());
    Program m_program;
};

int Install(Program program, unsigned flags)
{
    const sock_fprog filter {static_cast<unsigned short>(program.size()), program.data()};
    // A positive number is that of a thread which could not follow.
    const long result = syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, flags, &filter);
    if (result > 0)
        return EBUSY;
    return result == 0 ? 0 : errno;
}

// The arguments of this call are in memory, where no filter can look. The C library does without it when it is told that there is
// no such call. It asks for each thread anew, which is nothing for the log of the system.
Program HideNewClone()
{
    return {EndWalk, Load(offsetof(seccomp_data, nr)), Jump(BPF_JEQ, SYS_clone3, 0, 1), Refuse(ENOSYS), Allow};
}
}

int ZVCallFilter::Install(const ZVShieldRules& rules)
{
    if (Machine == 0)
        return ENOTSUP;
    // Without the last flag older kernels would slow all decoders down, against attacks that read what the process has itself.
    constexpr unsigned Flags = SECCOMP_FILTER_FLAG_TSYNC | SECCOMP_FILTER_FLAG_SPEC_ALLOW;
    const int error = ::Install(HideNewClone(), Flags);
    return error != 0 ? error : ::Install(Writer(rules).Write(), Flags | SECCOMP_FILTER_FLAG_LOG);
}
