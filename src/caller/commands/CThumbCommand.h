#pragma once

#include "caller/commands/CCommand.h"
#include "caller/commands/CWorkerOptions.h"
#include "caller/tasks/CFilmTask.h"

#include <string>

// `zivora thumb`: a picture of a film.
class CThumbCommand : public CCommand
{
public:
    const char* GetName() const override { return "thumb"; }
    const char* GetPurpose() const override { return "Write a picture of a film"; }
    const char* GetExample() const override { return "zivora thumb film.mkv film.jpg --at 1:30 --size 256"; }
    void AddOptions(CLI::App& app) override;
    ExitStatus Run() override;

private:
    std::string GetExtension() const;

    std::string m_film;
    std::string m_picture;
    std::string m_time;
    std::string m_format;
    CPictureWish m_wish;
    CWorkerOptions m_worker;
    bool m_isJSON = false;
};
