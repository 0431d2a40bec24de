#ifndef CLI_CONSOLE_H
#define CLI_CONSOLE_H

#include <QByteArray>
#include <QString>

namespace Cli {

/*!
    \brief The program's two outputs: results on standard output, everything else on standard error.

    All text is made printable; a closed or full output never ends the program.
*/
class Console
{
public:
    //! \a quiet: only warnings and errors are printed.
    explicit Console(bool quiet);
    ~Console();

    Console(const Console &) = delete;
    Console &operator=(const Console &) = delete;

    bool isQuiet() const;

    //! Whether standard error is a terminal that can redraw a status line.
    bool isTerminal() const;

    //! Columns of the terminal.
    int columns() const;

    //! Prints a line, unless quiet.
    void say(const QString &line);
    void warn(const QString &line); //!< "Warning: …"
    void error(const QString &line); //!< "Error: …"
    void note(const QString &line); //!< Another line of a warning or error.

    //! Replaces the status line by \a line, cut to the width of the terminal. Does nothing without
    //! a terminal or if quiet.
    void status(const QString &line);
    void clearStatus(); //!< Removes the status line.

    //! Writes a result to standard output. \return false if that failed, after printing the error.
    //! A reader that has gone away, such as head(1), is not an error.
    [[nodiscard]] bool result(const QByteArray &text);

private:
    void writeLine(const QString &line);

    bool m_quiet;
    bool m_terminal;
    bool m_statusShown = false;
};

} // namespace Cli

#endif
