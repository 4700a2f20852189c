#include "system/library/ZVStandardOutput.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cwchar>
#include <poll.h>
#include <string>
#include <string_view>
#include <unistd.h>

namespace
{
constexpr char Unprintable = '?';

// Appends a character in the bytes of the locale.
void AppendEncoded(std::string& bytes, wchar_t character)
{
    char encoded[MB_LEN_MAX];
    mbstate_t state {};
    const size_t count = wcrtomb(encoded, character, &state);
    if (count == static_cast<size_t>(-1))
        bytes.push_back(Unprintable);
    else
        bytes.append(encoded, count);
}

// The caller may have handed over a pipe that does not wait for its reader. This does: a report that is cut tells nothing. An output
// that is gone takes the rest with it.
void WriteAll(std::string_view bytes)
{
    while (!bytes.empty())
    {
        const ssize_t written = write(STDOUT_FILENO, bytes.data(), bytes.size());
        if (written > 0)
            bytes.remove_prefix(static_cast<size_t>(written));
        else if (written == -1 && errno == EAGAIN)
        {
            pollfd output {STDOUT_FILENO, POLLOUT, 0};
            poll(&output, 1, -1);
        }
        else if (written == -1 && errno != EINTR)
            return;
    }
}
}

void ZVStandardOutput::MakeWide()
{
    fwide(stdout, 1);
}

void ZVStandardOutput::Print(const ZVString& text)
{
    std::string bytes;
    for (const wchar_t character : text.View())
        AppendEncoded(bytes, character);
    WriteAll(bytes);
}
