#pragma once

// Reads a value change dump. Understands only what the simulator writes, and throws on anything else.

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

struct ValueChangeDump {
    // The value of every variable, by name, from a time on.
    struct Moment {
        uint64_t nanoseconds;
        std::map<std::string, std::string> values;
    };

    explicit ValueChangeDump(const std::filesystem::path& path) {
        std::ifstream file(path);
        std::map<std::string, std::string> names;  // by identifier
        std::map<std::string, std::string> values;
        for (std::string word, type, bits, identifier, name; file >> word;) {
            if (word == "$dumpvars" || word == "$end") {
                continue;
            }
            if (word == "$var") {
                file >> type >> bits >> identifier >> name;
                names[identifier] = name;
            }
            if (word.front() == '$') {
                while (word != "$end" && file >> word) {
                }
            } else if (word.front() == '#') {
                moments.push_back({std::stoull(word.substr(1)), values});
            } else {
                const bool isLong = word.front() == 'b' || word.front() == 's';
                identifier = word.substr(1);
                if (isLong) {
                    file >> identifier;
                }
                values[names.at(identifier)] = isLong ? word.substr(1) : word.substr(0, 1);
                moments.at(moments.size() - 1).values = values;
            }
        }
        if (moments.empty()) {
            throw std::runtime_error(path.string() + " holds no values");
        }
    }

    std::vector<Moment> moments;  // in the file's order
};
