// What fuzzing begins with, written by programs.

#pragma once

#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

/// A program NAME FOLDER: writes each seed to a file of that folder, and the names of the files, as the
/// fuzzer wants them, to the file "list" in it.
inline int writeSeeds(int argc, char **argv, const std::vector<std::string> &seeds)
{
    if (argc != 2) {
        std::cerr << "usage: " << argv[0] << " FOLDER\n";
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    std::filesystem::create_directories(folder);
    std::ofstream list(folder / "list");
    int number = 0;
    for (const std::string &seed : seeds) {
        const std::filesystem::path path = folder / std::to_string(number);
        std::ofstream(path, std::ios::binary) << seed;
        list << (number++ == 0 ? "" : ",") << path.string();
    }
    list.close();
    return list ? 0 : 1;
}
