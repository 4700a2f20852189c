#include "caller/output/Messages.h"

#include "caller/film/CFilm.h"

#include <cstdint>
#include <iostream>

void SayError(const std::string& text)
{
    std::cerr << "zivora: " + MakePlain(ToUTF8(text)) + "\n";
}

void SayFailure(const std::string& path, const std::string& reason)
{
    SayError(path + ": " + reason);
}

std::string MakePlain(const std::string& text)
{
    std::string plain = text;
    for (char& letter : plain)
        if (static_cast<uint8_t>(letter) < 0x20 || letter == 0x7f)
            letter = ' ';
    return plain;
}
