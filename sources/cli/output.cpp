#include "cli/output.h"

#include <QtGlobal>

#include <algorithm>
#include <cerrno>
#include <climits>

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace velometer {

namespace {
constexpr int defaultWidth = 80;
}

Output::Output(int fd)
    : descriptor(fd)
{}

void Output::write(const QByteArray &data)
{
    pending += data;
    drain(Wait::Yes);
}

void Output::line(const QString &text)
{
    QString printable = text;
    printable.removeIf([](QChar character) {
        return character.category() == QChar::Other_Control && character != u'\t' &&
               character != u'\n';
    });
    write(printable.toUtf8() + '\n');
}

void Output::post(const QByteArray &data)
{
    pending += data;
    drain(Wait::No);
}

void Output::offer(const QByteArray &data)
{
    drain(Wait::No);
    if (pending.isEmpty() && writable()) {
        post(data);
    }
}

bool Output::isTerminal() const
{
    return ::isatty(descriptor) == 1;
}

int Output::width() const
{
    winsize size{};
    const bool known = ::ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : defaultWidth;
}

bool Output::writable() const
{
    pollfd state{descriptor, POLLOUT, 0};
    return ::poll(&state, 1, 0) == 1;
}

void Output::drain(Wait wait)
{
    while (!pending.isEmpty() && !gone) {
        if (wait == Wait::No && !writable()) {
            return;
        }
        // A pipe that polls writable takes this much without blocking.
        const size_t length = std::min<size_t>(static_cast<size_t>(pending.size()), PIPE_BUF);
        const ssize_t written = ::write(descriptor, pending.constData(), length);
        if (written >= 0) {
            pending.remove(0, written);
            continue;
        }
        if (errno == EINTR) {
            continue;
        }
        if (errno == EAGAIN) {
            // Somebody who shares the descriptor made it non-blocking.
            pollfd state{descriptor, POLLOUT, 0};
            if (wait == Wait::No) {
                return;
            }
            ::poll(&state, 1, -1);
            continue;
        }
        gone = true;
        if (errno != EPIPE) {
            failure = qt_error_string(errno);
        }
    }
    if (gone) {
        pending.clear();
    }
}

} // namespace velometer
