#ifndef ZR8BITTVCCOLOR16_H
#define ZR8BITTVCCOLOR16_H

#include <zr8bitlib/zr8bitlib_export.h>

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QtEndian>
#include <QtGui/QColor>
#include <QtGui/QImage>

namespace ZR {

/// The code of a colour: its four bits where the first pixel of a two-pixel byte has them. Bit 7 is
/// intensity, bit 5 green, bit 3 red, bit 1 blue. A component that is on is 146 without intensity and 255
/// with it, so black with intensity is black again.
enum ZRTVC16Colors : unsigned char
{
    ZRTVC16ColorBlack = 0x00,
    ZRTVC16ColorDarkBlue = 0x02,
    ZRTVC16ColorDarkRed = 0x08,
    ZRTVC16ColorDarkMagenta = 0x0A,
    ZRTVC16ColorDarkGreen = 0x20,
    ZRTVC16ColorDarkCyan = 0x22,
    ZRTVC16ColorDarkYellow = 0x28,
    ZRTVC16ColorGray = 0x2A,
    ZRTVC16ColorBrightBlack = 0x80,
    ZRTVC16ColorBlue = 0x82,
    ZRTVC16ColorRed = 0x88,
    ZRTVC16ColorMagenta = 0x8A,
    ZRTVC16ColorGreen = 0xA0,
    ZRTVC16ColorCyan = 0xA2,
    ZRTVC16ColorYellow = 0xA8,
    ZRTVC16ColorWhite = 0xAA,
};

/// The palette code of a colour: the colour code shifted right by one, that is the four bits where the
/// second pixel of a two-pixel byte has them.
enum ZRTVC16Palette : unsigned char
{
    ZRTVC16PaletteBlack = 0x00,
    ZRTVC16PaletteDarkBlue = 0x01,
    ZRTVC16PaletteDarkRed = 0x04,
    ZRTVC16PaletteDarkMagenta = 0x05,
    ZRTVC16PaletteDarkGreen = 0x10,
    ZRTVC16PaletteDarkCyan = 0x11,
    ZRTVC16PaletteDarkYellow = 0x14,
    ZRTVC16PaletteGray = 0x15,
    ZRTVC16PaletteBrightBlack = 0x40,
    ZRTVC16PaletteBlue = 0x41,
    ZRTVC16PaletteRed = 0x44,
    ZRTVC16PaletteMagenta = 0x45,
    ZRTVC16PaletteGreen = 0x50,
    ZRTVC16PaletteCyan = 0x51,
    ZRTVC16PaletteYellow = 0x54,
    ZRTVC16PaletteWhite = 0x55,
};

/// The two-pixel byte: the first pixel is the left one of a pair, the second the right one, and their bits
/// alternate. All 256 values are valid.
///
/// The fields need a compiler that gives a union's members the same storage also for reading, and that fills
/// a byte with bit fields from its lowest bit on little-endian machines and from its highest on big-endian
/// ones. GCC, Clang and MSVC do, and a test checks it. The conversions use value alone.
union ZRTVC16Pixel
{
    /// The pixels that a byte holds; without an argument two black ones.
    constexpr ZRTVC16Pixel(const unsigned char &byte = 0)
        : value(byte)
    {
    }

    /// The byte that holds both pixels.
    constexpr operator unsigned char() const { return value; }

    unsigned char value; ///< the byte that holds both pixels

    QT_WARNING_PUSH
    QT_WARNING_DISABLE_GCC("-Wpedantic")
    QT_WARNING_DISABLE_CLANG("-Wgnu-anonymous-struct")
    QT_WARNING_DISABLE_MSVC(4201) // unnamed struct
    struct
    {
#if Q_BYTE_ORDER == Q_LITTLE_ENDIAN
        unsigned char blue2 : 1, blue1 : 1, red2 : 1, red1 : 1;
        unsigned char green2 : 1, green1 : 1, intensity2 : 1, intensity1 : 1;
#else
        unsigned char intensity1 : 1, intensity2 : 1, green1 : 1, green2 : 1;
        unsigned char red1 : 1, red2 : 1, blue1 : 1, blue2 : 1;
#endif
    };
    QT_WARNING_POP
};
static_assert(sizeof(ZRTVC16Pixel) == 1, "the two-pixel byte is one byte");

/// Colours, pictures and sprites of the TVC's 16-colour mode, which keeps two pixels in a byte.
///
/// No operation reports a failure: bad or empty input gives an invalid colour, a null image or empty data.
/// All keep no state and may run on any number of threads at once. An image that there is not enough memory
/// for, or that is larger than a QImage can be, is a null image.
///
/// A picture is rows of two-pixel bytes, the top row first and each from left to right, with nothing between
/// or around them: (width + 1) / 2 bytes a row. At an odd width the last byte of each row has the last
/// column as its first pixel and black as its second.
///
/// A sprite is frames, one directly after the other; a frame is two planes of a picture's form and size. The
/// first has the colours, with transparent pixels black; the second is the mask, with all four bits of a
/// pixel set when it is transparent and clear when it is opaque. The pixel beyond an odd width is
/// transparent. Neither pictures nor sprites say how large they are.
class ZR8BITLIB_EXPORT ZR8BitTVCColor16
{
public:
    // Colours

