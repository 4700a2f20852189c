#include "system/file/ZVFileCommand.h"

#include "system/filename/ZVFilename.h"
#include "system/library/RunProgram.h"

namespace
{
// A path as an argument that is never taken for an option.
ZVString AsArgument(const ZVString& path)
{
    ZVString text = path;
    ZVFilename::MakeFileSystemPath(text);
    return text.StartsWith(L'-') ? L"./" + text : text;
}
}

bool ZVFileCommand::Run(const ZVString& from, const ZVString& to) const
{
    ZVStringArray parameters;
    parameters.SetSplit(Options, L' ');
    parameters.Add(AsArgument(from));
    parameters.Add(AsArgument(to));
    int32_t exitCode = -1;
    if (RunProgram(Program, parameters, nullptr, ZVRunMode::Direct, &exitCode) && exitCode == 0)
        return true;
    Source.Log("Command failed with %d: %s to %s", exitCode, from, to);
    return false;
}
