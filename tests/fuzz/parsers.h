#pragma once

#include <QByteArray>
#include <QList>

#include <span>

namespace velometer {

/// A function that takes bytes from outside, with what must hold whatever they are.
struct FuzzedParser
{
    const char *name;
    /// Whether @p bytes were taken for what they should be. Ends the program with a sentence when
    /// something does not hold.
    bool (*take)(const QByteArray &bytes);
    /// Good inputs, to begin with: all of them are taken.
    QList<QByteArray> (*seeds)();
};

std::span<const FuzzedParser> fuzzedParsers();

} // namespace velometer