    /// The opaque colour of a code; an invalid colour when the byte is none of the 16 codes.
    static QColor TVC16ColorToQColor(const ZRTVC16Colors &color);
    /// The opaque colour of a palette code; an invalid colour when the byte is none of the 16 codes.
    static QColor TVC16PaletteToQColor(const ZRTVC16Palette &color);

    /// The code of the closest TVC colour, which is never bright black.
    static ZRTVC16Colors QColorToTVC16Color(const QColor &color);
    /// The palette code of the closest TVC colour, which is never bright black.
    static ZRTVC16Palette QColorToTVC16Palette(const QColor &color);

    /// The byte as a code, unchecked.
    static ZRTVC16Colors TVC16ColorFromUChar(const unsigned char &color);
    /// The code as a byte, unchecked.
    static unsigned char TVC16ColorToUChar(const ZRTVC16Colors &color);

    /// The colour of a byte that is a colour code, not a two-pixel byte; invalid when it is no code.
    static QColor QColorFromUChar(const unsigned char &color);
    /// The code of the closest TVC colour as a byte.
    static unsigned char QColorToUChar(const QColor &color);

    /// The code's colour as "#rrggbb" in small hexadecimal digits; "#000000" when the byte is no code.
    static QString TVC16ColorToRGBString(const ZRTVC16Colors &color);

    /// The TVC colour that is closest to a colour: one of the 15 distinct ones, opaque. Closest is the least
    /// sum of the squared differences of red, green and blue, each 0 to 255; of equally close colours the one
    /// with the least code wins. Alpha plays no part, and an invalid colour counts as black.
    static QColor closestColor(const QColor &color);

    // Two-pixel bytes

    /// Packs two codes. Bits that no code has are not masked off.
    static ZRTVC16Pixel TVC16PixelFromTVC16Colors(const ZRTVC16Colors &color1, const ZRTVC16Colors &color2);
    /// Packs the closest TVC colours of two colours.
    static ZRTVC16Pixel TVC16PixelFromQColors(const QColor &color1, const QColor &color2);
    /// Unpacks a byte into two opaque colours.
    static void TVC16PixelToQColors(const ZRTVC16Pixel &pixel, QColor &color1, QColor &color2);

    // Pictures

    /// The picture of a stream, in Format_RGB32. A last row that the stream only begins is black from where
    /// it ends. A null image when the stream is empty or width is below 1.
    static QImage QImageFromTVC16Bin(const QByteArray &stream, const int &width);

    /// The stream of a picture in its closest TVC colours. Alpha plays no part: pixels of Format_RGB32,
    /// Format_ARGB32 and Format_ARGB32_Premultiplied are taken as they stand, and other formats are converted
    /// to 32 bits first.
    static QByteArray QImageToTVC16Bin(const QImage &image);

    /// What a picture looks like on the TVC: the image in its closest TVC colours, of the same size and in
    /// Format_RGB32.
    static QImage QImageToTVC16ColoredQImage(const QImage &image);

    // Sprites

    /// One frame. Pixels that have exactly the transparent colour become transparent, and so do those whose
    /// alpha is below 128 of 255; any other pixel becomes its closest TVC colour. The alpha of the
    /// transparent colour plays no part. Exactly means as QColor compares: a transparent colour that is not
    /// written in red, green and blue of 8 bits equals no pixel, not even one of alpha 0.
    static QByteArray QImageToTVC16SpriteFrame(QImage image, QColor transparent);

    /// The picture of a frame, in Format_RGB32 with transparent pixels white. The height follows from the
    /// frame's size; of a frame that is no whole number of rows the first half still is the colour plane, and
    /// pixels that it lacks are black. A null image when the frame is empty or width is below 1.
    static QImage QImageFromTVC16SpriteFrame(const QByteArray &frame, const int &width);

    /// The frames of all images in their order, each of its own size.
    static QByteArray QImagesToTVC16Sprite(const QList<QImage> &images, const QColor &transparent);

    /// The pictures of all frames of one size. What remains behind the last whole frame is read as a frame
    /// with fewer rows; exactly one row of one plane gives a null image. An empty list when width or height
    /// is below 1.
    static QList<QImage> QImagesFromTVC16Sprite(const QByteArray &stream, const int &width,
                                                const int &height);
};

} // namespace ZR

#endif
