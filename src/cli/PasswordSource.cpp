#include "PasswordSource.h"

#include "Export/NewFile.h"
#include "HiddenInput.h"
#include "Interrupt.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

using namespace Qt::StringLiterals;
using Export::errorText;
using Export::Failure;
using Export::Secret;

namespace Cli {

namespace {

constexpr const char *kVariable = "DATAEXPORT_PASSWORD";
const QString kStandardInput = u"-"_s;
constexpr int kTries = 3;
constexpr qsizetype kLongestBytes = 4096;

Failure withAdvice(Failure failure)
{
    failure.advice =
        u"Provide the password with --password-file FILE or in the environment variable "
        "DATAEXPORT_PASSWORD, or run dataexport in a terminal and type it there."_s;
    return failure;
}

Failure missing(const QString &what)
{
    return withAdvice({ Failure::Cause::NoPassword, what });
}

// The first line, without what an editor puts around it.
QByteArrayView firstLine(QByteArrayView text)
{
    static constexpr QByteArrayView kByteOrderMark = "\xEF\xBB\xBF";
    if (text.startsWith(kByteOrderMark))
        text = text.sliced(kByteOrderMark.size());
    const auto end = std::find_if(
        text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r' || c == '\0'; });
    return text.first(end - text.begin());
}

// By hand: nothing on the way keeps a copy, and a pipe will do for a file.
std::variant<Secret, Failure> readFile(const QString &path)
{
    const bool isStandardInput = path == kStandardInput;
    const QString name =
        isStandardInput ? u"Standard input"_s : u"The password file “%1”"_s.arg(path);
    const auto refuse = [&name](const QString &why) {
        return missing(u"%1 could not be read: %2."_s.arg(name, why));
    };
    const int descriptor = isStandardInput
        ? ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)
        : ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0)
        return refuse(errorText(errno));
    Secret bytes(kLongestBytes);
    qsizetype size = 0;
    ssize_t count = 1;
    // Who writes into a pipe may keep it open after the line.
    while (count != 0 && size < bytes.size() && !bytes.view().first(size).contains('\n')
           && Interrupt::waitForInput(descriptor)) {
        count =
            ::read(descriptor, bytes.data() + size, static_cast<std::size_t>(bytes.size() - size));
        if (count < 0 && errno != EAGAIN && errno != EINTR)
            break;
        size += std::max<ssize_t>(count, 0);
    }
    const int number = errno;
    ::close(descriptor);
    if (Interrupt::requested())
        return Export::stoppedEarly();
    if (count < 0)
        return refuse(errorText(number));
    Secret password(firstLine(bytes.view().first(size)));
    if (password.isEmpty())
        return missing(u"%1 has no password in its first line."_s.arg(name));
    return password;
}

} // namespace

PasswordSource::PasswordSource(const QString &file, const Export::BackupInfo &backup)
    : m_file(file)
    , m_backup(backup)
{
}

std::variant<Secret, Failure> PasswordSource::next()
{
    if (m_file == kStandardInput && ::isatty(STDIN_FILENO) == 1)
        return ask(); // typed letters are not to be shown
    if (!m_file.isEmpty())
        return readFile(m_file);
    char *variable = std::getenv(kVariable);
    if (variable && *variable != '\0') {
        Secret password { QByteArrayView(variable) };
        Secret::wipe(variable, password.size()); // it can be seen from outside as long as it stands
        return password;
    }
    return ask();
}

bool PasswordSource::canTryAgain() const
{
    return m_asked > 0 && m_asked < kTries;
}

std::variant<Secret, Failure> PasswordSource::ask()
{
    HiddenInput input;
    if (!input.isPossible())
        return withAdvice(Export::noPassword(m_backup));
    while (m_asked < kTries) {
        ++m_asked;
        auto password = input.line(u"Password for the backup “%1”: "_s.arg(m_backup.displayName));
        if (Interrupt::requested())
            return Export::stoppedEarly();
        if (!password)
            break;
        if (!password->isEmpty())
            return std::move(*password);
    }
    return withAdvice(Export::noPassword(m_backup));
}

} // namespace Cli
