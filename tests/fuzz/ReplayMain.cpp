// Runs a fuzz target on every file of the folder that is named, so that what was found once is tested by
// every build. The name of each is printed before: the last one is that of the input that fails.

#include "support/HeapText.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size);

namespace {

std::vector<std::filesystem::path> inputsIn(const std::filesystem::path &folder) {
    std::vector<std::filesystem::path> inputs;
    for (const auto &entry : std::filesystem::directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            inputs.push_back(entry.path());
        }
    }
    std::sort(inputs.begin(), inputs.end());
    return inputs;
}

bool replay(const std::filesystem::path &input) {
    std::cout << input.filename().string() << std::endl;
    std::ifstream file(input, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    if (!file.is_open() || file.bad()) {
        std::cerr << "It cannot be read." << std::endl;
        return false;
    }
    const HeapText copy(bytes);
    return LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(copy.begin()), bytes.size()) == 0;
}

} // namespace

int main(int count, char **arguments) {
    if (count != 2) {
        std::cerr << "Usage: " << arguments[0] << " FOLDER" << std::endl;
        return 2;
    }
    std::error_code error;
    if (!std::filesystem::is_directory(arguments[1], error)) {
        std::cerr << "There is no folder " << arguments[1] << std::endl;
        return 2;
    }
    const auto inputs = inputsIn(arguments[1]);
    if (inputs.empty()) {
        std::cerr << "There is no input in " << arguments[1] << std::endl;
        return 1;
    }
    if (!std::all_of(inputs.begin(), inputs.end(), replay)) {
        return 1;
    }
    std::cout << inputs.size() << " inputs replayed" << std::endl;
    return 0;
}
