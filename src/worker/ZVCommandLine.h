#pragma once

#include "core/containers/ZVStringArray.h"
#include "worker/ZVCommandMatch.h"

// The arguments of the process in their order, without the program's name.
class ZVCommandLine
{
public:
    // Takes argv[1] to argv[argc - 1] from UTF-8, without the blanks and double quotes at both their ends. argv is kept as a
    // pointer.
    void Assign(int32_t argc, char** argv);

    // Looks for the first argument that equals the name, ignoring case, and is followed by at least minAfter others. match, if
    // given, receives it with everything after it, or is cleared.
    bool Match(const wchar_t* name, ZVCommandMatch* match, int32_t minAfter) const;

    // The arguments from an index on with a blank between them, each as a shell user would have typed it: double quotes inside
    // are escaped, and what is empty or holds a blank, an apostrophe or a parenthesis stands in double quotes.
    ZVString GetJoined(int32_t from) const;

    // An argument, or the empty string if it is missing.
    ZVString GetArgument(int32_t index) const;
    // An argument that is a path, see ZVCommandMatch::GetPath.
    ZVString GetPath(int32_t index) const;

    const ZVStringArray& GetArguments() const { return m_arguments; }

private:
    ZVStringArray m_arguments;
    ZVStringArray m_paths;
    int32_t m_argc = 0;
    char** m_argv = nullptr;
};
