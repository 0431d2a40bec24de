#include "browser/Browser.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QUrl>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace BrowserTest {

namespace {

constexpr int kPatienceMs = 60000;
// The numbers at which the browser looks for its debugging pipe.
constexpr int kItReads = 3;
constexpr int kItWrites = 4;
constexpr int kOutOfTheWay = 64;

//! A pipe whose ends stay clear of the browser's numbers.
bool makePipe(std::array<int, 2> &ends)
{
    std::array<int, 2> low {};
    if (::pipe(low.data()) != 0)
        return false;
    for (std::size_t i = 0; i < 2; ++i) {
        ends[i] = ::fcntl(low[i], F_DUPFD_CLOEXEC, kOutOfTheWay);
        ::close(low[i]);
    }
    return ends[0] >= 0 && ends[1] >= 0;
}

} // namespace

Browser::~Browser()
{
    // At the end of its input it goes by itself.
    if (m_toBrowser >= 0)
        ::close(m_toBrowser);
    if (m_process.state() != QProcess::NotRunning && !m_process.waitForFinished(5000)) {
        m_process.kill();
        m_process.waitForFinished();
    }
    if (m_fromBrowser >= 0)
        ::close(m_fromBrowser);
}

bool Browser::start()
{
    std::array<int, 2> there {};
    std::array<int, 2> back {};
    if (!makePipe(there) || !makePipe(back))
        return fail(u"no pipe"_s);
    m_process.setProgram(QStringLiteral(BROWSER));
    m_process.setArguments({ u"--headless"_s,
                             u"--no-sandbox"_s,
                             u"--disable-gpu"_s,
                             u"--disable-quic"_s,
                             u"--no-first-run"_s,
                             u"--disable-background-networking"_s,
                             u"--disable-component-update"_s,
                             u"--disable-sync"_s,
                             u"--disable-dev-shm-usage"_s,
                             u"--hide-scrollbars"_s,
                             u"--remote-debugging-pipe"_s,
                             u"--user-data-dir="_s + m_profile.path() });
    m_process.setChildProcessModifier([there, back] {
        ::dup2(there[0], kItReads);
        ::dup2(back[1], kItWrites);
    });
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.start();
    ::close(there[0]);
    ::close(back[1]);
    m_toBrowser = there[1];
    m_fromBrowser = back[0];
    if (!m_process.waitForStarted())
        return fail(m_process.errorString());

    const QString target =
        call(u"Target.createTarget"_s, { { u"url"_s, u"about:blank"_s } })[u"targetId"_s]
            .toString();
    m_session = call(u"Target.attachToTarget"_s,
                     { { u"targetId"_s, target }, { u"flatten"_s, true } })[u"sessionId"_s]
                    .toString();
    for (const QString &domain : { u"Page"_s, u"Runtime"_s, u"Log"_s, u"Network"_s })
        call(domain + u".enable"_s);
    return m_error.isEmpty();
}

bool Browser::open(const QString &path, QSize size)
{
    m_size = size;
    m_complaints.clear();
    m_requests.clear();
    call(u"Emulation.setDeviceMetricsOverride"_s,
         { { u"width"_s, size.width() },
           { u"height"_s, size.height() },
           { u"deviceScaleFactor"_s, 1 },
           { u"mobile"_s, false } });
    m_loaded = false;
    const QString refused =
        call(u"Page.navigate"_s,
             { { u"url"_s,
                 QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded) } })[u"errorText"_s]
            .toString();
    if (!refused.isEmpty())
        return fail(path + u": "_s + refused);
    while (!m_loaded && m_error.isEmpty())
        note(nextMessage());
    return m_error.isEmpty();
}

