#include <zr8bitkit/zr8bittvctext.h>

#include <zr8bitlib/zr8bittvc.h>

#include <algorithm>
#include <iterator>
#include <optional>

namespace ZR {

namespace {

bool isLineEnd(QChar character)
{
    return character == u'\n' || character == u'\r';
}

/// The stand-in of a character that Unicode does not take apart; an empty text when there is none.
QLatin1String plainText(QChar character)
{
    struct StandIn
    {
        const char16_t *characters;
        QLatin1String text;
    };
    static constexpr StandIn StandIns[] = {
        {u"\u2018\u2019\u201A\u201B\u2032\u2039\u203A", QLatin1String("'")},
        {u"\u201C\u201D\u201E\u201F\u00AB\u00BB", QLatin1String("\"")},
        {u"\u2010\u2011\u2012\u2013\u2014\u2015\u2212", QLatin1String("-")},
        {u"\u2044", QLatin1String("/")},
        {u"\u00DF", QLatin1String("ss")},
        {u"\u1E9E", QLatin1String("SS")},
        {u"\u00C6", QLatin1String("AE")},
        {u"\u00E6", QLatin1String("ae")},
        {u"\u0152", QLatin1String("OE")},
        {u"\u0153", QLatin1String("oe")},
        {u"\u00D8", QLatin1String("O")},
        {u"\u00F8", QLatin1String("o")},
        {u"\u0141", QLatin1String("L")},
        {u"\u0142", QLatin1String("l")},
        {u"\u0110", QLatin1String("D")},
        {u"\u0111", QLatin1String("d")},
    };
    for (const StandIn &row : StandIns) {
        if (QStringView(row.characters).contains(character))
            return row.text;
    }
    return {};
}

/// The codes of a text that has one for each character, or nothing.
std::optional<QByteArray> exactCodes(const QString &text)
{
    const QByteArray codes = ZR8BitTVC::QStringToTVCStr(text);
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (codes[i] == ' ' && text[i] != u' ')
            return std::nullopt;
    }
    return codes;
}

/// The codes of what stands for a character without a code, or nothing.
std::optional<QByteArray> standIn(const QString &character)
{
    const QString parts = character.normalized(QString::NormalizationForm_KD);
    QString text;
    for (const QChar part : parts) {
        const QLatin1String plain = plainText(part);
        if (!plain.isEmpty())
            text += plain;
        else if (!part.isMark())
            text += part;
    }
    return exactCodes(text);
}

/// Converts a text, character by character.
class Encoder
{
public:
    Encoder(const QString &text, const ZR8BitTVCTextOptions &options, ZR8BitTVCTextReport &report)
        : _text(text)
        , _options(options)
        , _report(report)
        , _exact(ZR8BitTVC::QStringToTVCStr(text))
    {
    }

    QByteArray codes()
    {
        while (_place < _text.size()) {
            const qsizetype size = _options.replace && _convertWithMarks() ? 0 : _size();
            if (size > 0)
                _convert(size);
        }
        return _codes;
    }

private:
    /// How many units the character has that stands next.
    qsizetype _size() const
    {
        const bool isPair = _text[_place].isHighSurrogate() && _place + 1 < _text.size() &&
                            _text[_place + 1].isLowSurrogate();
        return isPair ? 2 : 1;
    }

    /// Converts a letter and the marks after it, where the TVC has the whole.
    bool _convertWithMarks()
    {
        qsizetype end = _place + 1;
        while (end < _text.size() && _text[end].isMark())
            ++end;
        if (end == _place + 1)
            return false;
        const auto codes =
            exactCodes(_text.sliced(_place, end - _place).normalized(QString::NormalizationForm_C));
        if (!codes)
            return false;
        _codes += *codes;
        while (_place < end)
            _advance(1);
        return true;
    }

    void _convert(qsizetype size)
    {
        const QChar unit = _text[_place];
        if (_exact[_place] != ' ' || unit == u' ') {
            _codes += _exact[_place];
            _advance(1);
            return;
        }
        std::optional<QByteArray> codes;
        if (_options.lines && isLineEnd(unit))
            codes = QByteArray(1, static_cast<char>(unit.unicode()));
        else if (_options.replace)
            codes = standIn(_text.sliced(_place, size));
        if (!codes)
            _lose(size);
        _codes += codes.value_or(QByteArray(size, ' '));
        _advance(size);
    }

    void _lose(qsizetype size)
    {
        constexpr qsizetype MostNamed = 10;
        if (++_report.lost <= MostNamed)
            _report.first.append({_line, _report.characters - _lineStart + 1,
                                  size == 2 ? QChar::surrogateToUcs4(_text[_place], _text[_place + 1])
                                            : _text[_place].unicode()});
    }

    void _advance(qsizetype size)
    {
        const QChar unit = _text[_place];
        _place += size;
        ++_report.characters;
        const bool isFirstOfTwo = unit == u'\r' && _place < _text.size() && _text[_place] == u'\n';
        if (isLineEnd(unit) && !isFirstOfTwo) {
            ++_line;
            _lineStart = _report.characters;
        }
    }

    const QString &_text;
    const ZR8BitTVCTextOptions &_options;
    ZR8BitTVCTextReport &_report;
    const QByteArray _exact; ///< a code for each unit, a space where there is none
    QByteArray _codes;
    qsizetype _place = 0;
    qsizetype _line = 1;
    qsizetype _lineStart = 0; ///< how many characters stand before the line
};

} // namespace

QByteArray ZR8BitTVCText::encode(const QString &text, const Options &options, ZR8BitTVCTextReport *report)
{
    ZR8BitTVCTextReport own;
    QByteArray codes = Encoder(text, options, own).codes();
    if (report)
        *report = own;
    return codes;
}

QString ZR8BitTVCText::decode(const QByteArray &codes, const Options &options, ZR8BitTVCTextReport *report)
{
    ZR8BitTVCTextReport own;
    own.characters = codes.size();
    QString text = ZR8BitTVC::TVCStrToQString(codes);
    for (qsizetype i = 0; i < codes.size(); ++i) {
        if (text[i] != u' ' || codes[i] == ' ')
            continue;
        if (options.lines && isLineEnd(QLatin1Char(codes[i])))
            text[i] = QLatin1Char(codes[i]);
        else
            ++own.lost;
    }
    if (report)
        *report = own;
    return text;
}

} // namespace ZR
