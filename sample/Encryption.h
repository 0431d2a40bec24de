#ifndef SAMPLE_ENCRYPTION_H
#define SAMPLE_ENCRYPTION_H

#include <QByteArray>
#include <QList>
#include <QString>

namespace Sample {

/*!
    \brief The keys of an encrypted backup: a keybag that a password opens, and a key for each file.

    \par Bytes
    The same settings give the same bytes. Keys that can be foretold protect nothing: samples hold
    nothing that needs it.
*/
class Encryption
{
public:
    //! All classes of protection that phones have.
    static QList<int> allClasses();

    struct Settings
    {
        QString password;
        quint32 iterations = 100000; //!< Rounds of the longer step of key derivation.
        bool twoSteps = true; //!< As from system version 10.2 on; before there was one step.
        bool encryptIndex = true; //!< Likewise, for Manifest.db.
        QList<int> classes = allClasses(); //!< That the keybag has keys for.
    };

    explicit Encryption(const Settings &settings);

    const Settings &settings() const { return m_settings; }

    //! What Manifest.plist holds as BackupKeyBag.
    QByteArray keybag() const;

    //! A key of 32 bytes for what is called \a name.
    static QByteArray keyFor(const QString &name);

    //! \a key as records of the index hold it: the number of the class and the wrapped key.
    QByteArray wrapped(const QByteArray &key, int protectionClass) const;

    //! \a plain with its padding, encrypted.
    static QByteArray encrypted(const QByteArray &plain, const QByteArray &key);

    //! Encrypts the file \a path in its place. \return what failed, nothing when all went well.
    static QString encryptFile(const QString &path, const QByteArray &key);

private:
    Settings m_settings;
    QByteArray m_passwordKey;
};

} // namespace Sample

#endif
