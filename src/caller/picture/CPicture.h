#pragma once

#include <filesystem>
#include <gd.h>
#include <memory>
#include <string>

// The name of the command in which the program reads pictures: in a process of its own, since they can be strangers' files.
constexpr char PictureCommandName[] = "make-picture";

// A picture that was read from a file. The library that reads, scales and writes pictures is opened with the first one, since most
// commands need none of it.
class CPicture
{
public:
    // Takes the format from the first bytes of the file. What cannot be read is a picture without a size.
    // Throws std::runtime_error if the library is not there.
    explicit CPicture(const std::filesystem::path& file);

    // The bytes of a file in the format of an extension (.jpg, .jpeg, .png or .webp) with the picture, whose longer side then has at
    // most so many pixels, or as many as it has for 0. Empty if there is no picture, no memory for it, or no such format.
    std::string Make(int size, const std::string& extension) const;

private:
    struct Destroy
    {
        void operator()(gdImage* image) const;
    };
    using Image = std::unique_ptr<gdImage, Destroy>;

    Image m_image;
};

// Whether pictures can be written with an extension, in any case.
bool IsPictureExtension(const std::string& extension);

// Whether a file has the format of an extension, by its first bytes.
bool HasFormat(const std::filesystem::path& file, const std::string& extension);
