// SPDX-License-Identifier: MIT
// The main() of a fuzz target where there is no libFuzzer: runs every seed, then mutations of the
// seeds. Input number n depends on the printed seed and n alone, so that a finding can be repeated.
//
//   fuzz_NAME SEEDS-FOLDER [MUTATIONS [SEED]]
#include "FuzzTarget.h"

#include <QDir>
#include <QFile>

#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <vector>

// There when the build has a sanitizer.
extern "C" void __sanitizer_set_death_callback(void (*callback)()) __attribute__((weak));

namespace {

using Random = std::mt19937_64;

constexpr qsizetype longestInput = 16 * 1024;
constexpr const char *findingName = "fuzz-finding";

QByteArray present;

void keepFinding()
{
    QFile file(QString::fromLatin1(findingName));
    if (file.open(QIODevice::WriteOnly))
        file.write(present);
    std::fprintf(stderr, "the input is kept in \"%s\"\n", findingName);
}

extern "C" void keepFindingOnSignal(int number)
{
    keepFinding();
    std::signal(number, SIG_DFL);
    std::raise(number);
}

qsizetype below(Random &random, qsizetype end)
{
    return end <= 0 ? 0 : static_cast<qsizetype>(random() % static_cast<std::uint64_t>(end));
}

void mutateOnce(QByteArray &input, const std::vector<QByteArray> &seeds, Random &random)
{
    static const QByteArray odd = QByteArray::fromHex("00017f80ff0a0d093c3e26225c2f3a2d2b");
    const qsizetype at = below(random, input.size());
    const qsizetype length = 1 + below(random, std::min<qsizetype>(input.size() - at, 64));
    const QByteArray &other = seeds[random() % seeds.size()];
    switch (random() % 8) {
    case 0:
        if (!input.isEmpty())
            input[at] = static_cast<char>(input[at] ^ (1 << (random() % 8)));
        break;
    case 1:
        input.insert(at, odd[below(random, odd.size())]);
        break;
    case 2:
        if (!input.isEmpty())
            input[at] = static_cast<char>(random());
        break;
    case 3:
        input.remove(at, length);
        break;
    case 4:
        input.insert(at, input.mid(at, length).repeated(1 + static_cast<int>(random() % 8)));
        break;
    case 5:
        input.truncate(at);
        break;
    case 6:
        input.insert(at, other.mid(below(random, other.size()), length));
        break;
    default: {
        const QByteArray moved = input.mid(at, length);
        input.remove(at, length);
        input.insert(below(random, input.size()), moved);
    }
    }
    input.truncate(longestInput);
}

void run(const QByteArray &input)
{
    present = input;
    // A copy of its own size: reading one byte too far is noticed.
    const std::vector<std::uint8_t> exact(input.begin(), input.end());
    LLVMFuzzerTestOneInput(exact.data(), exact.size());
}

} // namespace

int main(int argc, char **argv)
{
    const QDir folder(QString::fromLocal8Bit(argc > 1 ? argv[1] : "."));
    const long mutations = argc > 2 ? std::atol(argv[2]) : 0;
    const std::uint64_t seed = argc > 3 ? std::strtoull(argv[3], nullptr, 10) : 1;
    if (__sanitizer_set_death_callback != nullptr)
        __sanitizer_set_death_callback(&keepFinding);
    for (const int number : {SIGABRT, SIGSEGV, SIGBUS, SIGFPE, SIGILL})
        std::signal(number, &keepFindingOnSignal);

    std::vector<QByteArray> seeds;
    for (const QString &name : folder.entryList(QDir::Files, QDir::Name)) {
        QFile file(folder.filePath(name));
        if (file.open(QIODevice::ReadOnly))
            seeds.push_back(file.readAll());
    }
    if (seeds.empty()) {
        std::fprintf(stderr, "no seeds in %s\n", argc > 1 ? argv[1] : ".");
        return 2;
    }
    run({});
    for (const QByteArray &input : seeds)
        run(input);
    std::printf("%zu seeds; %ld mutations with seed %llu\n", seeds.size(), mutations,
                static_cast<unsigned long long>(seed));
    for (long n = 0; n < mutations; ++n) {
        Random random(seed * 1'000'003 + static_cast<std::uint64_t>(n));
        QByteArray input = seeds[random() % seeds.size()];
        for (auto changes = 1 + random() % 6; changes > 0; --changes)
            mutateOnce(input, seeds, random);
        run(input);
    }
    return 0;
}
