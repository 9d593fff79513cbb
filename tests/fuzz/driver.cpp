// Runs a fuzzer on mutated inputs, the same ones for the same seed:
//
//     <name>_fuzz [--runs N] [--seconds T] [--seed S] [--longest BYTES]
//     <name>_fuzz FILE...       runs these inputs again
//
// An input that ends the program is left beside it as <name>_fuzz.failed.
#include "fuzz/driver.h"

#include <sanitizer/common_interface_defs.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <string_view>

namespace {

std::string input;
std::string failed_path;

void save_input()
{
    std::ofstream{failed_path, std::ios::binary}.write(input.data(), static_cast<std::streamsize>(input.size()));
    std::fprintf(stderr, "the input is in %s\n", failed_path.c_str());
}

void run_input()
{
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

class Mutator {
public:
    Mutator(unsigned seed, std::size_t longest) : random_{seed}, longest_{longest}, seeds_{fuzz_seeds()} {}

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

void fuzz_require(bool holds, const char* message)
{
    if (holds)
        return;
    std::fprintf(stderr, "%s\n", message);
    std::abort();
}

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
    bool given = false;
    for (int i = 1; i < count; ++i) {
        if (const auto option = options.find(arguments[i]); option != options.end() && i + 1 < count) {
            *option->second = std::strtod(arguments[++i], nullptr);
            continue;
        }
        std::ifstream file{arguments[i], std::ios::binary};
        if (!file)
            return std::fprintf(stderr, "%s is no option and no file that can be read\n", arguments[i]), 2;
        input.assign(std::istreambuf_iterator<char>{file}, {});
        run_input();
        given = true;
    }
    if (given)
        return 0;

    Mutator mutator{static_cast<unsigned>(seed), static_cast<std::size_t>(longest)};
    const auto start = std::chrono::steady_clock::now();
    const auto elapsed = [&] { return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(); };
    double done = 0, bytes = 0;
    for (; seconds > 0 ? elapsed() < seconds : done < runs; ++done) {
        mutator.mutate(input);
        bytes += static_cast<double>(input.size());
        run_input();
    }
    std::printf("%s: %.0f inputs, %.1f MB, seed %.0f, %.1f s\n", name.c_str(), done, bytes / 1e6, seed, elapsed());
}
