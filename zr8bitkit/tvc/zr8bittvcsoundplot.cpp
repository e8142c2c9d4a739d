#include <zr8bitkit/zr8bittvcpitch.h>
#include <zr8bitkit/zr8bittvcsoundplot.h>

#include "zr8bittvcsoundreader_p.h"
#include "zr8bittvctoneplayer_p.h"
#include "zrfailure_p.h"

#include <QtCore/QIODevice>
#include <QtCore/QRectF>
#include <QtCore/QXmlStreamWriter>

#include <algorithm>
#include <cmath>

namespace ZR {

namespace {

// In units of the picture, which a viewer may show at any size.
constexpr double Width = 1000;
constexpr double Height = 500;
constexpr QRectF Area(60, 20, 920, 420);
constexpr double LeastBarHeight = 3;

/// Semitones from C0 up to the frequency of a pitch.
double semitone(int pitch)
{
    static const double lowest = ZR8BitTVCPitch::noteFrequency(QStringLiteral("C0"));
    return ZR8BitTVCPitch::cents(ZR8BitTVCPitch::frequency(pitch), lowest) / 100;
}

/// The note of a whole number of semitones from C0 up.
QString note(int semitone)
{
    static const double lowest = ZR8BitTVCPitch::noteFrequency(QStringLiteral("C0"));
    return ZR8BitTVCPitch::nearestNote(lowest * std::exp2(semitone / 12.0));
}

/// Records one after the other that sound the same.
struct Bar
{
    qint64 start = 0; ///< in T states
    qint64 end = 0;
    int volume = 0; ///< 0 for silence
    int pitch = 0;
};

/// Goes through the bars of a sound.
template <typename Function>
void forEachBar(const TVCSoundReader &reader, int rate, const Function &function)
{
    Bar bar;
    for (qsizetype i = 0; i < reader.count(); ++i) {
        const TVCSoundRecord record = reader.record(i);
        const int volume = isHeard(record.pitch, rate) ? record.volume : 0;
        if (volume != bar.volume || record.pitch != bar.pitch) {
            if (bar.volume > 0 && bar.end > bar.start)
                function(bar);
            bar = {bar.end, bar.end, volume, record.pitch};
        }
        bar.end += reader.length(record);
    }
    if (bar.volume > 0 && bar.end > bar.start)
        function(bar);
}

class Plot
{
public:
    Plot(const TVCSoundReader &reader, const ZR8BitTVCWaveOptions &options, QIODevice &output)
        : _reader(reader)
        , _rate(options.rate)
        , _time(std::max(reader.time(), reader.length({0, 0, 1})))
        , _svg(&output)
    {
        int lowest = 0;
        int highest = 0;
        forEachBar(reader, _rate, [&lowest, &highest](const Bar &bar) {
            lowest = lowest == 0 ? bar.pitch : std::min(lowest, bar.pitch);
            highest = std::max(highest, bar.pitch);
        });
        if (highest == 0)
            lowest = highest = ZR8BitTVCPitch::nearest(440); // for the axis of a silent sound
        _lowest = static_cast<int>(std::lround(semitone(lowest))) - 1;
        _highest = static_cast<int>(std::lround(semitone(highest))) + 1;
    }

    /// Returns false when the device fails.
    bool write()
    {
        _svg.setAutoFormatting(true);
        _svg.writeStartDocument();
        _svg.writeStartElement(QStringLiteral("svg"));
        _svg.writeDefaultNamespace(QStringLiteral("http://www.w3.org/2000/svg"));
        _attribute("viewBox", QStringLiteral("0 0 %1 %2").arg(Width).arg(Height));
        _attribute("font-family", QStringLiteral("sans-serif"));
        _attribute("font-size", QStringLiteral("14"));
        _rectangle(QRectF(0, 0, Width, Height), "fill", QStringLiteral("white"));
        _writeNotes();
        _writeTimes();
        _start("g", "fill", "#1f5fbf");
        const double height = std::max(LeastBarHeight, _y(0) - _y(1));
        forEachBar(_reader, _rate, [this, height](const Bar &bar) {
            const double left = _x(bar.start);
            _rectangle(QRectF(left, _y(semitone(bar.pitch)) - height / 2, _x(bar.end) - left, height),
                       "fill-opacity", _number(bar.volume / 15.0));
        });
        _svg.writeEndDocument();
        return !_svg.hasError();
    }

private:
    double _x(qint64 time) const { return Area.left() + Area.width() * double(time) / double(_time); }
    double _y(double semitone) const
    {
        return Area.bottom() - Area.height() * (semitone - _lowest) / (_highest - _lowest);
    }

