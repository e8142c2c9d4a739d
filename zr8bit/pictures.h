#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtGui/QColor>
#include <QtGui/QImage>

#include <optional>
#include <string>

namespace CLI {
class App;
}

/// The longest side of a picture that an option may ask for.
constexpr int LongestSide = 0xFFFF;

/// Throws Failure: there is not enough memory for a picture.
[[noreturn]] void failTooLarge();

/// Reads a picture of any format that Qt reads, the right way up. Throws Failure when it is none.
QImage readPicture(const QString &path);

/// The picture as PNG. Throws Failure when it is null, which is what there was not enough memory for.
QByteArray toPng(const QImage &picture);

/// The picture with each pixel repeated to a square. Throws Failure when it becomes too large.
QImage enlarge(const QImage &picture, int scale);

/// Adds an option that takes a colour, written as #ff00ff or magenta. Any other value is a wrong command
/// line.
void addColorOption(CLI::App &command, const std::string &name, QColor &target,
                    const std::string &description);

/// Adds the option --scale, by which a preview is enlarged.
void addScaleOption(CLI::App &command, std::optional<int> &target);

/// Bytes of a row of two-pixel bytes.
qint64 bytesPerRow(int width);

/// Reads a stream of units, such as rows, of unitSize bytes each. Warns when the last one is cut, and throws
/// Failure when there is none at all.
QByteArray readStream(const QString &path, qint64 unitSize, const QString &units);
