#pragma once

#include "core/string/ZVString.h"
#include "system/loader/CFileSink.h"

// New content for a file that exists. It is written to a file beside that one and takes its place when it is whole. A symbolic
// link to the file stays, and the new file has the permission bits of the old one.
class CFileReplacement
{
public:
    // The extension is that of the file beside it.
    CFileReplacement(const ZVString& path, const wchar_t* extension);
    // Deletes what was not committed.
    ~CFileReplacement() { m_sink.Discard(); }
    CFileReplacement(const CFileReplacement&) = delete;
    CFileReplacement& operator=(const CFileReplacement&) = delete;

    // Takes the new content.
    CFileSink& GetSink() { return m_sink; }
    // Puts what was written in the place of the old file, once the sink is closed.
    bool Commit();

private:
    ZVString m_path;
    CFileSink m_sink;
};
