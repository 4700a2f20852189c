#include "caller/plan/CResultFile.h"

#include "caller/plan/ShardResults.h"

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <unistd.h>

CResultFile::CResultFile(const CPlan& plan, int64_t shard) : m_path(plan.GetResultFolder(shard) / (MakeUniqueName() + ".jsonl"))
{
    std::error_code error;
    std::filesystem::create_directories(m_path.parent_path(), error);
    errno = error.value();
    if (error)
        Fail();
    m_file.reset(fopen(m_path.c_str(), "axe"));
    if (m_file == nullptr)
        Fail();
    WriteLine(MakeResultHead(plan, shard));
}

void CResultFile::Write(const CFilmResult& result)
{
    WriteLine(MakeLine(result));
}

void CResultFile::WriteLine(const std::string& line)
{
    if (fputs((line + '\n').c_str(), m_file.get()) < 0 || fflush(m_file.get()) != 0)
        Fail();
}

void CResultFile::Finish()
{
    if (fsync(fileno(m_file.get())) != 0)
        Fail();
}

void CResultFile::Fail() const
{
    throw std::runtime_error("the results " + m_path.string() + " cannot be written: " + strerror(errno));
}
