#include <zrbaselib/zrcolor.h>

namespace ZR {

ZRColor::ZRColor(const QColor &color, const QList<quint32> &values)
    : _color(color)
    , _values(values)
{
}

const QColor &ZRColor::color() const
{
    return _color;
}

const QList<quint32> &ZRColor::values() const
{
    return _values;
}

} // namespace ZR
