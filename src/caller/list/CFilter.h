#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

// A condition that films are chosen by, such as `hdr=DolbyVision and width>=3840`, as a part of a query of a catalog.
//
//   condition   names of fields, compared with values by = != ~ (contains) < <= > >=, joined by and, or, not and parentheses.
//               A name alone means that the film has a value there.
//   name        a field, or a key of the worker's results between double quotes: "Video Scan"=Interlaced
//   value       a word, or any text between single or double quotes. Numbers may have a unit, k, M, G or T, or be times, 1:30:00.
//
// Case does not count in texts and names, as far as their letters are those of ASCII. A list has a value when one of its entries has it.
// What is not known fulfills no comparison but !=.
class CFilter
{
public:
    // No condition at all.
    CFilter() = default;
    // Throws std::runtime_error that says where the text is wrong.
    explicit CFilter(const std::string& text);

    // A condition of SQL, and the values of its parameters in their order.
    const std::string& GetSQL() const { return m_sql; }
    const std::vector<nlohmann::json>& GetValues() const { return m_values; }

private:
    std::string m_sql = "1";
    std::vector<nlohmann::json> m_values;
};
