#include "PhoneBackup/crypto/Keybag.h"

#include "PhoneBackup/crypto/KeyDerivation.h"
#include "PhoneBackup/crypto/KeyWrap.h"

#include <QtEndian>

#include <algorithm>

namespace PhoneBackup {

using namespace Qt::StringLiterals;
using KeyDerivation::Digest;

namespace {

constexpr qsizetype kTagBytes = 4;
constexpr qsizetype kNumberBytes = 4;
constexpr quint32 kWrappedWithPassword = 2;
constexpr quint32 kClassMask = 0xF;
constexpr int kLastClassOfFiles = 4;

std::optional<quint32> number(QByteArrayView value)
{
    if (value.size() != kNumberBytes)
        return std::nullopt;
    return qFromBigEndian<quint32>(value.data());
}

} // namespace

bool Keybag::ClassRecord::opensWithPassword() const
{
    return (wrap & kWrappedWithPassword) != 0 && wrappedKey.size() == KeyWrap::kWrappedBytes;
}

bool Keybag::ClassRecord::isOfFiles() const
{
    return protectionClass >= 1 && protectionClass <= kLastClassOfFiles;
}

Keybag Keybag::parse(QByteArrayView bytes)
{
    Keybag bag;
    bool ownIdRead = false;
    while (bytes.size() >= kTagBytes + kNumberBytes) {
        const QByteArrayView tag = bytes.first(kTagBytes);
        const auto size = qsizetype(qFromBigEndian<quint32>(bytes.data() + kTagBytes));
        bytes = bytes.sliced(kTagBytes + kNumberBytes);
        if (size > bytes.size()) {
            bag.m_cutOff = true;
            return bag;
        }
        const QByteArrayView value = bytes.first(size);
        bytes = bytes.sliced(size);
        if (tag == "UUID" && ownIdRead)
            bag.m_records.append(ClassRecord());
        else if (bag.m_records.isEmpty())
            bag.readHeader(tag, value);
        else
            readRecord(bag.m_records.last(), tag, value);
        ownIdRead = ownIdRead || tag == "UUID";
    }
    bag.m_cutOff = !bytes.isEmpty();
    return bag;
}

void Keybag::readHeader(QByteArrayView tag, QByteArrayView value)
{
    if (tag == "SALT")
        m_last.salt = value.toByteArray();
    else if (tag == "ITER")
        m_last.iterations = number(value);
    else if (tag == "DPSL")
        m_first.salt = value.toByteArray();
    else if (tag == "DPIC")
        m_first.iterations = number(value);
}

void Keybag::readRecord(ClassRecord &record, QByteArrayView tag, QByteArrayView value)
{
    if (tag == "CLAS")
        record.protectionClass = int(number(value).value_or(0) & kClassMask);
    else if (tag == "WRAP")
        record.wrap = number(value).value_or(0);
    else if (tag == "WPKY")
        record.wrappedKey = value.toByteArray();
}

Error Keybag::damaged(const Notice &why) const
{
    const char *what = isCutOff() ? "crypto.keybagCutOff" : "crypto.keybagDamaged";
    return Error { Fault::Corrupt,
                   u"Manifest.plist"_s,
                   Notice(what, { why }) + Notice("base.copyAgain") };
}

Result<ClassKeys> Keybag::unlock(const Secret &password, const Progress &progress) const
{
    const auto opens = [](const ClassRecord &record) { return record.opensWithPassword(); };
    if (std::none_of(m_records.begin(), m_records.end(), opens))
        return damaged(Notice("crypto.noKey"));
    const Result<Secret> passwordKey = this->passwordKey(password, progress);
    if (!passwordKey)
        return passwordKey.error();

    // Only some of the keys that open: the others are damaged, their files locked.
    ClassKeys keys;
    bool opened = false;
    const bool haveFiles = std::any_of(m_records.begin(), m_records.end(), [](const auto &record) {
        return record.opensWithPassword() && record.isOfFiles();
    });
    for (const ClassRecord &record : m_records) {
        if (!record.opensWithPassword())
            continue;
        Secret key = KeyWrap::unwrap(passwordKey.value(), record.wrappedKey);
        if (key.isEmpty())
            continue;
        opened = opened || record.isOfFiles() || !haveFiles;
        keys.insert(record.protectionClass, std::move(key));
    }
    if (!opened) {
        return Error { Fault::WrongPassword, u"Manifest.plist"_s, Notice("crypto.wrongPassword") };
    }
    return keys;
}

Result<Secret> Keybag::passwordKey(const Secret &password, const Progress &progress) const
{
    if (!m_last.iterations || m_last.salt.isEmpty())
        return damaged(Notice("crypto.noDerivation"));
    const bool twoSteps = m_first.iterations && !m_first.salt.isEmpty();
    qint64 total = 0;
    const auto refusal = [&](Digest digest, quint32 iterations) -> std::optional<Error> {
        total += KeyDerivation::roundsOf(digest, iterations);
        if (iterations > 0 && iterations <= kMaxIterations)
            return std::nullopt;
        return damaged(Notice("crypto.rounds", { qint64(iterations), qint64(kMaxIterations) }));
    };
    if (const auto error = refusal(Digest::Sha1, *m_last.iterations))
        return *error;
    if (twoSteps) {
        if (const auto error = refusal(Digest::Sha256, *m_first.iterations))
            return *error;
    }

    qint64 done = 0;
    const auto goesOn = [&](qint64 rounds) {
        done += rounds;
        return !progress || progress(int(done * 100 / total));
    };
    const Error stopped { Fault::Cancelled, {}, Notice("base.stopped") };
    if (!goesOn(0))
        return stopped;
    Secret first;
    if (twoSteps) {
        first = KeyDerivation::key(
            Digest::Sha256, password.view(), m_first.salt, *m_first.iterations, goesOn);
        if (first.isEmpty())
            return stopped;
    }
    Secret key = KeyDerivation::key(Digest::Sha1,
                                    twoSteps ? first.view() : password.view(),
                                    m_last.salt,
                                    *m_last.iterations,
                                    goesOn);
    if (key.isEmpty() || (progress && !progress(100)))
        return stopped;
    return key;
}

} // namespace PhoneBackup
