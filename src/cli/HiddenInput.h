#ifndef CLI_HIDDENINPUT_H
#define CLI_HIDDENINPUT_H

#include "Export/Backups.h"

#include <QString>

#include <optional>

namespace Cli {

//! The terminal that the program was started from, asked without showing what is typed.
class HiddenInput
{
public:
    HiddenInput();
    ~HiddenInput();

    HiddenInput(const HiddenInput &) = delete;
    HiddenInput &operator=(const HiddenInput &) = delete;

    //! Whether somebody sits there: standard input is a terminal, and it can be opened.
    bool isPossible() const { return m_terminal >= 0; }

    //! The line that is typed after \a question, without its end; none when the input ends or the
    //! program is asked to stop.
    std::optional<Export::Secret> line(const QString &question);

private:
    int m_terminal = -1;
};

} // namespace Cli

#endif
