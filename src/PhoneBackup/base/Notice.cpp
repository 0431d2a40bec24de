#include "PhoneBackup/base/Notice.h"

#include <QStringList>

namespace PhoneBackup {

Notice::Notice() = default;
Notice::~Notice() = default;
Notice::Notice(const Notice &other) = default;
Notice::Notice(Notice &&other) noexcept = default;
Notice &Notice::operator=(const Notice &other) = default;
Notice &Notice::operator=(Notice &&other) noexcept = default;

Notice::Notice(const char *code)
    : Notice(code, {})
{
}

Notice::Notice(const char *code, std::vector<Fact> facts)
{
    m_sentences.push_back({ code, std::move(facts), {} });
}

Notice::Notice(const QString &text)
{
    if (!text.isEmpty())
        m_sentences.push_back({ "", {}, text });
}

bool Notice::isEmpty() const
{
    return m_sentences.empty();
}

QByteArrayView Notice::code() const
{
    return m_sentences.empty() ? QByteArrayView() : QByteArrayView(m_sentences.front().code);
}

Notice &Notice::operator+=(const Notice &other)
{
    m_sentences.insert(m_sentences.end(), other.m_sentences.begin(), other.m_sentences.end());
    return *this;
}

bool operator==(const Notice &a, const Notice &b)
{
    return a.m_sentences == b.m_sentences;
}

} // namespace PhoneBackup
