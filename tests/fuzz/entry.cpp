#include "parsers.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace {

const velometer::FuzzedParser &parser()
{
    static const auto found =
        std::ranges::find(velometer::fuzzedParsers(), std::string_view(FUZZED_PARSER),
                          [](const auto &each) { return std::string_view(each.name); });
    return *found;
}

} // namespace

/// Puts the good inputs where the fuzzer, whose last word is a folder, looks for some.
// NOLINTNEXTLINE(readability-identifier-naming): the fuzzer's own name
extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    const QDir folder(QString::fromLocal8Bit((*argv)[*argc - 1]));
    int number = 0;
    for (const QByteArray &seed : parser().seeds()) {
        QFile file(folder.filePath(QString::number(number++)));
        if (file.open(QIODevice::WriteOnly)) {
            file.write(seed);
        }
    }
    return 0;
}

/// Of one parser, FUZZED_PARSER, for a fuzzer that follows where its inputs lead.
// NOLINTNEXTLINE(readability-identifier-naming): the fuzzer's own name
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    parser().take(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    return 0;
}
