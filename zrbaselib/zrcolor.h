#ifndef ZRCOLOR_H
#define ZRCOLOR_H

#include <zrbaselib/zrbaselib_export.h>

#include <QtCore/QList>
#include <QtGui/QColor>

namespace ZR {

/// A colour and a list of 32-bit values that a host keeps with it. Nothing here reads the list.
///
/// A QColor converts to it, so that a colour can be given wherever a record is wanted.
class ZRBASELIB_EXPORT ZRColor
{
public:
    /// Without arguments an invalid colour.
    ZRColor(const QColor &color = QColor(), const QList<quint32> &values = {});

    /// The colour, which may be an invalid one.
    const QColor &color() const;
    /// The host's values.
    const QList<quint32> &values() const;

private:
    QColor _color;
    QList<quint32> _values;
};

} // namespace ZR

#endif
