#include "cli/progressline.h"

#include "utils/cleantext.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {
const QByteArray eraseLine = "\r\033[K";
}

ProgressLine::ProgressLine(Output &to, Mode how)
    : output(to)
    , mode(how)
{}

void ProgressLine::setStatus(const QString &text)
{
    status = cleanText(text);
    progress.clear();
    if (mode == Mode::Lines) {
        output.post((test.isEmpty() ? status : test + u' ' + status).toUtf8() + '\n');
    } else {
        draw();
    }
}

void ProgressLine::setFigure(const QString &text)
{
    if (mode == Mode::Lines) {
        output.post(cleanText(text).toUtf8() + '\n');
    }
}

void ProgressLine::setProgress(int value, int max)
{
    progress =
        max > 0 ? u"%1 %"_s.arg(qBound(0, static_cast<int>(100LL * value / max), 100)) : QString();
    draw();
}

void ProgressLine::clear()
{
    status.clear();
    progress.clear();
    if (drawn) {
        output.post(eraseLine);
    }
    drawn = false;
}

void ProgressLine::message(const QString &text)
{
    if (drawn) {
        output.write(eraseLine);
    }
    output.line(text);
    drawn = false;
}

void ProgressLine::draw()
{
    if (mode != Mode::Rewriting) {
        return;
    }
    QStringList parts{test, status, progress};
    parts.removeAll(QString());
    // A line as wide as the terminal would wrap and could not be rewritten.
    output.offer("\r" + parts.join(u' ').left(output.width() - 1).toUtf8() + "\033[K");
    drawn = true;
}

} // namespace velometer
