#include "cli/Program.h"

#include <QJsonDocument>

#include <algorithm>
#include <csignal>
#include <linux/capability.h>
#include <sys/prctl.h>

using namespace Qt::StringLiterals;

namespace CliTest {

namespace {

constexpr int kPatienceMs = 120000;

} // namespace

QJsonObject Result::json() const
{
    return QJsonDocument::fromJson(out).object();
}

void prepare(QProcess &process, const QStringList &arguments, const ChildSetup &setup)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    environment.insert(u"TZ"_s, u"UTC"_s);
    environment.insert(u"TERM"_s, u"xterm"_s);
    process.setProcessEnvironment(environment);
    process.setProgram(QStringLiteral(DATAEXPORT_PROGRAM));
    // What the archive writes has tests of its own.
    const bool isExport = arguments.size() > 1 && !arguments.contains(u"--list"_s);
    const bool isChosen = arguments.contains(u"--formats"_s);
    process.setArguments(isExport && !isChosen
                             ? QStringList { u"--formats"_s, u"page,csv,vcard"_s } + arguments
                             : arguments);
    if (setup)
        process.setChildProcessModifier(setup);
}

Result finish(QProcess &process)
{
    Result result;
    if (!process.waitForFinished(kPatienceMs)) {
        process.kill();
        process.waitForFinished();
    } else if (process.exitStatus() == QProcess::NormalExit) {
        result.exitCode = process.exitCode();
    }
    result.out = process.readAllStandardOutput();
    result.err = process.readAllStandardError();
    return result;
}

Result run(const QStringList &arguments, const ChildSetup &setup)
{
    QProcess process;
    prepare(process, arguments, setup);
    process.start();
    return finish(process);
}

Result runOnFailingMedia(const QStringList &arguments, const QMap<QString, QString> &environment)
{
    QProcess process;
    prepare(process, arguments);
    QProcessEnvironment all = process.processEnvironment();
    for (auto it = environment.begin(); it != environment.end(); ++it)
        all.insert(it.key(), it.value());
    all.insert(u"LD_PRELOAD"_s, QStringLiteral(FAILING_MEDIA));
    const QString sanitizer = u"ASAN_OPTIONS"_s;
    all.insert(sanitizer, all.value(sanitizer) + u":verify_asan_link_order=0"_s);
    process.setProcessEnvironment(all);
    process.start();
    return finish(process);
}

bool sendSignal(const QProcess &process, int number)
{
    const auto id = static_cast<pid_t>(process.processId());
    return id > 0 && ::kill(id, number) == 0;
}

void obeyFileModes()
{
    // The program starts without them; for anybody but root they were not there anyway.
    ::prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE, 0, 0, 0);
    ::prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH, 0, 0, 0);
}

bool hasControlBytes(const QByteArray &text)
{
    const QString decoded = QString::fromUtf8(text);
    return std::any_of(decoded.begin(), decoded.end(), [](QChar c) {
        return c != u'\n' && c.category() == QChar::Other_Control;
    });
}

} // namespace CliTest
