#include "HiddenInput.h"

#include "Export/Text.h"
#include "Interrupt.h"

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

using Export::Secret;

namespace Cli {

namespace {

constexpr qsizetype kLongestBytes = 4096; // a terminal hands over no longer line

// Typed letters are not shown while this lives, however the question ends.
class EchoOff
{
public:
    explicit EchoOff(int terminal)
        : m_terminal(terminal)
        , m_known(::tcgetattr(terminal, &m_before) == 0)
    {
        termios quiet = m_before;
        quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        m_off = m_known && ::tcsetattr(terminal, TCSAFLUSH, &quiet) == 0;
    }
    ~EchoOff()
    {
        if (m_known)
            ::tcsetattr(m_terminal, TCSAFLUSH, &m_before);
    }
    EchoOff(const EchoOff &) = delete;
    EchoOff &operator=(const EchoOff &) = delete;

    bool isOff() const { return m_off; }

private:
    int m_terminal;
    termios m_before {};
    bool m_known;
    bool m_off = false;
};

void show(int terminal, const QByteArray &text)
{
    if (::write(terminal, text.constData(), static_cast<std::size_t>(text.size())) < 0)
        return; // the answer can be typed without having seen the question
}

} // namespace

HiddenInput::HiddenInput()
{
    if (::isatty(STDIN_FILENO) == 1)
        m_terminal = ::open("/dev/tty", O_RDWR | O_NOCTTY | O_CLOEXEC);
}

HiddenInput::~HiddenInput()
{
    if (m_terminal >= 0)
        ::close(m_terminal);
}

std::optional<Secret> HiddenInput::line(const QString &question)
{
    const EchoOff quiet(m_terminal);
    if (!quiet.isOff())
        return std::nullopt;
    show(m_terminal, Export::printable(question).toUtf8());
    Secret typed(kLongestBytes);
    const ssize_t count = Interrupt::waitForInput(m_terminal)
        ? ::read(m_terminal, typed.data(), static_cast<std::size_t>(typed.size()))
        : 0;
    show(m_terminal, "\n");
    if (count <= 0)
        return std::nullopt;
    QByteArrayView text = typed.view().first(count);
    if (text.endsWith('\n'))
        text.chop(1);
    return Secret(text);
}

} // namespace Cli
