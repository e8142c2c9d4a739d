#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtGui/QColor>
#include <QtGui/QImage>

#include <optional>
#include <string>

namespace CLI {
class App;
class Option;
} // namespace CLI

/// The longest side of a picture that an option may ask for.
constexpr int LongestSide = 0xFFFF;

/// Throws Failure: there is not enough memory for a picture.
[[noreturn]] void failTooLarge();

/// Reads a picture of any format that Qt reads, the right way up and as ZR8BitTVCScreen::toPixels() makes it.
/// Throws Failure when it is none. Warns when it is the first of several frames.
QImage readPicture(const QString &path);

/// Reads all frames of a picture in the same way; one that does not move has one frame.
QList<QImage> readFrames(const QString &path);

/// The picture as the bytes of a file, in the format that the file's name ends in: PNG when it ends in none.
/// Throws Failure when the picture is null, which is what there was not enough memory for. Warns when the
/// format does not keep each pixel.
QByteArray encodePicture(const QImage &picture, const QString &path);

/// Adds an option that takes a file for a picture. A name that ends in what is no format that can be written
/// is a wrong command line.
CLI::Option *addPictureFileOption(CLI::App &command, const std::string &option, QString &target,
                                  const std::string &description);

/// Adds the option -o in this way: a file for a picture, or standard output.
void addPictureOutputOption(CLI::App &command, QString &target);

/// The picture with each pixel repeated to a square; null when there is not enough memory.
QImage enlarge(const QImage &picture, int scale);

/// Adds an option that takes an opaque colour, written as #ff00ff or magenta. Any other value is a wrong
/// command line.
void addColorOption(CLI::App &command, const std::string &name, QColor &target,
                    const std::string &description);

/// Adds the option --scale, by which a preview is enlarged.
void addScaleOption(CLI::App &command, std::optional<int> &target);

/// Reads a stream of units, such as rows, of unitSize bytes each. Warns when the last one is cut, and throws
/// Failure when there is none at all or the input is a picture.
QByteArray readStream(const QString &path, qint64 unitSize, const QString &units);
