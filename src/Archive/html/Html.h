#ifndef ARCHIVE_HTML_HTML_H
#define ARCHIVE_HTML_HTML_H

#include <QByteArray>
#include <QList>
#include <QString>

namespace PhoneBackup {
struct TextSpan;
}

namespace Archive {

/*!
    \brief Appends mark-up to bytes. What is not the archive's own is encoded on its way in.
*/
class Html
{
public:
    explicit Html(QByteArray &out)
        : m_out(out)
    {
    }

    //! Mark-up of the archive's own.
    Html &operator<<(QByteArrayView markup)
    {
        m_out.append(markup.data(), markup.size());
        return *this;
    }

    Html &operator<<(char markup)
    {
        m_out += markup;
        return *this;
    }

    //! Text from anywhere; characters that control something are left out.
    Html &text(QStringView text);

    Html &number(qint64 number); //!< "12,480"

    //! " name="value"", a blank before it.
    Html &attribute(const char *name, QStringView value);

    //! " href="path"" of a file, relative, each step of \a path encoded; \a before is a path of the
    //! archive's own, such as "../../".
    Html &link(const char *name, const QByteArray &before, QStringView path);

    /*!
        Text in which \a links and other web addresses lead somewhere. Only http, https, mailto and
        tel do.
    */
    Html &linkedText(const QString &text, const QList<PhoneBackup::TextSpan> &links);
    Html &linkedText(const QString &text);

    //! Text that leads to \a address if that is of a kind that may be followed.
    Html &external(const QString &address, QStringView text);

    //! Whether a link may lead to \a address: http, https, mailto and tel.
    static bool isSafe(const QString &address);

private:
    QByteArray &m_out;
};

//! \a text as the inside of a script's string in quotation marks.
QByteArray scriptText(QStringView text);

} // namespace Archive

#endif
