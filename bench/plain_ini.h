#pragma once

#include <fstream>
#include <map>
#include <string>
#include <string_view>

/// The plain way with an INI file, which the library is held against: std::getline into a map of maps, and out again.
namespace plain_ini {

using Section = std::map<std::string, std::string>;
using File = std::map<std::string, Section>;

inline std::string_view trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(" \t\r");
    if (first == text.npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

template <class Header, class Parameter>
void read_lines(const std::string& path, const Header& header, const Parameter& parameter)
{
    std::ifstream file{path};
    std::string line;
    while (std::getline(file, line)) {
        const std::string_view text = trimmed(line);
        if (text.empty() || text.front() == ';')
            continue;
        if (text.front() == '[' && text.back() == ']') {
            header(trimmed(text.substr(1, text.size() - 2)));
            continue;
        }
        const std::size_t sign = text.find('=');
        parameter(trimmed(text.substr(0, sign)), sign == text.npos ? std::string_view{} : trimmed(text.substr(sign + 1)));
    }
}

inline File load(const std::string& path)
{
    File sections;
    std::string section;
    read_lines(
        path, [&](std::string_view name) { section = name; },
        [&](std::string_view name, std::string_view value) { sections[section][std::string{name}] = value; });
    return sections;
}

/// The same with the section looked up once for its header, not for every line.
inline File load_keeping_section(const std::string& path)
{
    File sections;
    Section* section = &sections[""];
    read_lines(
        path, [&](std::string_view name) { section = &sections[std::string{name}]; },
        [&](std::string_view name, std::string_view value) { (*section)[std::string{name}] = value; });
    return sections;
}

inline void save(const File& sections, const std::string& path)
{
    std::ofstream file{path};
    for (const auto& [name, section] : sections) {
        if (!name.empty())
            file << '[' << name << "]\n";
        for (const auto& [parameter, value] : section)
            file << parameter << '=' << value << '\n';
        file << '\n';
    }
}

} // namespace plain_ini
