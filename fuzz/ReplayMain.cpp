// Runs a fuzz target without a fuzzer: every file of the given directories as it is, then mutations of it that are the
// same in every run.

#include <QByteArray>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QStringList>
#include <QTextStream>

#include <array>
#include <cstdint>
#include <random>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size);

namespace
{

using Random = std::mt19937;

void run(const QByteArray& input)
{
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(input.constData()), static_cast<size_t>(input.size()));
}

int below(Random& random, int limit)
{
    return static_cast<int>(random() % static_cast<unsigned int>(limit));
}

void flipBit(QByteArray& input, Random& random)
{
    char& byte = input.data()[below(random, input.size())];
    byte = static_cast<char>(static_cast<unsigned char>(byte) ^ (1U << (random() % 8U)));
}

// The numbers that arithmetic on header fields stumbles over.
void writeEdge(QByteArray& input, Random& random)
{
    static const std::array<uint32_t, 9> edges = {0,      1,      0x7FFFFFFF, 0x80000000, 0xFFFFFFFF,
                                                  0xFFFF, 0x8000, 65536,      46341};
    const uint32_t value = edges[static_cast<size_t>(below(random, edges.size()))];
    const int width = 1 << below(random, 3);
    const int at = below(random, input.size());
    for (int i = 0; i < width && at + i < input.size(); ++i) {
        input[at + i] = static_cast<char>(value >> (8 * i));
    }
}

void truncate(QByteArray& input, Random& random)
{
    input.truncate(below(random, input.size()));
}

QByteArray mutated(QByteArray input, Random& random)
{
    using Mutation = void (*)(QByteArray&, Random&);
    static const std::array<Mutation, 8> mutations = {flipBit,   flipBit,   flipBit,   writeEdge,
                                                      writeEdge, writeEdge, writeEdge, truncate};
    for (int count = 1 + below(random, 4); count > 0 && !input.isEmpty(); --count) {
        mutations[static_cast<size_t>(below(random, mutations.size()))](input, random);
    }
    return input;
}

int replay(const QString& directory, int mutations)
{
    int seeds = 0;
    QDirIterator entries(directory, QDir::Files);
    while (entries.hasNext()) {
        QFile file(entries.next());
        if (!file.open(QIODevice::ReadOnly)) {
            continue;
        }
        const QByteArray seed = file.readAll();
        Random random(static_cast<Random::result_type>(++seeds));
        run(seed);
        for (int i = 0; i < mutations; ++i) {
            run(mutated(seed, random));
        }
    }
    return seeds;
}

} // namespace

int main(int argc, char* argv[])
{
    int mutations = 0;
    int seeds = 0;
    for (int i = 1; i < argc; ++i) {
        const QString argument = QFile::decodeName(argv[i]);
        if (argument == QLatin1String("--mutations") && i + 1 < argc) {
            mutations = QByteArray(argv[++i]).toInt();
        } else {
            seeds += replay(argument, mutations);
        }
    }
    QTextStream(stdout) << seeds << " seeds, " << mutations << " mutations of each\n";
    return seeds > 0 ? 0 : 1;
}
