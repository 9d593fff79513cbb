// Runs a fuzzer on mutated inputs, the same ones for the same seed:
//
//     <name>_fuzz [--runs N] [--seconds T] [--seed S] [--longest BYTES] [FOLDER...]
//                               runs the inputs kept in these folders, then mutates them, too
//     <name>_fuzz FILE...       runs these inputs again
//     <name>_fuzz --seeds FOLDER   puts the inputs to start from there
//
// An input that ends the program is left beside it as <name>_fuzz.failed.
#include "fuzz/driver.h"

#include <sanitizer/common_interface_defs.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <string_view>
#include <utility>

namespace {

std::string input;
std::string failed_path;

void save_input()
{
    std::ofstream{failed_path, std::ios::binary}.write(input.data(), static_cast<std::streamsize>(input.size()));
    std::fprintf(stderr, "the input is in %s\n", failed_path.c_str());
}

std::string bytes_of(const std::filesystem::path& path)
{
    std::ifstream file{path, std::ios::binary};
    return {std::istreambuf_iterator<char>{file}, {}};
}

/// The same in the same order, wherever they are.
std::vector<std::string> inputs_in(const std::filesystem::path& folder)
{
    std::vector<std::string> inputs;
    for (const auto& entry : std::filesystem::directory_iterator{folder})
        inputs.push_back(bytes_of(entry.path()));
    std::ranges::sort(inputs);
    return inputs;
}

int save_seeds(const std::filesystem::path& folder)
{
    int number = 0;
    for (const std::string& seed : fuzz_seeds())
        std::ofstream{folder / ("seed" + std::to_string(number++)), std::ios::binary} << seed;
    return 0;
}

void run()
{
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

void run_input(const std::string& bytes)
{
    input = bytes;
    run();
}

class Mutator {
public:
    Mutator(unsigned seed, std::size_t longest, std::vector<std::string> seeds)
        : random_{seed}, longest_{longest}, seeds_{std::move(seeds)}
    {
    }

    void mutate(std::string& bytes)
    {
        bytes = any_seed();
        for (std::size_t changes = 1 + below(16); changes > 0; --changes)
            change(bytes);
        bytes.resize(std::min(bytes.size(), longest_));
    }

private:
    std::size_t below(std::size_t bound) { return bound == 0 ? 0 : random_() % bound; }
    const std::string& any_seed() { return seeds_[below(seeds_.size())]; }
    std::string piece_of(const std::string& bytes)
    {
        const std::size_t start = below(bytes.size());
        return bytes.substr(start, 1 + below(bytes.size() - start));
    }

    void change(std::string& bytes)
    {
        const std::size_t place = below(bytes.size() + 1);
        switch (below(7)) {
        case 0:
        case 1:
            if (place < bytes.size())
                bytes[place] ^= static_cast<char>(below(2) == 0 ? random_() : 1u << below(8));
            break;
        case 2:
            bytes.insert(place, 1, static_cast<char>(random_()));
            break;
        case 3:
            bytes.erase(place, 1 + below(below(4) == 0 ? bytes.size() : 4));
            break;
        case 4:
            bytes.insert(place, any_seed());
            break;
        case 5:
            bytes.insert(place, piece_of(any_seed()));
            break;
        default:
            for (std::size_t times = below(4) == 0 ? below(200) : 1; times > 0 && bytes.size() < longest_; --times)
                bytes.insert(place, piece_of(bytes).substr(0, 64));
        }
    }

    std::mt19937 random_;
    std::size_t longest_;
    std::vector<std::string> seeds_;
};

} // namespace

int main(int count, char** arguments)
{
    const std::string_view program = arguments[0];
    const std::string name{program.substr(program.find_last_of('/') + 1)};
    failed_path = arguments[0] + std::string{".failed"};
    __sanitizer_set_death_callback(save_input);
    std::signal(SIGABRT, [](int) { save_input(); });

    double runs = 20'000, longest = 4096, seed = 1, seconds = 0;
    const std::map<std::string_view, double*> options{
        {"--runs", &runs}, {"--longest", &longest}, {"--seed", &seed}, {"--seconds", &seconds}};
    std::vector<std::string> seeds = fuzz_seeds();
    bool given = false;
    for (int i = 1; i < count; ++i) {
        if (const auto option = options.find(arguments[i]); option != options.end() && i + 1 < count) {
            *option->second = std::strtod(arguments[++i], nullptr);
            continue;
        }
        if (arguments[i] == std::string_view{"--seeds"} && i + 1 < count)
            return save_seeds(arguments[i + 1]);
        const std::filesystem::path path = arguments[i];
        if (std::filesystem::is_directory(path)) {
            for (const std::string& kept : inputs_in(path)) {
                run_input(kept);
                seeds.push_back(kept);
            }
        } else if (std::filesystem::is_regular_file(path)) {
            run_input(bytes_of(path));
            given = true;
        } else {
            return std::fprintf(stderr, "%s is no option, and no file or folder\n", arguments[i]), 2;
        }
    }
    if (given)
        return 0;

    Mutator mutator{static_cast<unsigned>(seed), static_cast<std::size_t>(longest), std::move(seeds)};
    const auto start = std::chrono::steady_clock::now();
    const auto elapsed = [&] { return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(); };
    double done = 0, bytes = 0;
    for (; seconds > 0 ? elapsed() < seconds : done < runs; ++done) {
        mutator.mutate(input);
        bytes += static_cast<double>(input.size());
        run();
    }
    std::printf("%s: %.0f inputs, %.1f MB, seed %.0f, %.1f s\n", name.c_str(), done, bytes / 1e6, seed, elapsed());
}
