#include "platform/position/filenmeainput.h"

#include <QFile>

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velometer {

namespace {

/// Returns how the line was before; nothing when it is none.
std::optional<termios> makeRaw(int descriptor)
{
    termios before{};
    if (::tcgetattr(descriptor, &before) != 0) {
        return std::nullopt;
    }
    termios raw = before;
    ::cfmakeraw(&raw);
    // Should it be the user's own terminal, he wants to end the program from it.
    raw.c_lflag |= ISIG;
    ::tcsetattr(descriptor, TCSANOW, &raw);
    return before;
}

} // namespace

FileNmeaInput::FileNmeaInput(QString path)
    : file(std::move(path))
{}

FileNmeaInput::~FileNmeaInput()
{
    FileNmeaInput::close();
}

void FileNmeaInput::open()
{
    close();
    // A FIFO nobody writes to and a line without carrier would keep the program waiting.
    descriptor =
        ::open(QFile::encodeName(file).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    struct stat status{};
    const bool isThere = descriptor >= 0 && ::fstat(descriptor, &status) == 0;
    if (!isThere ||
        !(S_ISREG(status.st_mode) || S_ISCHR(status.st_mode) || S_ISFIFO(status.st_mode))) {
        close();
        current = State::Lost;
        return;
    }
    recording = S_ISREG(status.st_mode);
    fifo = S_ISFIFO(status.st_mode);
    if (S_ISCHR(status.st_mode)) {
        line = makeRaw(descriptor);
    }
    current = State::Open;
}

void FileNmeaInput::close()
{
    if (descriptor >= 0 && line) {
        ::tcsetattr(descriptor, TCSANOW, &*line);
    }
    line.reset();
    if (descriptor >= 0) {
        ::close(descriptor);
    }
    descriptor = -1;
    current = State::Closed;
}

QByteArray FileNmeaInput::read(qint64 most)
{
    if (current != State::Open) {
        return {};
    }
    QByteArray bytes(static_cast<qsizetype>(most), Qt::Uninitialized);
    const ssize_t count = ::read(descriptor, bytes.data(), static_cast<size_t>(most));
    if (count > 0) {
        return bytes.first(count);
    }
    if (count == 0 && recording) {
        current = State::Ended;
    }
    // A FIFO that nobody writes to stays open: the next writer would find nobody who reads.
    else if (count == 0 ? !fifo : errno != EAGAIN && errno != EINTR) {
        current = State::Lost;
    }
    return {};
}

} // namespace velometer
