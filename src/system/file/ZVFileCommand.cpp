#include "system/file/ZVFileCommand.h"

#include "system/file/ZVShellWord.h"
#include "system/library/RunProgram.h"

bool ZVFileCommand::Run(const ZVString& from, const ZVString& to) const
{
    ZVStringArray parameters;
    parameters.Add(Options);
    parameters.Add(ZVShellWord(from));
    parameters.Add(ZVShellWord(to));
    int32_t exitCode = -1;
    if (RunProgram(Program, parameters, nullptr, ZVRunMode::Blocking, &exitCode) && exitCode == 0)
        return true;
    Source.Log("Command failed with %d: %s to %s", exitCode, from, to);
    return false;
}