QJsonValue Browser::evaluate(const QString &script)
{
    const QJsonObject answer =
        call(u"Runtime.evaluate"_s, { { u"expression"_s, script }, { u"returnByValue"_s, true } });
    if (answer.contains(u"exceptionDetails"_s)) {
        const QJsonValue details = answer[u"exceptionDetails"_s];
        fail(details[u"exception"_s][u"description"_s].toString(details[u"text"_s].toString()));
    }
    return answer[u"result"_s][u"value"_s];
}

QByteArray Browser::screenshot(int top, int height)
{
    const QJsonObject clip { { u"x"_s, 0 },
                             { u"y"_s, top },
                             { u"width"_s, m_size.width() },
                             { u"height"_s, height },
                             { u"scale"_s, 1 } };
    const QJsonObject answer = call(u"Page.captureScreenshot"_s,
                                    { { u"captureBeyondViewport"_s, true }, { u"clip"_s, clip } });
    return QByteArray::fromBase64(answer[u"data"_s].toString().toLatin1());
}

QJsonObject Browser::call(const QString &method, const QJsonObject &parameters)
{
    if (!m_error.isEmpty())
        return {};
    const int id = ++m_lastCall;
    QJsonObject message { { u"id"_s, id }, { u"method"_s, method }, { u"params"_s, parameters } };
    if (!m_session.isEmpty())
        message[u"sessionId"_s] = m_session;
    QByteArray bytes = QJsonDocument(message).toJson(QJsonDocument::Compact);
    bytes.append('\0');
    for (qsizetype sent = 0; sent < bytes.size();) {
        const ssize_t count = ::write(
            m_toBrowser, bytes.constData() + sent, static_cast<std::size_t>(bytes.size() - sent));
        if (count < 0 && errno != EINTR) {
            fail(u"the browser is gone: "_s + QString::fromLocal8Bit(m_process.readAll()));
            return {};
        }
        sent += count > 0 ? count : 0;
    }
    for (;;) {
        const QJsonObject answer = nextMessage();
        if (!m_error.isEmpty())
            return {};
        if (answer[u"id"_s].toInt() != id) {
            note(answer);
            continue;
        }
        if (answer.contains(u"error"_s))
            fail(method + u": "_s + answer[u"error"_s][u"message"_s].toString());
        return answer[u"result"_s].toObject();
    }
}

void Browser::note(const QJsonObject &message)
{
    const QString method = message[u"method"_s].toString();
    const QJsonValue parameters = message[u"params"_s];
    if (method == "Page.loadEventFired"_L1)
        m_loaded = true;
    else if (method == "Network.requestWillBeSent"_L1)
        m_requests += parameters[u"request"_s][u"url"_s].toString();
    else if (method == "Log.entryAdded"_L1)
        m_complaints += parameters[u"entry"_s][u"text"_s].toString();
    else if (method == "Runtime.exceptionThrown"_L1)
        m_complaints += parameters[u"exceptionDetails"_s][u"text"_s].toString();
}

QJsonObject Browser::nextMessage()
{
    qsizetype end = m_received.indexOf('\0');
    while (end < 0) {
        pollfd waiting { m_fromBrowser, POLLIN, 0 };
        if (::poll(&waiting, 1, kPatienceMs) <= 0) {
            fail(u"the browser does not answer: "_s + QString::fromLocal8Bit(m_process.readAll()));
            return {};
        }
        std::array<char, 65536> buffer;
        const ssize_t count = ::read(m_fromBrowser, buffer.data(), buffer.size());
        if (count <= 0) {
            m_process.waitForReadyRead(1000);
            fail(u"the browser ended: "_s + QString::fromLocal8Bit(m_process.readAll()));
            return {};
        }
        const qsizetype before = m_received.size();
        m_received.append(buffer.data(), count);
        end = m_received.indexOf('\0', before);
    }
    const QByteArray message = m_received.first(end);
    m_received.remove(0, end + 1);
    return QJsonDocument::fromJson(message).object();
}

bool Browser::fail(const QString &what)
{
    if (m_error.isEmpty())
        m_error = what;
    return false;
}

} // namespace BrowserTest
