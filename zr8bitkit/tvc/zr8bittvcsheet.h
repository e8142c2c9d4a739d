#ifndef ZR8BITTVCSHEET_H
#define ZR8BITTVCSHEET_H

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
///     QString error;
///     const QList<QImage> frames = ZR8BitTVCSheet::cut(QImage(path), QSize(16, 16), &error);
///     sprite = ZR8BitTVCColor16::QImagesToTVC16Sprite(frames, transparent);
///
/// The bytes of a sprite are the library's matter; here are the pictures before and after them, which have
/// real transparency. Sheets with gaps or a margin between the frames are not modelled.
///
/// An operation that fails gives an empty result and, when error is not null, says why in a sentence;
/// otherwise error stays as it is. The class keeps no state: any number of threads may call it at once.
class ZR8BITKIT_EXPORT ZR8BitTVCSheet
{
public:
    /// The frames of a sprite, each of the given size, in Format_ARGB32: transparent pixels have alpha 0, all
    /// others 255. What remains after the last whole frame is read as a frame with fewer rows; exactly one
    /// row of one plane is none. Fails when size is empty, when there is no frame and when there is not
    /// enough memory.
    static QList<QImage> framesOfSprite(const QByteArray &sprite, const QSize &size,
                                        QString *error = nullptr);

    /// Cuts a sheet into frames of the given size, in Format_ARGB32. Fails when sheet or size are empty, when
    /// the sheet is no whole number of frames wide and high, and when there is not enough memory.
    ///
    /// Transparent cells at the end of the last row are frames too, unless join() filled them up.
    static QList<QImage> cut(const QImage &sheet, const QSize &size, QString *error = nullptr);

    /// How many frames cut() gives; 0 where it fails, but for a lack of memory. With frameAt() it saves the
    /// memory for a sheet's frames, which take more than 200 bytes each beside their pixels.
    static qsizetype frameCount(const QImage &sheet, const QSize &size, QString *error = nullptr);

    /// A frame of a sheet that has frameCount() frames, by its index from 0. A null image when there is not
    /// enough memory.
    static QImage frameAt(const QImage &sheet, const QSize &size, qsizetype index);

    /// Joins frames into a sheet in Format_ARGB32 with that many columns, or as many as there are frames when
    /// these are fewer. A cell is as large as the largest frame; what a smaller one leaves free, and what is
    /// left of the last row, is transparent. Fails when there is no frame, when one is a null image, when
    /// columns is below 1 and when the sheet becomes too large.
    ///
    /// How many frames there are is kept in the sheet's text "Frames", which a PNG keeps too, so that cut()
    /// gives back these frames and no more.
    static QImage join(const QList<QImage> &frames, int columns, QString *error = nullptr);

    /// The image in Format_ARGB32, in which pixels of exactly a colour, whose alpha plays no part, have
    /// become transparent, with all bits 0. A null image when image is one or there is not enough memory.
    static QImage withTransparent(const QImage &image, const QColor &color);

    /// The image on a ground of squares of two greys, by which transparent pixels are known, in Format_RGB32.
    /// A square has the given size in pixels, 2 x 2 when it is empty. A null image when image is one or there
    /// is not enough memory.
    static QImage onCheckerboard(const QImage &image, const QSize &square = QSize(2, 2));
};

} // namespace ZR

#endif
