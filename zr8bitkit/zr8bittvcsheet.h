#pragma once

#include <zr8bitkit/zr8bitkit_export.h>

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QSize>
#include <QtCore/QString>
#include <QtGui/QImage>

namespace ZR {

/// Sprites of the Videoton TV Computer (TVC) as sheets: one picture that holds all frames, in rows from the
/// top, each from the left.
///
///     QList<QImage> frames;
///     QString error;
///     if (ZR8BitTVCSheet::cut(QImage(path), QSize(16, 16), frames, error))
///         sprite = ZR8BitTVCColor16::QImagesToTVC16Sprite(frames, transparent);
///
/// The bytes of a sprite are the library's matter; here are the pictures in front of and behind them, which
/// have real transparency. Sheets with gaps or a margin between the frames are not modelled.
///
/// An operation that fails returns false, says why in a sentence and leaves its result as it was. The class
/// keeps no state: any number of threads may call it at once, each with results of its own.
class ZR8BITKIT_EXPORT ZR8BitTVCSheet
{
public:
    /// The frames of a sprite, each of the given size, in Format_ARGB32: transparent pixels have alpha 0, all
    /// others 255. What remains behind the last whole frame is read as a frame with fewer rows; exactly one
    /// row of one plane is none. Fails when size is empty, when there is no frame and when there is not
    /// enough memory.
    static bool framesOfSprite(const QByteArray &sprite, const QSize &size, QList<QImage> &frames,
                               QString &error);

    /// Cuts a sheet into frames of the given size, in Format_ARGB32. Fails when sheet or size are empty, and
    /// when the sheet is no whole number of frames wide and high.
    ///
    /// Transparent cells at the end of the last row are frames too, unless join() filled them up.
    static bool cut(const QImage &sheet, const QSize &size, QList<QImage> &frames, QString &error);

    /// Joins frames into a sheet in Format_ARGB32 with that many columns, or as many as there are frames when
    /// these are fewer. A cell is as large as the largest frame; what a smaller one leaves free, and what is
    /// left of the last row, is transparent. Fails when there is no frame, when one is a null image, when
    /// columns is below 1 and when the sheet becomes too large.
    ///
    /// How many frames there are is kept in the sheet's text "Frames", which a PNG keeps too, so that cut()
    /// gives back these frames and no more.
    static bool join(const QList<QImage> &frames, int columns, QImage &sheet, QString &error);

    /// The image on a ground of squares of two greys, by which transparent pixels are known, in Format_RGB32.
    /// A square has the given size in pixels, 2 x 2 when it is empty. A null image when image is one or there
    /// is not enough memory.
    static QImage onCheckerboard(const QImage &image, const QSize &square = QSize(2, 2));
};

} // namespace ZR