    /// A grid line and a label for each note without a sharp or, where these are many, for each C.
    void _writeNotes()
    {
        const bool isWide = _highest - _lowest > 24;
        _start("g", "text-anchor", "end");
        for (int i = _lowest; i <= _highest; ++i) {
            const QString name = note(i);
            if (name.contains(u'#') || (isWide && !name.startsWith(u'C')))
                continue;
            const double y = _y(i);
            _line(QPointF(Area.left(), y), QPointF(Area.right(), y));
            _text(QPointF(Area.left() - 8, y + 5), name);
        }
        _text(QPointF(Area.left() - 8, Area.top() - 6), QStringLiteral("note"));
        _svg.writeEndElement();
    }

    /// A grid line and a label at ten times or fewer, which are 1, 2 or 5 times a power of ten apart.
    void _writeTimes()
    {
        constexpr qint64 Millisecond = ZR8BitTVCTone::TStates / 1000;
        qint64 step = Millisecond;
        for (int i = 0; _time / step > 10; ++i)
            step = i % 3 == 1 ? step / 2 * 5 : step * 2;
        _start("g", "text-anchor", "middle");
        for (qint64 time = 0; time <= _time; time += step) {
            const double x = _x(time);
            _line(QPointF(x, Area.top()), QPointF(x, Area.bottom()));
            _text(QPointF(x, Area.bottom() + 22), QString::number(double(time) / ZR8BitTVCTone::TStates));
        }
        _text(QPointF(Area.center().x(), Height - 12), QStringLiteral("seconds"));
        _svg.writeEndElement();
    }

    void _start(const char *element, const char *attribute, const char *value)
    {
        _svg.writeStartElement(QLatin1String(element));
        _attribute(attribute, QLatin1String(value));
    }

    void _rectangle(const QRectF &rect, const char *attribute, const QString &value)
    {
        _svg.writeEmptyElement(QStringLiteral("rect"));
        _attribute("x", _number(rect.x()));
        _attribute("y", _number(rect.y()));
        _attribute("width", _number(rect.width()));
        _attribute("height", _number(rect.height()));
        _attribute(attribute, value);
    }

    void _line(const QPointF &from, const QPointF &to)
    {
        _svg.writeEmptyElement(QStringLiteral("path"));
        _attribute("stroke", QStringLiteral("#d0d0d0"));
        _attribute("d", QStringLiteral("M%1 %2L%3 %4")
                            .arg(_number(from.x()), _number(from.y()), _number(to.x()), _number(to.y())));
    }

    void _text(const QPointF &place, const QString &text)
    {
        _svg.writeStartElement(QStringLiteral("text"));
        _attribute("x", _number(place.x()));
        _attribute("y", _number(place.y()));
        _svg.writeCharacters(text);
        _svg.writeEndElement();
    }

    void _attribute(const char *name, const QString &value)
    {
        _svg.writeAttribute(QLatin1String(name), value);
    }

    static QString _number(double value) { return QString::number(value, 'f', 2); }

    const TVCSoundReader &_reader;
    const int _rate;
    const qint64 _time; ///< that is shown, in T states
    int _lowest = 0;    ///< semitones from C0
    int _highest = 0;
    QXmlStreamWriter _svg;
};

} // namespace

bool ZR8BitTVCSoundPlot::write(const QByteArray &sound, const Options &options, QIODevice &output,
                               QString *error)
{
    TVCSoundReader reader;
    if (!reader.open(sound, options, error))
        return false;
    return Plot(reader, options, output).write() ||
           fail(error, QStringLiteral("The plot could not be written: %1.").arg(output.errorString()));
}

} // namespace ZR
