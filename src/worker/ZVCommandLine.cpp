#include "worker/ZVCommandLine.h"

#include "system/filename/ZVNativePath.h"

namespace
{
// The caller may quote an argument once more than the shell takes away.
constexpr wchar_t StrippedCharacters[] = L"\" ";

constexpr wchar_t QuotedCharacters[] = L" '()";

ZVString AsTyped(ZVString argument)
{
    argument.Replace(L"\"", L"\\\"");
    if (!argument.IsEmpty() && argument.FindOneOf(QuotedCharacters) == -1)
        return argument;
    return ZVFormat(L"\"%s\"", argument);
}
}

void ZVCommandLine::Assign(int32_t argc, char** argv)
{
    m_argc = argc;
    m_argv = argv;
    m_arguments.RemoveAll();
    m_paths.RemoveAll();
    for (int32_t index = 1; index < argc; ++index)
    {
        ZVString argument = ZVString::FromUTF8(argv[index]);
        argument.Trim(StrippedCharacters);
        m_arguments.Add(argument);
        ZVString path = ZVNativePath::UserPathToText(argv[index]);
        path.Trim(StrippedCharacters);
        m_paths.Add(path);
    }
}

bool ZVCommandLine::Match(const wchar_t* name, ZVCommandMatch* match, int32_t minAfter) const
{
    if (match != nullptr)
        match->Clear();
    const int32_t count = m_arguments.GetCount();
    for (int32_t index = 0; index < count - minAfter; ++index)
    {
        if (!m_arguments[index].IsEqual(name, false))
            continue;
        if (match != nullptr)
        {
            match->Command = m_arguments[index];
            for (int32_t parameter = index + 1; parameter < count; ++parameter)
            {
                match->Parameters.Add(m_arguments[parameter]);
                match->Paths.Add(m_paths[parameter]);
            }
        }
        return true;
    }
    return false;
}

ZVString ZVCommandLine::GetJoined(int32_t from) const
{
    ZVStringArray typed;
    for (int32_t index = from < 0 ? 0 : from; index < m_arguments.GetCount(); ++index)
        typed.Add(AsTyped(m_arguments[index]));
    return typed.GetJoined(L" ");
}

ZVString ZVCommandLine::GetArgument(int32_t index) const
{
    return index >= 0 && index < m_arguments.GetCount() ? m_arguments[index] : ZVString();
}

ZVString ZVCommandLine::GetPath(int32_t index) const
{
    return index >= 0 && index < m_paths.GetCount() ? m_paths[index] : ZVString();
}
