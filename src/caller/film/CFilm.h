#pragma once

#include <nlohmann/json.hpp>
#include <string>

// What the worker found out about a film, by the keys of its results: texts, numbers, and lists of them, one entry for each stream. An
// entry of a list that is not known is null.
struct CFilm
{
    std::string Path;  // as bytes
    nlohmann::json Values = nlohmann::json::object();

    // Adds the values of a result about the film; those that it has already give way. What this program says of a film by itself is none of them:
    // a film may have tags of any name.
    void Add(const nlohmann::json& result);

    // The text of a value; a number as it reads. Empty for a list, and when there is none.
    std::string GetText(const char* key) const;
    // 0 when there is none.
    double GetNumber(const char* key) const;
    // The list of a key, or an empty one.
    const nlohmann::json& GetList(const char* key) const;
    // Whether it is known to be a sound file.
    bool IsSound() const { return GetText("Media Type") == "Audio"; }
};

// A text of any bytes as UTF-8, in which what is none is U+FFFD.
std::string ToUTF8(const std::string& bytes);

// The bytes of a name that is no UTF-8, with each of those from 80 on and each control character, quotation mark and backslash as
// \xHH; empty for a name that needs no such form.
std::string EscapeBytes(const std::string& bytes);
