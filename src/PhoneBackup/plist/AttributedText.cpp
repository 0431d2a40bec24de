#include "PhoneBackup/plist/AttributedText.h"

#include "PhoneBackup/plist/TypedStream.h"

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
    for (const TypedStream::Run &run : stream.runs()) {
        const TypedStream::Object &attributes = stream.object(run.attributes);
        if (!attributes.file.isEmpty())
            result.files.append({ position, QString::fromUtf8(attributes.file) });
        if (!attributes.transcription.isEmpty())
            result.transcription = QString::fromUtf8(attributes.transcription);
        if (run.length < 0)
            return std::nullopt;
        position += qsizetype(std::min<qint64>(run.length, result.text.size() - position));
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
