#pragma once

#include "caller/commands/CCommand.h"
#include "caller/picture/CPicture.h"

#include <string>

// What the program runs as a process of its own: the making of a picture out of one that can be a stranger's. The process locks itself in
// before it looks at it, and ends in there. No help lists it.
class CPictureCommand : public CCommand
{
public:
    const char* GetName() const override { return PictureCommandName; }
    const char* GetPurpose() const override { return "Make a picture of another size or format"; }
    const char* GetExample() const override { return "zivora make-picture cover.jpg small.webp 256"; }
    bool IsInternal() const override { return true; }
    void AddOptions(CLI::App& app) override;
    ExitStatus Run() override;

private:
    ExitStatus MakePicture(const std::string& source, int file) const;

    std::string m_source;
    std::string m_picture;
    int m_size = 0;
};
