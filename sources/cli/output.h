#pragma once

#include <QByteArray>
#include <QString>

namespace velometer {

/// A file descriptor of the program, written to without the C library's buffers. A reader that goes
/// away silences it and ends nothing. Not owned. Main thread only.
class Output
{
public:
    explicit Output(int descriptor);

    /// Writes everything, waiting for a slow reader.
    void write(const QByteArray &data);
    /// Writes what can be written at once and keeps the rest for the next call: for lines that come
    /// while something is measured, which must not wait for a reader.
    void post(const QByteArray &data);
    /// As post(), but drops @p data when it could not be written at once.
    void offer(const QByteArray &data);

    /// Writes @p text as a line, without its control characters: a text from outside must not
    /// steer the terminal. Tabulators and line feeds stay.
    void line(const QString &text);

    /// What went wrong in one sentence, empty when nothing did. A reader that has gone is not
    /// wrong.
    QString error() const { return failure; }

    /// Whether the reader has gone away.
    bool isGone() const { return gone; }

    bool isTerminal() const;
    /// Columns of the terminal; 80 when it does not say.
    int width() const;

private:
    enum class Wait { No, Yes };
    void drain(Wait wait);
    bool writable() const;

    int descriptor;
    bool gone = false;
    QByteArray pending;
    QString failure;
};

} // namespace velometer
