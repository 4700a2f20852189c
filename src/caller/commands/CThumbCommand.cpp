#include "caller/commands/CThumbCommand.h"

#include "caller/commands/CheckName.h"
#include "caller/commands/RunOne.h"
#include "caller/files/CWholeFile.h"
#include "caller/film/ReadTime.h"
#include "caller/output/FilmJSON.h"
#include "caller/output/Messages.h"
#include "caller/picture/CPicture.h"

#include <iostream>

namespace
{
// As large as a side of a picture can be in the formats that are written.
constexpr int MaximumSize = 16383;

std::string CheckTime(const std::string& text)
{
    return ReadTime(text) ? "" : "it is no time: " + text;
}

}

void CThumbCommand::AddOptions(CLI::App& app)
{
    app.add_option("FILE", m_film, "The film")->required()->check(CheckName);
    app.add_option("PICTURE", m_picture, "The picture; its name ends with .jpg, .png or .webp, or --format says what it is")
        ->required();
    app.add_option("--at", m_time, "The place in the film, in seconds or as 1:02:03.5; by default 5 seconds")
        ->check(CheckTime)
        ->type_name("TIME");
    app.add_option("--size", m_wish.Size, "Pixels that the longer side has at most; by default the size of the film")
        ->check(CLI::Range(1, MaximumSize).description(""))
        ->type_name("N");
    app.add_option("--format", m_format, "The format of the picture; by default that of its name")
        ->check(CLI::IsMember({"jpg", "png", "webp"}))
        ->type_name("FORMAT");
    app.add_flag("--json", m_isJSON, "The names as an object");
    m_worker.AddTo(app, CWorkerOptions::Jobs::One);
}

ExitStatus CThumbCommand::Run()
{
    if (!m_time.empty())
        m_wish.Milliseconds = *ReadTime(m_time);
    m_wish.Extension = GetExtension();
    std::error_code ignored;
    if (std::filesystem::equivalent(m_film, m_picture, ignored))
        throw CLI::ValidationError("PICTURE", "it is the film itself, which would be lost: " + m_picture);
    std::optional<CFindings> findings = RunOne(m_film, TaskKind::Picture, m_worker.GetSettings(), m_wish);
    if (!findings)
        return Interrupted;
    if (findings->Errors.empty() && findings->Picture.empty())
        findings->Errors["thumbs"] = "there is no picture in it";
    const std::string error = findings->GetError();
    if (error.empty())
    {
        CWholeFile file(m_picture);
        file.Write(findings->Picture);
        file.Finish();
        findings->Film.Values["picture"] = ToUTF8(m_picture);
    }
    if (m_isJSON)
        std::cout << MakeFilmJSON(findings->Film, error) << '\n';
    else if (!error.empty())
        SayFailure(m_film, error);
    return error.empty() ? AllDone : SomeFailed;
}

// Decides on the format alone. The name of the picture may say something else, or nothing.
std::string CThumbCommand::GetExtension() const
{
    if (!m_format.empty())
        return "." + m_format;
    const std::string extension = std::filesystem::path(m_picture).extension();
    if (!IsPictureExtension(extension))
        throw CLI::ValidationError("PICTURE",
                                   "its name must end with .jpg, .png or .webp, or --format must say what it is: " + m_picture);
    return extension;
}
