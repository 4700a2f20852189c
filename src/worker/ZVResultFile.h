#pragma once

class ZVPropertyMap;
class ZVString;

// How the result of a task stands in its file.
enum class ZVResultForm
{
    None,    // the dispatcher writes no file for the task
    UTF8,    // an XMLPH form in UTF-8, without a mark
    Narrow,  // an XMLPH form of one byte a character: the caller reads the devices so, and no other result
};

// Writes the result of a task, with the folders that its file needs. False, with the reason in the log, when it cannot be written;
// a file that was there is then what it was.
bool WriteResult(const ZVPropertyMap& result, const ZVString& path, ZVResultForm form);

// Whether a result written to one path would take the place of the file at another, whatever names and links lead there.
bool WouldReplace(const ZVString& resultPath, const ZVString& inputPath);
