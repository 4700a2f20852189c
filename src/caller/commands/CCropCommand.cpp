#include "caller/commands/CCropCommand.h"

#include "caller/commands/CheckName.h"
#include "caller/commands/RunOne.h"
#include "caller/film/ReadBlackBars.h"
#include "caller/output/CropText.h"
#include "caller/output/FilmJSON.h"
#include "caller/output/Messages.h"

#include <iostream>

void CCropCommand::AddOptions(CLI::App& app)
{
    app.add_option("FILE", m_film, "The film")->required()->check(CheckName);
    app.add_flag("--json", m_isJSON,
                 "An object, in which \"crop\" stands for ffmpeg, or is null where nothing should be cut off");
    m_worker.AddTo(app, CWorkerOptions::Jobs::One);
}

ExitStatus CCropCommand::Run()
{
    std::optional<CFindings> findings = RunOne(m_film, TaskKind::Bars, m_worker.GetSettings());
    if (!findings)
        return Interrupted;
    const std::string error = findings->GetError();
    if (m_isJSON)
    {
        if (error.empty())
            findings->Film.Values["crop"] =
                IsSureCrop(findings->Film) ? nlohmann::json(MakeCropFilter(GetCrop(findings->Film))) : nlohmann::json();
        std::cout << MakeFilmJSON(findings->Film, error) << '\n';
    }
    else if (error.empty())
        std::cout << MakeCropText(findings->Film);
    else
        SayFailure(m_film, error);
    return error.empty() ? AllDone : SomeFailed;
}
