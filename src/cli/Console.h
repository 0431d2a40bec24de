#ifndef CLI_CONSOLE_H
#define CLI_CONSOLE_H

#include <QByteArray>
#include <QString>

namespace Cli {

/*!
    \brief The program's two outputs: results on standard output, all that is said on standard
    error.

    Every text is made printable on its way out; a closed or full output never ends the program.
*/
class Console
{
public:
    //! Quiet: only warnings and errors are said.
    explicit Console(bool quiet);
    ~Console();

    Console(const Console &) = delete;
    Console &operator=(const Console &) = delete;

    bool isQuiet() const;

    //! Whether a status line can be redrawn: standard error is a terminal that can do it.
    bool isTerminal() const;

    //! Columns of the terminal.
    int columns() const;

    //! Says one line, unless quiet.
    void say(const QString &line);
    void warn(const QString &line); //!< "Warning: …"
    void error(const QString &line); //!< "Error: …"
    void note(const QString &line); //!< A further line of a warning or error.

    //! Draws \a line, cut to the terminal's width, over the last status. Nothing without a
    //! terminal or when quiet.
    void status(const QString &line);
    void clearStatus(); //!< Takes the status line away.

    //! Writes a result to standard output. \return false when it could not be written; said here.
    //! A reader that has gone away, as head(1) does, counts as content with what it got.
    [[nodiscard]] bool result(const QByteArray &text);

private:
    void writeLine(const QString &line);

    bool m_quiet;
    bool m_terminal;
    bool m_statusShown = false;
};

} // namespace Cli

#endif
