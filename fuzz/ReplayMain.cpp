// The main() of a fuzz target where libFuzzer is not there: feeds the target every seed it is given and, for each seed, some
// hundred neighbours (cuts and random damage). The same seeds give the same inputs on every machine and in every run.
//
// Usage: <target> FILE-OR-FOLDER...    Exit status 0 when the target took every input, 1 in every other case. No seed at all
// is a failure too: a replay that replays nothing must not look like a pass.

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <set>
#include <span>
#include <string>

#include <fcntl.h>
#include <unistd.h>

// The target under test; it returns 0 for every input, as libFuzzer demands.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

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
constexpr size_t MaximumCuts = 64;          // evenly spread over a long seed; a short one is cut after each byte
constexpr unsigned RandomNeighbours = 256;  // per seed
constexpr size_t MaximumDamages = 4;        // more only turns every input into noise that the first check refuses
constexpr size_t MaximumMovedBytes = 256;   // removed or repeated at once
constexpr unsigned SecondsPerInput = 20;    // far above what a sanitized parser needs: longer is an endless loop

// Values on which length, count and sign checks stand or fall.
constexpr uint32_t EdgeValues[] = {0, 1, 0x7f, 0x80, 0xff, 0xffff, 0x7fffffff, 0xffffffff};

// What the target is being fed, so that a crash can be told and repeated.
char failure[1024];
std::string savePath;
const uint8_t* currentData = nullptr;
size_t currentSize = 0;

// Tells which input broke the target and saves it. Runs inside signal handlers: it allocates nothing.
void ReportCurrentInput()
{
    const int file = open(savePath.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (write(STDERR_FILENO, failure, strlen(failure)) < 0 || write(file, currentData, currentSize) < 0)
        _exit(1);
}

void OnFatalSignal(int)
{
    ReportCurrentInput();
    _exit(1);
}

// Feeds one input from a block of exactly its size, so that a read past its end is a read outside the block.
void Feed(const std::string& input, const char* seed, unsigned neighbour)
{
    const auto block = std::make_unique<uint8_t[]>(input.size());
    std::ranges::copy(input, block.get());
    currentData = block.get();
    currentSize = input.size();
    std::snprintf(failure, sizeof failure,
                  "\nreplay: FAILED or out of time on neighbour %u (0 is the seed itself) of %s, saved as %s\n", neighbour, seed,
                  savePath.c_str());
    alarm(SecondsPerInput);
    if (LLVMFuzzerTestOneInput(block.get(), input.size()) != 0)
        std::raise(SIGABRT);
    alarm(0);
}

// Does one damage. The library's distributions may differ between implementations; the remainder of a random number cannot.
void Damage(std::string& input, std::mt19937& random)
{
    const auto below = [&random](size_t limit) { return static_cast<size_t>(random()) % limit; };
    if (input.empty())
        input.push_back('\0');
    const size_t position = below(input.size());
    const std::string piece = input.substr(position, 1 + below(MaximumMovedBytes));
    const uint32_t value = EdgeValues[below(std::size(EdgeValues))];
    const bool isLastFirst = below(2) == 0;
    const size_t kind = below(4);
    if (kind == 0)  // one bit is flipped
        input[position] = static_cast<char>(input[position] ^ (1 << below(8)));
    else if (kind == 1)  // a number of 4 bytes is written, most significant byte first or last
        for (size_t index = 0; index < 4 && position + index < input.size(); ++index)
            input[position + index] = static_cast<char>(value >> 8 * (isLastFirst ? index : 3 - index));
    else if (kind == 2)  // a piece is missing
        input.erase(position, piece.size());
    else  // a piece stands there twice
        input.insert(position, piece);
}

// Feeds a seed and its neighbours and tells how many inputs that were. The damage depends on the seed's content alone: a new seed
// in the corpus, or another order of the files, changes nothing for the others.
unsigned Replay(const std::string& seed, const char* name)
{
    unsigned fed = 0;
    Feed(seed, name, fed++);
    const size_t cuts = std::min(MaximumCuts, seed.size());
    for (size_t cut = 0; cut < cuts; ++cut)
        Feed(seed.substr(0, seed.size() * cut / cuts), name, fed++);
    std::seed_seq content(seed.begin(), seed.end());
    std::mt19937 random(content);
    for (unsigned neighbour = 0; neighbour < RandomNeighbours; ++neighbour)
    {
        std::string input = seed;
        for (size_t damages = 1 + random() % MaximumDamages; damages > 0; --damages)
            Damage(input, random);
        Feed(input, name, fed++);
    }
    return fed;
}
}

int main(int argumentCount, char** arguments)
{
    savePath = std::string(arguments[0]) + ".failed-input";
    // The sanitizers report crashes in their own way and have handlers already, except for what std::terminate and abort raise.
    const bool isSanitized = __sanitizer_set_death_callback != nullptr;
    if (isSanitized)
        __sanitizer_set_death_callback(ReportCurrentInput);
    for (const int signal : {SIGALRM, SIGABRT, SIGSEGV, SIGBUS, SIGFPE, SIGILL})
        if (!isSanitized || signal == SIGALRM || signal == SIGABRT)
            std::signal(signal, OnFatalSignal);
    std::set<std::filesystem::path> seeds;
    for (const char* argument : std::span(arguments, static_cast<size_t>(argumentCount)).subspan(1))
        if (!std::filesystem::is_directory(argument))
            seeds.insert(argument);
        else  // Hidden files are no seeds: they only keep an empty folder in a checkout.
            for (const auto& entry : std::filesystem::directory_iterator(argument))
                if (entry.path().filename().native().front() != '.')
                    seeds.insert(entry.path());

    unsigned long long total = 0;
    for (const std::filesystem::path& path : seeds)
    {
        std::ifstream file(path, std::ios::binary);
        const std::string seed {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
        if (!file.is_open() || file.bad())
            return std::fprintf(stderr, "replay: %s cannot be read\n", path.c_str()), 1;
        total += Replay(seed, path.c_str());
    }
    std::printf("replay: %zu seeds, %llu inputs, none broke the target\n", seeds.size(), total);
    return total > 0 ? 0 : 1;
}
