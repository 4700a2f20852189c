#pragma once

#include "caller/plan/CPlan.h"
#include "caller/plan/PlanLines.h"

#include <cstdio>
#include <memory>

// The results of one run on a shard, in a file of its own. Each is in it as soon as it is written; a process
// that is killed leaves all that it wrote, and perhaps the start of one more line.
//
// Failures are thrown as std::runtime_error that names the file and the reason.
class CResultFile
{
public:
    CResultFile(const CPlan& plan, int64_t shard);

    void Write(const CFilmResult& result);
    // All that was written is on the disk after that.
    void Finish();

private:
    struct Close
    {
        void operator()(FILE* file) const { fclose(file); }
    };

    void WriteLine(const std::string& line);
    [[noreturn]] void Fail() const;

    std::filesystem::path m_path;
    std::unique_ptr<FILE, Close> m_file;
};
