#pragma once

#include <zr8bitkit/zr8bitkit_export.h>

#include <QtCore/QSize>
#include <QtGui/QColor>
#include <QtGui/QImage>

namespace ZR {

/// Pictures that suit the TVC's screen in its 16-colour mode: of its size and shape, mixed from its colours,
/// and shown in the shape that its pixels have. It stands in front of the conversions of ZR8BitTVCColor16:
///
///     using Screen = ZR::ZR8BitTVCScreen;
///     QImage picture("photo.jpg");
///     picture = Screen::fit(picture, QSize(Screen::Width, Screen::Height));
///     picture = Screen::dither(picture, Screen::FloydSteinberg);
///     const QByteArray screen = ZR::ZR8BitTVCColor16::QImageToTVC16Bin(picture); // Screen::Size bytes
///     Screen::screenView(picture).save("preview.png");                           // 640 x 480
///
/// The screen fills a picture of 4:3, so a pixel is 2.5 times as wide as high. What mixes on a screen, and in
/// the eye at a distance, is light; so scaling and dithering add up light, by the curve of sRGB, not the
/// numbers of a picture's components. The results are the same on every machine.
///
/// Colours are those that the pixels hold: transparency and colour spaces play no part. Results are in
/// Format_RGB32. A null image gives a null image, and so does a result that is too large or that there is not
/// enough memory for. Beside the result fit() needs a few rows, dither() some rows or at most 20 MB. The
/// operations keep no state and may run on any number of threads at once.
///
/// Not modelled: the border of the screen, and how a TV set blurs pixels.
class ZR8BITKIT_EXPORT ZR8BitTVCScreen
{
public:
    static constexpr int Width = 128;                 ///< pixels of a row
    static constexpr int Height = 240;                ///< rows
    static constexpr int BytesPerRow = 64;            ///< of two pixels each
    static constexpr int Size = BytesPerRow * Height; ///< bytes of a screen
    static constexpr int PixelWidth = 5;  ///< of a pixel's shape, as Width x 5 to Height x 2 is 4:3
    static constexpr int PixelHeight = 2; ///< of the same

    /// What fit() does where the picture's shape is not that of the result.
    enum Fit
    {
        Contain, ///< shows the whole picture, with bars at two sides
        Cover,   ///< fills the result and cuts off what overhangs, the same on both sides
        Stretch, ///< fills the result with the whole picture, whatever shape it gets
    };

    /// How dither() draws a colour that the TVC has not.
    enum Dither
    {
        None,           ///< as the closest colour, by ZR8BitTVCColor16::QImageToTVC16ColoredQImage()
        FloydSteinberg, ///< hands on the error of each pixel to its neighbours: the finest mix
        Bayer,          ///< by a pattern of 8 x 8: the same colour gives the same pattern, at any place
    };

    /// The picture, whose pixels are squares, scaled to a size in pixels of the screen. Each pixel of the
    /// result is the mean light of its area in the picture. The bars of Contain have the TVC colour that is
    /// closest to the background. At least one row and one column of the picture remain. A picture that
    /// already has the size stays as it is under Stretch. A null image when a side of size is below 1 or
    /// above 65,535.
    static QImage fit(const QImage &image, const QSize &size, Fit fit = Contain,
                      const QColor &background = Qt::black);

    /// The picture in the 15 colours of the TVC, of the same size. A picture that has no others stays as it
    /// is.
    ///
    /// Rows at the top and bottom and columns at the left and right that have one TVC colour from end to end,
    /// such as the bars of fit(), are margins: Floyd-Steinberg hands no error on into them.
    static QImage dither(const QImage &image, Dither dither);

    /// The picture in the shape that the screen gives it: each pixel 5 x 2.
    static QImage screenView(const QImage &image);
};

} // namespace ZR
