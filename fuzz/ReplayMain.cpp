// The main() of a fuzz target where libFuzzer is not there: feeds the target every seed it is given and, for each seed, some
// hundred neighbours (cuts and random damage). The same seeds give the same inputs on every machine and in every run.
//
// Usage: <target> FILE-OR-FOLDER...    Exit status 0 when the target took every input, 1 in every other case. No seed at all
// is a failure too: a replay that replays nothing must not look like a pass.

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

// The target under test; it returns 0 for every input, as libFuzzer demands.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

// Optional set-up of a target, called once.
extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int* argumentCount, char*** arguments);

// From the address sanitizer's run-time library: what to call before it ends the process.
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" __attribute__((weak)) void __sanitizer_set_death_callback(void (*callback)());

// The undefined behaviour sanitizer has a run-time library of its own in some builds, which the call above does not reach:
// it is told to raise SIGABRT, which the handler below sees. UBSAN_OPTIONS in the environment still has the last word.
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" __attribute__((visibility("default"))) const char* __ubsan_default_options()
{
    return "abort_on_error=1:print_stacktrace=1";
}

namespace
{

using Bytes = std::vector<uint8_t>;

constexpr size_t MaximumCuts = 64;              // evenly spread over a long seed; a short one is cut behind each byte
constexpr unsigned RandomNeighbours = 256;      // per seed
constexpr unsigned MaximumDamagesPerInput = 4;  // more only turns every input into noise that the first check refuses
constexpr size_t MaximumMovedBytes = 256;       // removed or repeated at once
constexpr unsigned SecondsPerInput = 20;        // far above what a sanitized parser needs: longer is an endless loop

// Values on which length, count and sign checks stand or fall.
constexpr std::array<uint32_t, 8> EdgeValues = {0, 1, 0x7f, 0x80, 0xff, 0xffff, 0x7fffffff, 0xffffffff};

// What the target is being fed, so that a crash can be told and repeated.
struct
{
    const char* Seed = "";
    unsigned Neighbour = 0;
    const uint8_t* Data = nullptr;
    size_t Size = 0;
    std::string SavePath;
} current;

// Tells which input broke the target and saves it. Runs inside signal handlers: it allocates nothing.
void ReportCurrentInput()
{
    char text[1024];
    int length = std::snprintf(text, sizeof text, "\nreplay: FAILED on neighbour %u (0 is the seed itself), %zu bytes, of %s\n",
                               current.Neighbour, current.Size, current.Seed);
    const int file = open(current.SavePath.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (file >= 0)
    {
        if (write(file, current.Data, current.Size) == static_cast<ssize_t>(current.Size) &&
            length < static_cast<int>(sizeof text))
            length += std::snprintf(text + length, sizeof text - static_cast<size_t>(length),
                                    "replay: the input is saved as %s\n", current.SavePath.c_str());
        close(file);
    }
    const size_t shown = std::min(static_cast<size_t>(length), sizeof text - 1);
    if (write(STDERR_FILENO, text, shown) < 0)
        _exit(1);
}

void OnFatalSignal(int signal)
{
    if (signal == SIGALRM)
    {
        constexpr char TimeText[] = "\nreplay: the target did not come back in time";
        if (write(STDERR_FILENO, TimeText, sizeof TimeText - 1) < 0)
            _exit(1);
    }
    ReportCurrentInput();
    _exit(1);
}

// The sanitizers report crashes in their own way and have handlers already, except for what std::terminate and abort raise.
void WatchForFailures(const char* program)
{
    current.SavePath = std::string(program) + ".failed-input";
    std::signal(SIGALRM, OnFatalSignal);
    std::signal(SIGABRT, OnFatalSignal);
    if (__sanitizer_set_death_callback != nullptr)
    {
        __sanitizer_set_death_callback(ReportCurrentInput);
        return;
    }
    for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL})
        std::signal(signal, OnFatalSignal);
}

// Feeds one input from a block of exactly its size, so that a read behind its end is a read outside the block.
bool Feed(const Bytes& input, unsigned neighbour)
{
    const std::unique_ptr<uint8_t[]> block(new uint8_t[input.size()]);
    std::copy(input.begin(), input.end(), block.get());
    current.Neighbour = neighbour;
    current.Data = block.get();
    current.Size = input.size();

    alarm(SecondsPerInput);
    const int result = LLVMFuzzerTestOneInput(block.get(), input.size());
    alarm(0);
    if (result == 0)
        return true;
    std::fprintf(stderr, "replay: the target returned %d where only 0 is allowed", result);
    ReportCurrentInput();
    return false;
}

// Damages inputs from a random sequence that depends on the seed's content alone: a new seed in the corpus, or another order of
// the files, changes nothing for the others.
class Damager
{
public:
    explicit Damager(const Bytes& seed)
    {
        uint32_t hash = 2166136261u;  // FNV-1a
        for (const uint8_t byte : seed)
            hash = (hash ^ byte) * 16777619u;
        m_random.seed(hash);
    }

