#ifndef TESTS_BROWSER_BROWSER_H
#define TESTS_BROWSER_BROWSER_H

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QProcess>
#include <QSize>
#include <QStringList>
#include <QTemporaryDir>

//! Exported pages as a person's browser shows them.
namespace BrowserTest {

/*!
    \brief A browser without a window, steered through its debugging pipe.

    What it is asked works on pages that forbid scripts, too: the page stays as it was exported.
    \par Errors
    The first one stays in error(); every later call is without effect.
*/
class Browser
{
public:
    Browser() = default;
    ~Browser();
    Browser(const Browser &) = delete;
    Browser &operator=(const Browser &) = delete;

    bool start();

    //! Shows the file \a path in a window of \a size and waits until all of it is loaded.
    bool open(const QString &path, QSize size);

    //! What \a script gives in the page, as JSON can say it.
    QJsonValue evaluate(const QString &script);

    //! A PNG file of the page from \a top on, \a height pixels of it.
    QByteArray screenshot(int top, int height);

    //! What the browser found to complain about in the page, and the addresses it fetched for it.
    QStringList complaints() const { return m_complaints; }
    QStringList requests() const { return m_requests; }

    QString error() const { return m_error; }

private:
    QJsonObject call(const QString &method, const QJsonObject &parameters = {});
    QJsonObject nextMessage();
    void note(const QJsonObject &message);
    bool fail(const QString &what);

    QTemporaryDir m_profile;
    QProcess m_process;
    int m_toBrowser = -1;
    int m_fromBrowser = -1;
    QByteArray m_received;
    int m_lastCall = 0;
    QString m_session;
    QSize m_size;
    bool m_loaded = false;
    QStringList m_complaints;
    QStringList m_requests;
    QString m_error;
};

} // namespace BrowserTest

#endif
