#include "caller/commands/CPictureCommand.h"

#include "caller/files/CDescriptor.h"
#include "caller/files/ReadRegularFile.h"
#include "caller/output/Messages.h"
#include "caller/picture/CPictureLibrary.h"
#include "caller/picture/LockProcess.h"

#include <cerrno>
#include <climits>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <new>
#include <stdexcept>
#include <unistd.h>

namespace
{
// False with errno if not all of them could be written.
bool Write(int file, std::string_view bytes)
{
    while (!bytes.empty())
    {
        const ssize_t count = write(file, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return false;
        bytes.remove_prefix(static_cast<size_t>(count));
    }
    return true;
}
}

void CPictureCommand::AddOptions(CLI::App& app)
{
    app.add_option("SOURCE", m_source, "The picture")->required();
    app.add_option("PICTURE", m_picture, "The one that is made, which must not be there yet")->required();
    app.add_option("SIZE", m_size, "Pixels that its longer side has at most; 0 for as many as the picture has")->required();
}

ExitStatus CPictureCommand::Run()
{
    // The lock leaves what is open, so whatever this process inherited goes first.
    close_range(STDERR_FILENO + 1, UINT_MAX, 0);
    const std::optional<std::string> source = ReadRegularFile(m_source, MaximumPictureSize);
    if (!source)
        throw std::runtime_error("the picture cannot be read");
    const CDescriptor picture(open(m_picture.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!picture.IsOpen())
        throw std::runtime_error(std::string("the picture cannot be written: ") + strerror(errno));
    // Nothing can be opened from the lock on.
    CPictureLibrary::Get();
    LockProcess();
    // What usually runs at the end of a program would need more than the lock leaves.
    _exit(MakePicture(*source, picture.Get()));
}

ExitStatus CPictureCommand::MakePicture(const std::string& source, int file) const
{
    std::string bytes;
    try
    {
        bytes = CPicture(source).Make(m_size, std::filesystem::path(m_picture).extension());
    }
    catch (const std::bad_alloc&)
    {
        bytes.clear();
    }
    if (!bytes.empty() && Write(file, bytes))
        return AllDone;
    SayError(bytes.empty() ? "the picture cannot be read" : std::string("the picture cannot be written: ") + strerror(errno));
    return SomeFailed;
}
