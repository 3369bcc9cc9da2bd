#include "platform/linux/desktop/JsonText.h"

#include <QStringDecoder>

namespace tavrin::json {
namespace {

/// Reads from the front of a text. Every function leaves m_failed set, and anything as its result,
/// when the text is wrong.
class Reader {
public:
    explicit Reader(QStringView text)
        : m_text(text)
    {
    }

    QVariantMap document()
    {
        skipSpace();
        QVariantMap members;
        if (expect(u'{'))
            members = object();
        skipSpace();
        if (m_position != m_text.size())
            fail();
        return members;
    }

    [[nodiscard]] bool failed() const { return m_failed; }

    [[nodiscard]] qsizetype position() const { return m_position; }

private:
    void fail() { m_failed = true; }

    [[nodiscard]] char16_t peek() const
    {
        return m_position < m_text.size() ? m_text[m_position].unicode() : u'\0';
    }

    bool accept(char16_t character)
    {
        if (m_position >= m_text.size() || m_text[m_position] != character)
            return false;
        ++m_position;
        return true;
    }

    bool expect(char16_t character)
    {
        if (!accept(character))
            fail();
        return !m_failed;
    }

    void skipSpace()
    {
        while (peek() == u' ' || peek() == u'\t' || peek() == u'\n' || peek() == u'\r')
            ++m_position;
    }

    /// The rest of an object whose brace is read.
    QVariantMap object()
    {
        QVariantMap members;
        skipSpace();
        if (accept(u'}'))
            return members;
        do {
            skipSpace();
            const QString name = string();
            skipSpace();
            expect(u':');
            const QVariant member = value();
            if (m_failed)
                return members;
            members.insert(name, member);
        } while (accept(u','));
        expect(u'}');
        return members;
    }

    /// The rest of a list whose bracket is read.
    QVariantList list()
    {
        QVariantList elements;
        skipSpace();
        if (accept(u']'))
            return elements;
        do {
            elements.append(value());
            if (m_failed)
                return elements;
        } while (accept(u','));
        expect(u']');
        return elements;
    }

    /// A value and the space around it.
    QVariant value() // NOLINT(misc-no-recursion): bounded by deepestNesting
    {
        skipSpace();
        if (m_failed || ++m_depth > deepestNesting) {
            fail();
            return {};
        }
        QVariant result = bareValue();
        --m_depth;
        skipSpace();
        return result;
    }

    QVariant bareValue() // NOLINT(misc-no-recursion): as value()
    {
        switch (peek()) {
        case u'{':
            ++m_position;
            return object();
        case u'[':
            ++m_position;
            return list();
        case u'"':
            return string();
        case u't':
            return word(u"true", true);
        case u'f':
            return word(u"false", false);
        case u'n':
            return word(u"null", {});
        default:
            return number();
        }
    }

    QVariant word(QStringView expected, const QVariant& meaning)
    {
        if (!m_text.sliced(m_position).startsWith(expected)) {
            fail();
            return {};
        }
        m_position += expected.size();
        return meaning;
    }

    QString string()
    {
        QString result;
        if (!expect(u'"'))
            return result;
        while (m_position < m_text.size()) {
            const qsizetype start = m_position;
            while (peek() >= u' ' && peek() != u'"' && peek() != u'\\')
                ++m_position;
            result += m_text.sliced(start, m_position - start);
            if (accept(u'"'))
                return result;
            if (!accept(u'\\'))
                break; // A control character, or the end.
            result += escape();
            if (m_failed)
                return result;
        }
        fail();
        return result;
    }

    /// What the escape stands for whose backslash is read.
    QChar escape()
    {
        constexpr QStringView names = u"\"\\/bfnrt";
        constexpr QStringView meanings = u"\"\\/\b\f\n\r\t";
        if (accept(u'u'))
            return codeUnit();
        const qsizetype index = m_position < m_text.size() ? names.indexOf(m_text[m_position]) : -1;
        if (index < 0) {
            fail();
            return {};
        }
        ++m_position;
        return meanings[index];
    }

    QChar codeUnit()
    {
        constexpr qsizetype digits = 4;
        char16_t unit = 0;
        for (qsizetype i = 0; i < digits; ++i) {
            const int digit = digitValue(peek());
            if (digit < 0) {
                fail();
                return {};
            }
            unit = static_cast<char16_t>(unit * 16 + digit);
            ++m_position;
        }
        return unit;
    }

    [[nodiscard]] static int digitValue(char16_t character)
    {
        constexpr QStringView digits = u"0123456789abcdef";
        return static_cast<int>(digits.indexOf(QChar(character).toLower()));
    }

    qsizetype skipDigits()
    {
        const qsizetype start = m_position;
        while (peek() >= u'0' && peek() <= u'9')
            ++m_position;
        return m_position - start;
    }

    QVariant number()
    {
        const qsizetype start = m_position;
        accept(u'-');
        const bool leadingZero = peek() == u'0';
        const qsizetype digits = skipDigits();
        bool valid = digits == 1 || (digits > 1 && !leadingZero);
        bool integral = true;
        if (accept(u'.')) {
            integral = false;
            valid = valid && skipDigits() > 0;
        }
        if (peek() == u'e' || peek() == u'E') {
            ++m_position;
            integral = false;
            if (peek() == u'+' || peek() == u'-')
                ++m_position;
            valid = valid && skipDigits() > 0;
        }
        const QStringView literal = m_text.sliced(start, m_position - start);
        QVariant result = valid ? numericValue(literal, integral) : QVariant();
        if (!result.isValid())
            fail();
        return result;
    }

    /// Invalid when the number is too large for anything.
    [[nodiscard]] static QVariant numericValue(QStringView literal, bool integral)
    {
        bool fits = false;
        if (integral) {
            if (const qlonglong number = literal.toLongLong(&fits); fits)
                return number;
            if (const qulonglong number = literal.toULongLong(&fits); fits)
                return number;
        }
        const double number = literal.toDouble(&fits);
        return fits && qIsFinite(number) ? QVariant(number) : QVariant();
    }

    QStringView m_text;
    qsizetype m_position = 0;
    int m_depth = 0;
    bool m_failed = false;
};

} // namespace

Result<QVariantMap> parseObject(const QByteArray& text)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString decoded = decoder(text);
    if (decoder.hasError())
        return failure({QStringLiteral("TavrinJson"), 1, QStringLiteral("not UTF-8")});
    Reader reader(decoded);
    QVariantMap members = reader.document();
    if (reader.failed())
        return failure({QStringLiteral("TavrinJson"), 2,
            QStringLiteral("no JSON object from character %1 on").arg(reader.position())});
    return members;
}

} // namespace tavrin::json
