#pragma once

#include "cli/output.h"

#include <QString>

namespace velometer {

/// What a test is doing, for a person at standard error: one line that rewrites itself on a
/// terminal, plain lines elsewhere, or nothing. Never waits for a slow terminal while a test
/// measures.
class ProgressLine
{
public:
    enum class Mode {
        Silent,
        Rewriting, ///< one line on a terminal
        Lines,     ///< a line a step
    };

    /// @p output is borrowed and outlives the line.
    ProgressLine(Output &output, Mode mode);

    /// Which of the tests of a series runs, "2/12"; empty for a single one.
    void setTest(const QString &number) { test = number; }
    void setStatus(const QString &text);
    /// A figure that a finished step has found.
    void setFigure(const QString &text);
    void setProgress(int value, int max);
    /// The end of a test: the line goes away.
    void clear();

    /// A message that stays, in every mode.
    void message(const QString &text);

private:
    void draw();

    Output &output;
    Mode mode;
    QString test;
    QString status;
    QString progress;
    bool drawn = false;
};

} // namespace velometer
