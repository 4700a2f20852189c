#include "caller/commands/CPictureCommand.h"

#include "caller/files/CWholeFile.h"
#include "caller/files/ReadRegularFile.h"

#include <stdexcept>

void CPictureCommand::AddOptions(CLI::App& app)
{
    app.add_option("SOURCE", m_source, "The picture")->required();
    app.add_option("PICTURE", m_picture, "The one that is made")->required();
    app.add_option("SIZE", m_size, "Pixels that its longer side has at most; 0 for as many as the picture has")->required();
}

ExitStatus CPictureCommand::Run()
{
    const std::optional<std::string> source = ReadRegularFile(m_source, MaximumPictureSize);
    const std::string bytes = CPicture(source.value_or("")).Make(m_size, std::filesystem::path(m_picture).extension());
    if (bytes.empty())
        throw std::runtime_error("the picture cannot be read");
    CWholeFile file(m_picture);
    file.Write(bytes);
    file.Finish();
    return AllDone;
}
