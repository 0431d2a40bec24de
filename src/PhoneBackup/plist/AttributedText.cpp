#include "PhoneBackup/plist/AttributedText.h"

#include "PhoneBackup/plist/TypedStream.h"

#include <QHash>
#include <QStringDecoder>

#include <algorithm>

namespace PhoneBackup {

namespace {

constexpr qsizetype kHeaderSize = 16;

// The text whose length stands at the beginning of \a data, when it is one.
std::optional<QString> textAt(QByteArrayView data)
{
    const std::optional<QByteArrayView> bytes = TypedStream::lengthAndBytes(data);
    if (!bytes || bytes->isEmpty())
        return std::nullopt;
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString text = decoder(*bytes);
    return decoder.hasError() ? std::nullopt : std::optional(text);
}

// Puts what a stream knows of the stretches of a text into the text.
class Stretches
{
public:
    Stretches(const TypedStream &stream, AttributedText &text)
        : m_stream(stream)
        , m_text(text)
        , m_attributes(stream.attributes().cbegin(), stream.attributes().cend())
    {
        // Of each kind one a dictionary, or work would grow with stretches times attributes.
        const auto key = [](const TypedStream::Attribute &a) {
            return std::pair(a.dictionary, a.key);
        };
        std::stable_sort(m_attributes.begin(),
                         m_attributes.end(),
                         [&](const auto &a, const auto &b) { return key(a) < key(b); });
        m_attributes.erase(
            std::unique(m_attributes.begin(),
                        m_attributes.end(),
                        [&](const auto &a, const auto &b) { return key(a) == key(b); }),
            m_attributes.end());
    }

    void add(TypedStream::Index dictionary, qsizetype position, qsizetype length)
    {
        using Key = TypedStream::Attribute::Key;
        AttributedText::File file { position, {}, {} };
        const auto [first, last] = std::equal_range(m_attributes.cbegin(),
                                                    m_attributes.cend(),
                                                    TypedStream::Attribute { dictionary, {}, 0 },
                                                    &isBefore);
        for (auto it = first; it != last; ++it) {
            switch (it->key) {
            case Key::File:
                file.guid = text(it->value);
                break;
            case Key::Transcription:
                m_text.transcription = text(it->value);
                break;
            case Key::Link:
                m_text.links.append({ position, length, text(it->value) });
                break;
            case Key::Mention:
                m_text.mentions.append({ position, length, text(it->value) });
                break;
            case Key::Width:
                file.pixels.setWidth(pixels(it->value));
                break;
            case Key::Height:
                file.pixels.setHeight(pixels(it->value));
                break;
            }
        }
        if (!file.guid.isEmpty())
            m_text.files.append(file);
    }

private:
    static bool isBefore(const TypedStream::Attribute &a, const TypedStream::Attribute &b)
    {
        return a.dictionary < b.dictionary;
    }

    // One for all stretches that share it, which may be many.
    const QString &text(TypedStream::Index index)
    {
        const auto known = m_texts.constFind(index);
        return known != m_texts.cend()
            ? *known
            : *m_texts.insert(index, QString::fromUtf8(m_stream.object(index).text));
    }

    int pixels(TypedStream::Index index) const
    {
        constexpr qint64 kMost = 1 << 20;
        const qint64 number = m_stream.object(index).number;
        return number > 0 && number < kMost ? int(number) : -1;
    }

    const TypedStream &m_stream;
    AttributedText &m_text;
    QVarLengthArray<TypedStream::Attribute, 4> m_attributes;
    QHash<TypedStream::Index, QString> m_texts;
};

} // namespace

std::optional<AttributedText> AttributedText::decode(QByteArrayView data)
{
    TypedStream stream(data);
    if (!stream.readHeader())
        return std::nullopt;
    const TypedStream::Index root = stream.readRoot();
    if (stream.isBad() || root == TypedStream::kNil)
        return std::nullopt;

    using Kind = TypedStream::Object::Kind;
    const bool isAttributed = stream.object(root).kind == Kind::Attributed;
    const TypedStream::Object &string = stream.object(isAttributed ? stream.string() : root);
    if (string.kind != Kind::String)
        return std::nullopt;
    AttributedText result;
    result.text = QString::fromUtf8(string.text);
    qsizetype position = 0;
    std::optional<Stretches> stretches;
    if (!stream.attributes().isEmpty())
        stretches.emplace(stream, result);
    for (const TypedStream::Run &run : stream.runs()) {
        if (run.length < 0)
            return std::nullopt;
        const auto length = qsizetype(std::min<qint64>(run.length, result.text.size() - position));
        if (stretches)
            stretches->add(run.attributes, position, length);
        position += length;
    }
    return result;
}

std::optional<QString> AttributedText::salvage(QByteArrayView data)
{
    if (data.size() <= kHeaderSize)
        return std::nullopt;
    const QByteArrayView body = data.sliced(kHeaderSize);
    constexpr QByteArrayView kBytesType("\x01+"); // the type string of a string's bytes
    const qsizetype type = body.indexOf(kBytesType);
    if (type >= 0) {
        if (const auto text = textAt(body.sliced(type + kBytesType.size())))
            return text;
    }
    // The type may be a reference or damaged: the bytes then stand behind the name of the class.
    for (const QByteArrayView name :
         { QByteArrayView("NSString"), QByteArrayView("NSMutableString") }) {
        const qsizetype found = body.indexOf(name);
        const qsizetype plus = found < 0 ? -1 : body.indexOf('+', found + name.size());
        if (plus >= 0) {
            if (const auto text = textAt(body.sliced(plus + 1)))
                return text;
        }
    }
    return std::nullopt;
}

} // namespace PhoneBackup
