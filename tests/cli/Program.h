#ifndef TESTS_CLI_PROGRAM_H
#define TESTS_CLI_PROGRAM_H

#include <QByteArray>
#include <QJsonObject>
#include <QMap>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <functional>

//! Runs the program as a user would, and keeps what it said.
namespace CliTest {

struct Result
{
    int exitCode = -1; //!< -1: it crashed, hung or did not start.
    QByteArray out;
    QByteArray err;

    QJsonObject json() const; //!< Of standard output; empty when that is not one JSON object.
};

//! Runs in the child just before the program starts.
using ChildSetup = std::function<void()>;

//! A process for the program in a fixed locale and zone, not yet started.
void prepare(QProcess &process, const QStringList &arguments, const ChildSetup &setup = {});

//! Waits for the end of \a process.
Result finish(QProcess &process);

//! prepare(), start, finish().
Result run(const QStringList &arguments, const ChildSetup &setup = {});

//! The same on media that fail in the way that \a environment asks of FailingMedia.cpp.
Result runOnFailingMedia(const QStringList &arguments, const QMap<QString, QString> &environment);

//! Sends the signal \a number to \a process. \return false when that has ended: id 0 is the group
//! of the test itself.
bool sendSignal(const QProcess &process, int number);

//! A ChildSetup under which file modes hold for root, too.
void obeyFileModes();

//! Whether bytes other than printable UTF-8 and line feeds are in \a text.
bool hasControlBytes(const QByteArray &text);

} // namespace CliTest

#endif
