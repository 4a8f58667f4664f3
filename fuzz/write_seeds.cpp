// fuzz_TARGET_seeds FOLDER: writes the target's seeds, one file each.
#include <cstdio>
#include <fstream>

#include "fuzz/target.h"

int main(int count, char** arguments)
{
    if (count != 2)
    {
        fprintf(stderr, "usage: %s FOLDER\n", arguments[0]);
        return 2;
    }
    int number = 0;
    for (const std::string& seed : kobd::fuzz::Seeds())
    {
        const std::string path = std::string(arguments[1]) + "/seed-" + std::to_string(++number);
        std::ofstream file(path, std::ios::binary);
        file.write(seed.data(), static_cast<std::streamsize>(seed.size()));
        if (file.close(), file.fail())
        {
            fprintf(stderr, "cannot write %s\n", path.c_str());
            return 1;
        }
    }
    return 0;
}