    void Damage(Bytes& input)
    {
        for (size_t count = 1 + Below(MaximumDamagesPerInput); count > 0; --count)
            DamageOnce(input);
    }

private:
    // A number from 0 to limit - 1. The library's distributions may differ between implementations; this cannot.
    size_t Below(size_t limit) { return static_cast<size_t>(m_random()) % limit; }

    void DamageOnce(Bytes& input)
    {
        if (input.empty())
        {
            input.push_back(static_cast<uint8_t>(Below(256)));
            return;
        }
        const size_t position = Below(input.size());
        const size_t count = 1 + Below(std::min(MaximumMovedBytes, input.size() - position));
        const auto begin = input.begin() + static_cast<std::ptrdiff_t>(position);
        const auto end = begin + static_cast<std::ptrdiff_t>(count);
        switch (Below(6))
        {
        case 0:  // one bit
            input[position] = static_cast<uint8_t>(input[position] ^ (1u << Below(8)));
            break;
        case 1:  // one byte
            input[position] = static_cast<uint8_t>(Below(256));
            break;
        case 2:  // a number of 2 or 4 bytes, most significant byte first or last
            WriteNumber(input, position);
            break;
        case 3:  // a piece is missing
            input.erase(begin, end);
            break;
        case 4:  // a piece stands there twice
        {
            const Bytes piece(begin, end);
            input.insert(begin, piece.begin(), piece.end());
            break;
        }
        default:  // a piece stands somewhere else too, over what was there
        {
            const Bytes piece(begin, end);
            const size_t target = Below(input.size() - count + 1);
            std::copy(piece.begin(), piece.end(), input.begin() + static_cast<std::ptrdiff_t>(target));
            break;
        }
        }
    }

    void WriteNumber(Bytes& input, size_t position)
    {
        const uint32_t value = EdgeValues[Below(EdgeValues.size())];
        const size_t width = Below(2) == 0 ? 2 : 4;
        const bool lastByteFirst = Below(2) == 0;
        for (size_t i = 0; i < width && position + i < input.size(); ++i)
        {
            const size_t shift = 8 * (lastByteFirst ? i : width - 1 - i);
            input[position + i] = static_cast<uint8_t>(value >> shift);
        }
    }

    std::mt19937 m_random;
};

// Feeds a seed and its neighbours. Returns the number of inputs, or 0 when the target refused one.
unsigned Replay(const Bytes& seed)
{
    unsigned fed = 0;
    if (!Feed(seed, fed++))
        return 0;

    const size_t cuts = std::min(MaximumCuts, seed.size());
    for (size_t i = 0; i < cuts; ++i)
    {
        const size_t length = seed.size() * i / cuts;
        if (!Feed(Bytes(seed.begin(), seed.begin() + static_cast<std::ptrdiff_t>(length)), fed++))
            return 0;
    }

    Damager damager(seed);
    for (unsigned i = 0; i < RandomNeighbours; ++i)
    {
        Bytes input = seed;
        damager.Damage(input);
        if (!Feed(input, fed++))
            return 0;
    }
    return fed;
}

// Adds the seeds that a file or folder stands for. Hidden files are no seeds: they only keep an empty folder in a checkout.
bool CollectSeeds(const std::filesystem::path& path, std::vector<std::filesystem::path>& seeds)
{
    std::error_code error;
    if (std::filesystem::is_regular_file(path, error))
    {
        seeds.push_back(path);
        return true;
    }
    const size_t before = seeds.size();
    for (std::filesystem::recursive_directory_iterator entry(path, error), end; !error && entry != end; entry.increment(error))
        if (entry->is_regular_file(error) && entry->path().filename().native().front() != '.')
            seeds.push_back(entry->path());
    if (error)
        std::fprintf(stderr, "replay: %s: %s\n", path.c_str(), error.message().c_str());
    else if (seeds.size() == before)
        std::fprintf(stderr, "replay: %s holds no seed\n", path.c_str());
    return !error && seeds.size() > before;
}

bool ReadSeed(const std::filesystem::path& path, Bytes& content)
{
    std::ifstream file(path, std::ios::binary);
    content.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    if (file.is_open() && !file.bad())
        return true;
    std::fprintf(stderr, "replay: %s cannot be read\n", path.c_str());
    return false;
}

}  // namespace

int main(int argumentCount, char** arguments)
{
    WatchForFailures(arguments[0]);
    if (LLVMFuzzerInitialize != nullptr)
        LLVMFuzzerInitialize(&argumentCount, &arguments);
    if (argumentCount < 2)
    {
        std::fprintf(stderr, "usage: %s FILE-OR-FOLDER...\n", arguments[0]);
        return 1;
    }

    std::vector<std::filesystem::path> seeds;
    for (int i = 1; i < argumentCount; ++i)
        if (!CollectSeeds(arguments[i], seeds))
            return 1;
    std::sort(seeds.begin(), seeds.end());

    unsigned long long total = 0;
    for (const std::filesystem::path& path : seeds)
    {
        Bytes seed;
        if (!ReadSeed(path, seed))
            return 1;
        current.Seed = path.c_str();
        const unsigned fed = Replay(seed);
        if (fed == 0)
            return 1;
        total += fed;
    }
    std::printf("replay: %zu seeds, %llu inputs, none broke the target\n", seeds.size(), total);
    return 0;
}
