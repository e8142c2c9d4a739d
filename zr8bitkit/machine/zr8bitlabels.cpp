#include <zr8bitkit/zr8bitlabels.h>

#include "zrfailure_p.h"
#include "zrreadfile_p.h"

#include <zr8bitkit/zrnumbers.h>

#include <QtCore/QHash>
#include <QtCore/QRegularExpression>

#include <optional>

namespace ZR {

namespace {

constexpr char sourceFile[] = "zr8bitkit/zr8bitlabels";

/// Reads lines that have a label.
class LineReader
{
public:
    struct Label
    {
        QString name;
        quint16 address = 0;
    };

    LineReader()
    {
        const QString name = QStringLiteral("(?<name>[A-Z_.@?!][\\w.@?!$:]*?)");
        for (const char *form :
             {"^al\\s+(C:)?(?<digits>[0-9A-F]+)\\s+\\.?%1$", "^%1\\s*:?\\s*(=|\\bEQU\\b)\\s*(?<number>\\S+)$",
              "^%1\\s*,\\s*(?<number>0x[0-9A-F]+)\\s*,.*$"})
            _forms += QRegularExpression(QString::fromLatin1(form).arg(name),
                                         QRegularExpression::CaseInsensitiveOption);
    }

    /// The label of a line without blanks around it and comments; nothing for one of any other form.
    std::optional<Label> label(const QString &line) const
    {
        for (const QRegularExpression &form : _forms) {
            const QRegularExpressionMatch match = form.match(line);
            if (!match.hasMatch())
                continue;
            const QString digits = match.captured(QStringLiteral("digits"));
            const std::optional<int> address = digits.isEmpty()
                                                   ? _number(match.captured(QStringLiteral("number")))
                                                   : ZRNumbers::parse(QLatin1Char('$') + digits);
            if (address && *address >= 0 && *address <= 0xFFFF)
                return Label{match.captured(QStringLiteral("name")), static_cast<quint16>(*address)};
        }
        return std::nullopt;
    }

private:
    /// A number, which may also be written as 0229H.
    static std::optional<int> _number(const QString &text)
    {
        const bool hasSuffix = text.endsWith(QLatin1Char('H'), Qt::CaseInsensitive);
        return ZRNumbers::parse(hasSuffix ? QLatin1Char('$') + text.chopped(1) : text);
    }

    QList<QRegularExpression> _forms;
};

} // namespace

struct ZR8BitLabels::Private
{
    QHash<quint16, QString> names;
    QHash<QString, quint16> addresses;
    int skippedLineCount = 0;
};

ZR8BitLabels::ZR8BitLabels(const QString &name)
    : ZRObject(name)
    , _d(std::make_unique<Private>())
{
}

ZR8BitLabels::~ZR8BitLabels() = default;

bool ZR8BitLabels::load(const QString &filePath)
{
    QByteArray text;
    QString error;
    if (!readFile(filePath, text, error))
        return ZR_FAIL(error);
    read(text);
    return true;
}

void ZR8BitLabels::read(const QByteArray &text)
{
    const LineReader reader;
    const auto lines = text.split('\n');
    for (const QByteArray &bytes : lines) {
        const QString line = QString::fromUtf8(bytes).section(QLatin1Char(';'), 0, 0).trimmed();
        if (line.isEmpty())
            continue;
        if (const auto label = reader.label(line))
            add(label->name, label->address);
        else
            ++_d->skippedLineCount;
    }
}

int ZR8BitLabels::skippedLineCount() const
{
    return _d->skippedLineCount;
}

void ZR8BitLabels::add(const QString &name, quint16 address)
{
    if (!_d->names.contains(address))
        _d->names.insert(address, name);
    if (!_d->addresses.contains(name))
        _d->addresses.insert(name, address);
}

QString ZR8BitLabels::nameOf(quint16 address) const
{
    return _d->names.value(address);
}

int ZR8BitLabels::addressOf(const QString &name) const
{
    const auto place = _d->addresses.constFind(name);
    return place == _d->addresses.constEnd() ? -1 : *place;
}

QString ZR8BitLabels::textOf(quint16 address) const
{
    const QString name = nameOf(address);
    const QString number = ZRNumbers::addressText(address);
    return name.isEmpty() ? number : QStringLiteral("%1 (%2)").arg(name, number);
}

} // namespace ZR
