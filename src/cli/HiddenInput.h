#ifndef CLI_HIDDENINPUT_H
#define CLI_HIDDENINPUT_H

#include "Export/Backups.h"

#include <QString>

#include <optional>

namespace Cli {

//! Input from the terminal that the program was started from, without showing what is typed.
class HiddenInput
{
public:
    HiddenInput();
    ~HiddenInput();

    HiddenInput(const HiddenInput &) = delete;
    HiddenInput &operator=(const HiddenInput &) = delete;

    //! Whether standard input is a terminal that can be opened.
    bool isPossible() const { return m_terminal >= 0; }

    //! Prints \a question and returns the line typed, without its end; nothing if the input ends or
    //! the program is asked to stop.
    std::optional<Export::Secret> line(const QString &question);

private:
    int m_terminal = -1;
};

} // namespace Cli

#endif
