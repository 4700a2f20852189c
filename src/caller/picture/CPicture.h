#pragma once

#include <cstdint>
#include <gd.h>
#include <memory>
#include <string>
#include <string_view>

// The name of the command in which the program reads pictures: in a process of its own, since they can be strangers' files.
constexpr char PictureCommandName[] = "make-picture";

// A file of a picture has at most so many bytes, which is far more than any film's cover.
constexpr uint64_t MaximumPictureSize = 256 << 20;

// A picture that was read from a file. The library that reads, scales and writes pictures is opened with the first one, since most
// commands need none of it.
class CPicture
{
public:
    // Takes the bytes of a file, whose first ones say what format it is. What cannot be read is a picture without a size.
    // Throws std::runtime_error if the library is not there.
    explicit CPicture(std::string_view bytes);

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

// Whether the bytes of a file have the format of an extension, by the first of them.
bool HasFormat(std::string_view bytes, const std::string& extension);
